#pragma once

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

/// The processes for the pictures to come, for all threads.
class Decoders {
 public:
  explicit Decoders(DecoderProgram program) : program_(std::move(program)) {}

  struct Taken {
    std::optional<DecodeWorker> Worker;
    bool WasStopped = false;  // by `progress`; the process goes on starting
  };
  /// One that is ready, for which it waits; none where the system allows none. A program that does
  /// not get ready is not started again. RunTimeError when it is not of this build.
  Taken Take(const PictureProgress& progress);

  /// A picture had to be decoded without one.
  void NoteNone() { layers_ = 0; }

  /// On threads beside: starting a process takes as long as a small picture.
  void StartNext();
  /// From here on always `atOnce`, or until `toCome` have been taken.
  void StartAhead(std::size_t atOnce, std::size_t toCome);

  /// Of the latest process (DecodeLayer, 0: none); nothing before the first is ready. Does not
  /// wait.
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

  std::optional<Ahead> TakeAhead();
  void PutBack(Ahead ahead);

  const DecoderProgram program_;
  std::mutex mutex_;
  std::deque<Ahead> ahead_;
  std::size_t atOnce_ = 0, toCome_ = 0;
  std::atomic<unsigned> layers_ = kUnknown;
  std::atomic<bool> doesNotStart_ = false;
};

}  // namespace graphize
