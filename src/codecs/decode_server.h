#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <future>
#include <mutex>
#include <optional>
#include <string>

#include "base/child_process.h"
#include "codecs/decode_protocol.h"
#include "codecs/picbuf.h"

namespace graphize {

/// The program that decodes pictures, and what it is given.
struct DecoderProgram {
  std::filesystem::path Program, Module;
  bool LeavesFiles = false;  // what its readers do not know, to another one
  int Seconds = 120;         // of processor time for a picture, and twice as many on the clock
  std::chrono::milliseconds LongestStart{15'000};  // a disk that must wake up first
};

/// RunTimeError: for now, the system lacks what a picture is decoded with.
[[noreturn]] void ThrowShortage();

/// What a picture may do where only these layers (DecodeLayer, 0: no process) hold, in a sentence
/// in plain words; empty where all do.
std::string MissingProtection(unsigned layers);

/// What came of a file: a picture, or nothing, because it was left to another decoder, stopped, or
/// there was no process to be had.
enum class DecodeEnd { Picture, Left, Stopped, NoProcess };
struct Decoded {
  DecodeEnd End = DecodeEnd::NoProcess;
  LoadedPicture Picture = {};
};

/// A process that has loaded what reads pictures, and forks one that decodes for each of them:
/// loading it takes as long as a small picture. For all threads.
class DecodeServer {
 public:
  /// Starts it, on a thread beside.
  explicit DecodeServer(DecoderProgram program);

  /// The layers that hold in its decoders (DecodeLayer), or in the latest one, once it is ready,
  /// for which this waits at most so long; nothing until then. 0 where there is no process, and
  /// when it ended before or was ended because it did not get ready. RunTimeError when it is not of
  /// this build or its module cannot be loaded.
  std::optional<unsigned> Layers(std::chrono::milliseconds atMost);
  /// It did not get ready, or gave the first picture no decoder, in all the time it has for that.
  bool DoesNotStart() const { return doesNotStart_; }
  /// One of its decoders did not end as it should: a file may have broken it. All of them have the
  /// same addresses and stack guards, which the next attempt is not to know.
  bool IsSpent() const { return isSpent_; }
  /// It has given a picture its decoder.
  bool HasForked() const { return hasForked_; }

  /// Decodes the open file of `fileSize` bytes, in a process of its own, until `progress` stops it;
  /// only where layers hold. RunTimeError with the reason alone: the decoder's, or how it ended.
  Decoded Decode(const std::string& name, const Descriptor& file, std::uintmax_t fileSize,
                 const PictureProgress& progress);

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr unsigned kUnknown = kAllLayers + 1;

  const DecoderProgram program_;
  std::mutex starting_;
  std::future<std::optional<ChildProcess>> started_;
  std::optional<ChildProcess> process_;  // unchanged once the layers are known
  Clock::time_point lastStart_;
  std::atomic<unsigned> layers_ = kUnknown;
  std::atomic<bool> doesNotStart_ = false, hasForked_ = false, isSpent_ = false;
};

}  // namespace graphize
