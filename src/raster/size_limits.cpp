#include "raster/size_limits.h"

#include "base/translation.h"

namespace graphize {

std::string SizeRule() {
  return Tr("Width and height may be at most %1 pixels, and all together at most %2 million.",
            kMaxPictureSide, kMaxPicturePixels / 1'000'000);
}

namespace {

std::string RefusalOf(std::int64_t width, std::int64_t height, std::int64_t maxSide) {
  if (width < 1 || height < 1)
    return Tr("The file is damaged: its picture would be %1 x %2 pixels.", width, height);
  if (width > maxSide || height > maxSide)
    return Tr(
        "The picture is too large: it is %1 x %2 pixels, and neither width nor height may be more "
        "than %3.",
        width, height, maxSide);
  if (width * height > kMaxPicturePixels)
    return Tr(
        "The picture is too large: it is %1 x %2 pixels, which is %3 million, and at most %4 "
        "million can be opened.",
        width, height, width * height / 1'000'000, kMaxPicturePixels / 1'000'000);
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
