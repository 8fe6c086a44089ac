#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <utility>

#include "codecs/decode_worker.h"
#include "raster/picture_operation.h"

namespace graphize {

/// What a process decodes by: the readers of codecs/direct/, which may leave a file to the other
/// kind, or the picture library, which takes five times as long to start.
enum class DecoderKind { Direct, Library };

/// The processes for the pictures to come, for all threads.
class Decoders {
 public:
  Decoders(DecoderProgram direct, DecoderProgram library)
      : kinds_{Kind{.Program = std::move(direct)}, Kind{.Program = std::move(library)}} {}

  /// A picture begins.
  void CountPicture();

  struct Taken {
    std::optional<DecodeWorker> Worker;
    bool WasStopped = false;  // by `progress`; the process goes on starting
  };
  /// One that is ready, for which it waits; none where the system allows none. A program that does
  /// not get ready is not started again. RunTimeError when it is not of this build.
  Taken Take(DecoderKind kind, const PictureProgress& progress);

  /// A picture had to be decoded without one.
  void NoteNone(DecoderKind kind) { Of(kind).Layers = 0; }

  /// On threads beside: starting a process takes as long as a small picture. `latest` is what the
  /// latest picture came from: the next one may be like it.
  void StartNext(DecoderKind latest);
  /// From here on always `atOnce` of each kind; or, until `toCome` pictures have begun, of the
  /// first kind, and of the other one where the latest picture came from it.
  void StartAhead(std::size_t atOnce, std::size_t toCome);

  /// How many of a kind are started ahead.
  std::size_t CountAhead(DecoderKind kind);

  /// Of the latest processes (DecodeLayer, 0: none), those that all of them have; nothing before
  /// the first is ready. Does not wait.
  std::optional<unsigned> Layers();

 private:
  static constexpr unsigned kUnknown = 256;

  /// A process that is being started, or has been.
  class Ahead {
   public:
    explicit Ahead(const DecoderProgram& program);
    /// As DecodeWorker::Layers; 0 also where no process could be started.
    std::optional<unsigned> Layers(std::chrono::milliseconds atMost);
    std::optional<DecodeWorker>& Worker() { return worker_; }

   private:
    std::future<std::optional<DecodeWorker>> starting_;
    std::optional<DecodeWorker> worker_;
  };

  struct Kind {
    const DecoderProgram Program;
    std::deque<Ahead> Waiting = {};
    std::atomic<unsigned> Layers = kUnknown;
    std::atomic<bool> DoesNotStart = false;
  };

  Kind& Of(DecoderKind kind) { return kinds_[static_cast<std::size_t>(kind)]; }
  /// How many of a kind are to wait.
  std::size_t Wanted(DecoderKind kind) const;
  void FillUp();
  std::optional<Ahead> TakeAhead(DecoderKind kind);

  std::mutex mutex_;
  std::array<Kind, 2> kinds_;
  std::size_t atOnce_ = 0, toCome_ = 0;
  DecoderKind latest_ = DecoderKind::Direct;
};

}  // namespace graphize
