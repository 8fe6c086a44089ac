#include "image_tools/picture_tools.h"

#include <algorithm>
#include <fstream>
#include <limits>

#include "base/translation.h"
#include "image_tools/colour_reduction.h"
#include "image_tools/neighbourhood_filters.h"
#include "image_tools/scaling.h"
#include "raster/black_white.h"
#include "raster/parallel_rows.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

/// Exchanges light and dark; the fourth byte stays.
std::optional<Raster> Negate(const Raster& picture, PictureOperation& operation) {
  return RasterByRows(
      picture.Width(), picture.Height(), operation, [&](Raster& result, int first, int end) {
        std::transform(picture.Row(first), picture.Row(end - 1) + picture.Width(),
                       result.Row(first), [](std::uint32_t pixel) { return pixel ^ 0xffffffu; });
      });
}

/// The least number of pixels each way.
int Neighbourhood(PictureTool tool) {
  switch (tool) {
    case PictureTool::Blur:
      return kBlurNeighbourhood;
    case PictureTool::EdgeDetect:
    case PictureTool::Sharpen:
    case PictureTool::Soften:
      return kSmallNeighbourhood;
    default:
      return 1;
  }
}

std::int64_t Megabytes(std::int64_t bytes) {
  return bytes / 1'000'000;
}

}  // namespace

PictureSize ResultSize(PictureTool tool, int amount, PictureSize size) {
  switch (tool) {
    case PictureTool::Resize:
    case PictureTool::Stretch:
      return {(size.Width * amount + 50) / 100, (size.Height * amount + 50) / 100};
    case PictureTool::Rotate:
      return RotatedSize(size, amount);
    default:
      return size;
  }
}

AffineMap MapOf(PictureTool tool, int amount, PictureSize size) {
  if (tool == PictureTool::Rotate) return RotationMap(size, amount);
  const auto [width, height] = ResultSize(tool, amount, size);
  // Edges come to edges, and pixels' middles lie half a pixel within.
  return Turned(1, 0, static_cast<double>(width) / static_cast<double>(size.Width),
                static_cast<double>(height) / static_cast<double>(size.Height), -0.5, -0.5, -0.5,
                -0.5);
}

bool IsTooSmall(PictureTool tool, int amount, PictureSize size) {
  const PictureSize result = ResultSize(tool, amount, size);
  return std::min(size.Width, size.Height) < Neighbourhood(tool) ||
         std::min(result.Width, result.Height) < 1;
}

std::string ResultRefusal(PictureTool tool, int amount, PictureSize size, std::int64_t freeMemory) {
  const auto [width, height] = ResultSize(tool, amount, size);
  if (std::max(width, height) > kMaxPictureSide)
    return Tr(
        "The picture would be too large: %1 x %2 pixels, and neither width nor height may be more "
        "than %3.",
        width, height, kMaxPictureSide);
  const std::int64_t pixels = width * height;
  if (pixels > kMaxPicturePixels)
    return Tr(
        "The picture would be too large: %1 x %2 pixels are %3 million, and at most %4 million are "
        "possible.",
        width, height, pixels / 1'000'000, kMaxPicturePixels / 1'000'000);
  const std::int64_t needed = 4 * pixels;
  if (needed > freeMemory)
    return Tr("There is not enough memory: the picture needs %1 MB, and %2 MB are free.",
              Megabytes(needed), Megabytes(freeMemory));
  return {};
}

std::int64_t FreeMemory() {
  std::int64_t available = -1, swap = 0;
  std::ifstream file("/proc/meminfo");  // lines such as "MemAvailable:  1234 kB"
  std::string key, unit;
  for (std::int64_t value = 0; file >> key >> value;) {
    if (key == "MemAvailable:") available = 1024 * value;
    if (key == "SwapFree:") swap = 1024 * value;
    std::getline(file, unit);
  }
  return available < 0 ? std::numeric_limits<std::int64_t>::max() : available + swap;
}

std::optional<ColourTable> QueryPalette(const Raster& picture, const PictureProgress& progress) {
  return RunBeside(
      progress, [&](PictureOperation& operation) { return ColourTable::Of(picture, operation); });
}

std::optional<Raster> RunTool(PictureTool tool, int amount, const Raster& picture,
                              const ColourTable* palette, const PictureProgress& progress) {
  const auto [width, height] = ResultSize(tool, amount, {picture.Width(), picture.Height()});
  const auto run = [&, w = static_cast<int>(width),
                    h = static_cast<int>(height)](PictureOperation& operation) {
    switch (tool) {
      case PictureTool::Blur:
        return Blur(picture, operation);
      case PictureTool::EdgeDetect:
        return DetectEdges(picture, amount, operation);
      case PictureTool::Negate:
        return Negate(picture, operation);
      case PictureTool::Sharpen:
        return Sharpen(picture, amount, operation);
      case PictureTool::Soften:
        return Soften(picture, amount, operation);
      case PictureTool::Resize:
        return Resize(picture, w, h, palette, operation);
      case PictureTool::Stretch:
        return Stretch(picture, w, h, operation);
      case PictureTool::Rotate:
        return Rotate(picture, amount, palette != nullptr && palette->AreGrey(), operation);
    }
    return std::optional<Raster>();
  };
  return RunBeside(progress, run);
}

bool ReduceDepth(Raster& picture, const ColourTable& before, const PictureProgress& progress) {
  return RunBeside(progress, [&](PictureOperation& operation) {
    return before.AreBlackAndWhite() ? ReduceToBlackAndWhite(picture, kMiddleOfRange, operation)
                                     : ReduceToPalette(picture, operation);
  });
}

}  // namespace graphize
