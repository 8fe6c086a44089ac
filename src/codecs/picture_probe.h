#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace graphize {

/// The types of picture files that are opened. A DIB is a bitmap without its file header.
enum class PictureType { None, Tif, Tga, Bmp, Gif, Dib, Pcx, Jpg, Png, WebP };

/// Bytes of a file's start that are enough to know its type.
inline constexpr std::size_t kProbeSize = 4096;

/// What the probe found out about a file.
struct ProbeResult {
  PictureType Type = PictureType::None;
  /// Where the type has them at a fixed place; 0 when only a decoder can tell.
  std::int64_t Width = 0;
  std::int64_t Height = 0;
  bool Mirrored = false;  // rows are stored from right to left
  bool Opaque = false;    // by its header, whatever a decoder makes of spare bytes
  std::string Refusal;    // why the file is not opened, a sentence in plain words; else empty
};

/// Looks at a file before any decoder does. The content decides; only for TGA, which has no mark of
/// its own, the extension of `fileName` makes an unusual header believable. `head` is the file's
/// first kProbeSize bytes or all of a shorter one.
ProbeResult ProbePicture(std::string_view fileName, std::string_view head);

/// The bytes of a picture file that passes the probe, at most 2 GiB; of others only the start is
/// read. Throws RunTimeError with the refusal or the system's reason alone.
std::string ReadPictureFile(const std::filesystem::path& path, ProbeResult& verdict);

}  // namespace graphize
