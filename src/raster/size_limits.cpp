#include "raster/size_limits.h"

namespace graphize {

std::string SizeRule() {
  return "Width and height may be at most " + std::to_string(kMaxPictureSide) +
         " pixels, and all together at most " + std::to_string(kMaxPicturePixels / 1'000'000) +
         " million.";
}

namespace {

std::string RefusalOf(std::int64_t width, std::int64_t height, std::int64_t maxSide) {
  const std::string size = std::to_string(width) + " x " + std::to_string(height);
  if (width < 1 || height < 1)
    return "The file is damaged: its picture would be " + size + " pixels.";
  if (width > maxSide || height > maxSide)
    return "The picture is too large: it is " + size +
           " pixels, and neither width nor height may " + "be more than " +
           std::to_string(maxSide) + ".";
  if (width * height > kMaxPicturePixels)
    return "The picture is too large: it is " + size + " pixels, which is " +
           std::to_string(width * height / 1'000'000) + " million, and at most " +
           std::to_string(kMaxPicturePixels / 1'000'000) + " million can be opened.";
  return {};
}

}  // namespace

std::string SizeRefusal(std::int64_t width, std::int64_t height) {
  return RefusalOf(width, height, kMaxPictureSide);
}

std::string DecodeRefusal(std::int64_t width, std::int64_t height) {
  return RefusalOf(width, height, kMaxDecodedSide);
}

}  // namespace graphize
