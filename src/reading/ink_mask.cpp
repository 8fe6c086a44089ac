#include "reading/ink_mask.h"

#include "raster/parallel_rows.h"
#include "reading/ink_map.h"

namespace graphize {

std::optional<Raster> InkAlone(const Raster& picture, std::uint32_t colour, float tolerance,
                               PictureOperation& operation) {
  constexpr float kLeastDifference = 12;  // levels: less is the paper itself
  constexpr std::uint8_t kHalf = InkMap::kFull / 2, kFaint = InkMap::kFull / 5;
  const Paper paper = PaperOf(picture);
  const Rgb difference = paper.Colour - RgbOf(colour);
  const float strength = Length(difference);
  if (strength < kLeastDifference) return std::nullopt;
  const Ink ink{(1 / strength) * difference, strength};
  operation.To = 0.8;
  const InkMap map =
      MapOf(picture, paper, InkDirections(picture, paper), ink, tolerance, operation);
  if (operation.Stopped) return Raster();
  operation.From = 0.8;
  operation.To = 1;
  Raster alone(picture.Width(), picture.Height());
  alone.Faint = BitMap(picture.Width(), picture.Height());
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y)
      for (int x = 0; x < map.Width; ++x) {
        const std::uint8_t value = map.At(x, y);
        const bool isInk = value >= kHalf && value <= InkMap::kFull;
        alone.Row(y)[x] = isInk ? kBlackPixel : kWhitePixel;
        if (value >= kFaint && value < kHalf) alone.Faint.Set(x, y);
      }
  });
  return operation.Stopped ? Raster() : std::move(alone);
}

}  // namespace graphize
