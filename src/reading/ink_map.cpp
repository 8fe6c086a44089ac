#include "reading/ink_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// What a pixel's difference to the paper says.
class Judge {
 public:
  Judge(const Paper& paper, const std::vector<Rgb>& directions, const Ink& ink, float tolerance)
      : scale_(1 / ink.Strength),
        direction_(ink.Direction),
        floor_(std::clamp(2.5f * paper.Grain / ink.Strength, 0.05f, 0.35f) / tolerance),
        clear_(std::max(0.25f * ink.Strength, 4 * paper.Grain)),
        bias_((tolerance - 1) * (1 - std::cos(12 * kDegree))),
        foreign_(std::cos(std::min(30 * tolerance, 60.0f) * kDegree)) {
    const float apart = std::cos(9 * kDegree);
    for (const Rgb& other : directions)
      if (Dot(other, direction_) < apart) others_.push_back(other);
  }

  std::uint8_t Of(Rgb d) const {
    const float share = Dot(d, direction_) * scale_;
    const float length = Length(d);
    if (length > clear_) {
      const float own = Dot(d, direction_) / length;
      if (share > 1.5f) return InkMap::kHidden;
      for (const Rgb& other : others_)
        if (Dot(d, other) > length * (own + bias_)) return InkMap::kHidden;
      if (own < foreign_) return InkMap::kHidden;
    }
    if (share < floor_) return 0;
    return static_cast<std::uint8_t>(std::lround(std::min(share, 1.0f) * InkMap::kFull));
  }

 private:
  static constexpr float kDegree = std::numbers::pi_v<float> / 180;
  float scale_;
  Rgb direction_;
  float floor_, clear_;
  float bias_;     // cosine that the own direction is given before the others
  float foreign_;  // cosine below which nothing is a blend of ink and paper
  std::vector<Rgb> others_;
};

/// A pixel of half ink beside one that is hidden may be a blend with it.
void MarkBeside(InkMap& map, int y) {
  std::uint8_t* row = &map.Cell(0, y);
  for (int x = 0; x < map.Width; ++x) {
    const std::uint8_t value = row[x];
    if (value == 0 || value > InkMap::kFull * 9 / 10) continue;
    bool beside = false;
    for (int v = y - 1; v <= y + 1 && !beside; ++v)
      for (int u = x - 1; u <= x + 1 && !beside; ++u)
        beside = map.Contains(u, v) && map.At(u, v) == InkMap::kHidden;
    if (beside) row[x] = InkMap::kBeside;
  }
}

}  // namespace

InkMap MapOf(const Raster& picture, const Paper& paper, const std::vector<Rgb>& directions,
             const Ink& ink, float tolerance, PictureOperation& operation) {
  InkMap map{picture.Width(), picture.Height(), SparseBytes(picture.PixelCount())};
  const Judge judge(paper, directions, ink, tolerance);
  // Of drawn pictures nearly all pixels are like the one before.
  const auto read = [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint32_t* pixels = picture.Row(y);
      std::uint8_t* row = &map.Cell(0, y);
      std::uint8_t value = 0;
      for (int x = 0; x < map.Width; ++x) {
        if (x == 0 || !paper.IsFlat || pixels[x] != pixels[x - 1])
          value = judge.Of(paper.At(x, y) - RgbOf(pixels[x]));
        if (value != 0) row[x] = value;
      }
    }
  };
  if (!ParallelRows(map.Width, map.Height, operation, read)) return {};
  for (int y = 0; y < map.Height && !operation.Stopped; ++y) MarkBeside(map, y);
  return operation.Stopped ? InkMap{} : std::move(map);
}

}  // namespace graphize
