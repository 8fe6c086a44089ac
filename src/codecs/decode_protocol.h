#pragma once

#include <array>
#include <cstdint>

#include "raster/picture_operation.h"

namespace graphize {

// What the program and the process that decodes pictures for it say to each other. The process is
// started with the program's ModuleStamp, the path of the module that it reads pictures by (one of
// two, codecs/picture_modules.h) and the seconds of processor time that it may use; it fences
// itself in, says through its channel which layers hold (a byte), and waits for one request. What
// becomes of that is in the request's memory files when it ends.

/// The layers of the fence, as bits.
enum DecodeLayer : std::uint8_t {
  kApart = 1,     // a process of its own
  kFewCalls = 2,  // only those of the system's calls that decoding needs
  kNoFiles = 4,   // no file can be opened
  kLimits = 8,    // of memory, time, size and number of files
  kAllLayers = 15,
};

/// The exit codes of a process that is not of the program's build, and of one whose module cannot
/// be loaded.
inline constexpr int kOtherBuild = 3, kNoModule = 4;

/// Comes with three files: the picture to be read, an empty memory file for the pixels, and one
/// that holds a DecodeReport.
struct DecodeRequest {
  std::uint64_t FileSize = 0;
  std::array<char, 256> Name{};  // ends with a 0; a type without a mark is known by its ending
};

/// Left: to the decoder with the picture library.
enum class DecodeVerdict : int { None, Picture, Refused, NoMemory, Left };

/// In memory that both share. Only `Operation` is read while the process runs.
struct DecodeReport {
  PictureOperation Operation;
  DecodeVerdict Verdict = DecodeVerdict::None;
  int Width = 0, Height = 0;  // of the picture, whose pixels then fill the memory file
  std::uint32_t TextSize = 0;
  std::array<char, 4096> Text{};  // the reason, or the warning: a deferred text
};

}  // namespace graphize
