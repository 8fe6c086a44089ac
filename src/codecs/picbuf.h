#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

struct LoadedPicture {
  Raster Picture;
  /// What is wrong with a picture that could be opened all the same, sentences in plain words.
  std::string Warning;
  // Of the file as it was read.
  std::uintmax_t FileSize = 0;
  std::uint32_t FileChecksum = 0;  // Crc32
};

/// The first picture in a file of any type that the probe admits (codecs/picture_probe.h), upright
/// as its camera or scanner says, on white where it is transparent. Nothing when `progress` stopped
/// it. Throws RunTimeError whose text names the file and the reason.
///
/// It is decoded by a process of its own, which can do nothing else; whatever a file does to that
/// is an error here. Where the system allows none, it is decoded within this one: that takes up to
/// 5 times the raster's size while it runs; else there is only the raster.
std::optional<LoadedPicture> LoadPicture(const std::filesystem::path& path,
                                         const PictureProgress& progress = {});

/// The same from a file's bytes; `name` is told in errors, and its ending helps to know the type.
std::optional<LoadedPicture> DecodePicture(const std::string& name, const std::string& bytes,
                                           const PictureProgress& progress = {});

/// Who reads a picture: the library of its type where that can, or always the picture library.
enum class DecodeBy { Fastest, PictureLibrary };

/// The same within this process, whatever the system allows.
std::optional<LoadedPicture> DecodePictureHere(const std::string& name, const std::string& bytes,
                                               const PictureProgress& progress = {},
                                               DecodeBy by = DecodeBy::Fastest);

/// Starts what decodes pictures before there is one, which takes as long as decoding a small one;
/// what is not started here, the first picture starts that needs it. Usual: for the types that have
/// readers of their own. None ends it all: a process that is forked of this one cannot use it.
enum class DecodersReady { None, Usual, All };
void PrepareToDecode(DecodersReady which = DecodersReady::All);

/// Why a picture may do more than it could in a process of its own that is fenced in on all sides:
/// sentences in plain words, none where everything holds. Of the latest pictures, or of the first
/// ones to come; known after the first picture, or PrepareToDecode.
std::string MissingDecodeProtection();
/// The sentence that tells it, once a picture was decoded within this program for lack of a
/// process: nothing held it back.
std::string DecodedWithinProgram();

/// Writes a picture by format code and option (codecs/file_format.h); at most 256 colours are
/// stored as a table of colours where the type knows one, but not in a PNG, more are reduced to 256
/// for a GIF. The old file is replaced only when all has gone well. False when `progress` stopped
/// it. Throws RunTimeError whose text names the file and the reason.
bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress = {});

/// What SavePicture would write; nothing when `progress` stopped it. RunTimeError with the reason.
std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress = {});

}  // namespace graphize
