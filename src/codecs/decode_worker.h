#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
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

/// What a picture may do where only these layers (DecodeLayer, 0: no process) hold, in a sentence
/// in plain words; empty where all do.
std::string MissingProtection(unsigned layers);

struct Decoded {
  std::optional<LoadedPicture> Picture;  // nothing when it was stopped, or left
  bool WasLeft = false;                  // to another decoder
};

/// A process that decodes one picture, waiting for it.
class DecodeWorker {
 public:
  /// Nothing where the system allows none.
  static std::optional<DecodeWorker> Start(const DecoderProgram& program);

  /// The layers that hold (DecodeLayer) once it is ready, for which this waits at most so long;
  /// nothing until then. 0 when it ended before, or was ended because it did not get ready.
  /// RunTimeError, at the first call, when it is not of this build or its module cannot be loaded.
  std::optional<unsigned> Layers(std::chrono::milliseconds atMost);
  /// It was ended because it did not get ready.
  bool DoesNotStart() const { return doesNotStart_; }

  bool HasEnded() { return process_.WaitForEnd({}).has_value(); }

  /// Decodes the open file of `fileSize` bytes; only once. Nothing when `progress` stopped it.
  /// RunTimeError with the reason alone: the decoder's, or how it ended.
  Decoded Decode(const std::string& name, const Descriptor& file, std::uintmax_t fileSize,
                 const PictureProgress& progress);

 private:
  using Clock = std::chrono::steady_clock;

  DecodeWorker(ChildProcess process, const DecoderProgram& program)
      : process_(std::move(process)),
        module_(program.Module),
        leavesFiles_(program.LeavesFiles),
        seconds_(program.Seconds),
        lastStart_(Clock::now() + program.LongestStart) {}

  /// Nothing when `progress` is to end it.
  std::optional<ProcessEnd> WaitForEnd(const PictureOperation& operation,
                                       const PictureProgress& progress);

  ChildProcess process_;
  std::filesystem::path module_;
  bool leavesFiles_;
  int seconds_;
  Clock::time_point lastStart_;
  std::optional<unsigned> layers_;
  bool doesNotStart_ = false;
};

}  // namespace graphize
