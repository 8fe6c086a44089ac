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
#include <vector>

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
  /// not get ready is not started again. RunTimeError as DecodeWorker::Layers.
  Taken Take(DecoderKind kind, const PictureProgress& progress);

  /// There is none for a picture.
  void NoteNone(DecoderKind kind) { Of(kind).Layers = 0; }
  /// A picture is decoded within this program for lack of one.
  void NoteDecodedWithin() { wasDecodedWithin_ = true; }
  bool WasDecodedWithin() const { return wasDecodedWithin_; }

  /// On threads beside: starting a process takes as long as a small picture. `latest` is what the
  /// latest picture came from: the next one may be like it.
  void StartNext(DecoderKind latest);
  /// How many wait from here on, until the next call. With kManyPictures `atOnce` of each kind,
  /// always. With a number, as many as of the `toCome` pictures have not begun, at most `atOnce`:
  /// of the direct kind always, of the library while one of the latest pictures came from it.
  void StartAhead(std::size_t atOnce, std::size_t toCome);

  /// How many of a kind are started ahead.
  std::size_t CountAhead(DecoderKind kind);

  /// Of the latest process of each kind, also one that only waits (DecodeLayer, 0: none), those
  /// that both have; nothing before the first is ready. Does not wait.
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
    /// Also where no process could be started; not while it is being started.
    bool HasEnded();

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
  /// Brings what waits to the number that is wanted. What is returned was too many: to be destroyed
  /// without the lock, because that ends processes.
  std::vector<Ahead> FillUp();
  std::optional<Ahead> TakeAhead(DecoderKind kind);

  std::mutex mutex_;
  std::array<Kind, 2> kinds_;
  std::size_t atOnce_ = 0, toCome_ = 0;
  int libraryFor_ = 0;  // so many pictures more it is kept ready
  std::atomic<bool> wasDecodedWithin_ = false;
};

}  // namespace graphize
