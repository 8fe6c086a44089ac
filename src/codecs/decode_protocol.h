#pragma once

#include <array>
#include <cstdint>

#include "raster/picture_operation.h"

namespace graphize {

// What the program and the processes that decode pictures for it say to each other. One of them,
// the server, is started with the program's ModuleStamp, the path of the module that pictures are
// read by (one of two, codecs/picture_modules.h) and the seconds of processor time that one may
// take. It loads the module, says through its channel which layers will hold (a byte), and reads
// requests. For each it forks a decoder, whose parent is the program. The decoder fences itself in,
// says what it is (DecoderStart) through the channel that came with the request, and only then
// looks into the picture. What becomes of that is in the request's memory files when it ends. It is
// killed when the program's end of its channel is closed.

/// The layers of the fence, as bits.
enum DecodeLayer : std::uint8_t {
  kApart = 1,     // a process of its own
  kFewCalls = 2,  // only those of the system's calls that decoding needs
  kNoFiles = 4,   // no file can be opened
  kLimits = 8,    // of memory, time, size and number of files
  kAllLayers = 15,
};

/// The exit codes of a server that is not of the program's build, of one whose module cannot be
/// loaded, and of a decoder that has no memory for its report.
inline constexpr int kOtherBuild = 3, kNoModule = 4, kNoReport = 5;

/// The files that come with a request: the decoder's end of its channel, the picture to be read, an
/// empty memory file for the pixels, and one that holds a DecodeReport.
enum RequestFile : std::uint8_t {
  kChannelFile,
  kPictureFile,
  kPixelFile,
  kReportFile,
  kRequestFiles
};

struct DecodeRequest {
  std::uint64_t FileSize = 0;
  std::array<char, 256> Name{};  // ends with a 0; a type without a mark is known by its ending
};

/// The first message of a decoder, before a file could make it say anything; of the server, with an
/// Id of 0, where the system gives no process.
struct DecoderStart {
  std::int32_t Id = 0;  // of the process
  unsigned Layers = 0;  // that hold
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
