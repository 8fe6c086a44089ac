#include "raster/size_limits.h"

namespace graphize {

std::string SizeRule() {
  return "Width and height may be at most " + std::to_string(kMaxPictureSide) +
         " pixels, and all together at most " + std::to_string(kMaxPicturePixels / 1'000'000) +
         " million.";
}

std::string SizeRefusal(std::int64_t width, std::int64_t height) {
  const std::string size = std::to_string(width) + " x " + std::to_string(height);
  if (width < 1 || height < 1)
    return "The file is damaged: its picture would be " + size + " pixels.";
  if (width > kMaxPictureSide || height > kMaxPictureSide)
    return "The picture is too large: it is " + size +
           " pixels, and neither width nor height may " + "be more than " +
           std::to_string(kMaxPictureSide) + ".";
  if (width * height > kMaxPicturePixels)
    return "The picture is too large: it is " + size + " pixels, which is " +
           std::to_string(width * height / 1'000'000) + " million, and at most " +
           std::to_string(kMaxPicturePixels / 1'000'000) + " million can be opened.";
  return {};
}

}  // namespace graphize
