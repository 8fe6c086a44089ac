#include "reading/ink_mask.h"

#include <algorithm>
#include <vector>

#include "raster/parallel_rows.h"
#include "reading/ink_map.h"

namespace graphize {

namespace {

/// The picture's own ink within 20 degrees of the one that is asked for, which compression and thin
/// strokes turn and make weaker; the one that is asked for where there is none.
Ink InkLike(const Ink& asked, const std::vector<PictureInk>& inks) {
  constexpr float kLike = 0.9397f;  // cosine
  Ink like = asked;
  float nearest = kLike;
  for (const PictureInk& ink : inks) {
    const float near = Dot(ink.Of.Direction, asked.Direction);
    if (near < nearest) continue;
    const bool isOther = near > nearest;  // than pale and dark ones of one direction
    nearest = near;
    like = {ink.Of.Direction, isOther ? ink.Of.Strength : std::max(like.Strength, ink.Of.Strength)};
  }
  like.Strength = std::min(like.Strength, asked.Strength);
  return like;
}

}  // namespace

std::optional<Raster> InkAlone(const Raster& picture, std::uint32_t colour, float tolerance,
                               PictureOperation& operation) {
  constexpr float kLeastDifference = 12;  // levels: less is the paper itself
  constexpr std::uint8_t kHalf = InkMap::kFull / 2, kFaint = InkMap::kFull / 5;
  const Paper paper = PaperOf(picture);
  const Rgb difference = paper.Colour - RgbOf(colour);
  const float strength = Length(difference);
  if (strength < kLeastDifference) return std::nullopt;
  const Ink ink =
      InkLike({(1 / strength) * difference, strength}, InksOf(picture, paper, &operation));
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
