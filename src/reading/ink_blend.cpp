#include "reading/ink_blend.h"

#include <algorithm>
#include <cmath>

namespace graphize {

InkBlends::InkBlends(const Raster& picture, const Paper& paper, const std::vector<Rgb>& directions,
                     const Ink& ink)
    : picture_(picture), paper_(paper), ink_(ink) {
  // Inks of nearly one direction cannot be parted.
  constexpr float kApart = 0.97f;
  for (const Rgb& direction : directions)
    if (const float cosine = Dot(direction, ink.Direction); cosine < kApart)
      others_.push_back({direction, cosine});
}

std::optional<double> InkBlends::ShareAt(const InkMap& map, int x, int y) const {
  const std::uint8_t value = map.At(x, y);
  if (value < InkMap::kBeside) return std::nullopt;
  const Rgb d = paper_.At(x, y) - RgbOf(picture_.Row(y)[x]);
  const float own = Dot(d, ink_.Direction), squared = Dot(d, d);
  const float noise = 6 + 3 * paper_.Grain;
  if (squared - own * own < noise * noise) {
    // Of the ink alone, and yet hidden: a line of its colour lies there.
    if (value == InkMap::kHidden) return std::nullopt;
    return std::clamp(own / ink_.Strength, 0.0f, 1.0f);
  }
  float least = std::max(noise * noise, 0.01f * squared), share = -1;
  for (const Other& other : others_) {
    // Least squares of d = a * own + b * other, both unit vectors at the angle of `Cosine`.
    const float theirs = Dot(d, other.Direction);
    const float sine = 1 - other.Cosine * other.Cosine;
    const float a = std::max((own - other.Cosine * theirs) / sine, 0.0f);
    const float b = a > 0 ? (theirs - other.Cosine * own) / sine : theirs;
    if (b < 0) continue;
    const Rgb rest = d - a * ink_.Direction - b * other.Direction;
    if (Dot(rest, rest) >= least) continue;
    least = Dot(rest, rest);
    share = a / ink_.Strength;
  }
  if (share < 0 || share > 1.15f) return std::nullopt;
  return std::min(share, 1.0f);
}

}  // namespace graphize
