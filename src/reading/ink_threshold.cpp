#include "reading/ink_threshold.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "raster/luminance.h"
#include "raster/paper.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr float kLeastDifference = 12;  // levels: fainter is grain
constexpr std::uint32_t kColourBits = 0xffffffu;

using Levels = std::array<int, 256>;

/// The level that `part` of the counted ones do not exceed, from `least` on; absent below `fewest`.
std::optional<int> Quantile(const Levels& counts, int least, double part, long fewest = 1) {
  long all = 0;
  for (int level = least; level < 256; ++level) all += counts[static_cast<std::size_t>(level)];
  if (all < fewest) return std::nullopt;
  long below = 0;
  for (int level = least; level < 256; ++level) {
    below += counts[static_cast<std::size_t>(level)];
    if (static_cast<double>(below) >= part * static_cast<double>(all)) return level;
  }
  return 255;
}

float Luminance(Rgb colour) {
  return LuminanceOf(colour.R, colour.G, colour.B) / 1000;
}

/// Every few pixels of a part of the picture.
template <class Visit>
void Sample(int left, int top, int right, int bottom, const Visit& visit) {
  const int step = right - left > 128 ? 5 : right - left > 64 ? 2 : 1;
  for (int y = top; y < bottom; y += step)
    for (int x = left; x < right; x += step) visit(x, y);
}

/// The ground of a picture, in which dark and light are exchanged where `Flip` says so: what is
/// drawn is darker than it.
struct Ground {
  Paper Of;
  std::uint32_t Flip = 0;

  Rgb At(int x, int y) const { return Of.At(x, y); }
  Rgb PixelAt(const Raster& picture, int x, int y) const { return RgbOf(picture.Row(y)[x] ^ Flip); }
};

Rgb Negative(Rgb colour) {
  return Rgb{255, 255, 255} - colour;
}

/// Of no use when the operation was stopped.
Ground GroundOf(const Raster& picture, const PictureOperation& operation) {
  Ground ground{.Of = PaperOf(picture, &operation)};
  if (operation.Stopped) return ground;
  double darker = 0, lighter = 0;
  const int step =
      std::max(1, static_cast<int>(std::sqrt(static_cast<double>(picture.PixelCount()) / 200000)));
  for (int y = step / 2; y < picture.Height(); y += step)
    for (int x = step / 2; x < picture.Width(); x += step) {
      const Rgb d = ground.At(x, y) - ground.PixelAt(picture, x, y);
      const float high = std::max({d.R, d.G, d.B}), low = -std::min({d.R, d.G, d.B});
      const float least = std::max(kLeastDifference, 6 * ground.Of.Grain);
      if (high > least && high > low) darker += high;
      if (low > least && low > high) lighter += low;
    }
  if (lighter > darker) {
    ground.Flip = kColourBits;
    ground.Of.Colour = Negative(ground.Of.Colour);
    for (Rgb& block : ground.Of.Blocks) block = Negative(block);
  }
  // A block this much darker than the others is a filled area, not paper in the shade.
  const float least = 0.45f * Luminance(ground.Of.Colour);
  for (Rgb& block : ground.Of.Blocks)
    if (Luminance(block) < least) block = ground.Of.Colour;
  return ground;
}

/// In which of the channels something is darkest against the ground; 0 where it is lighter.
int Difference(const Ground& ground, const Raster& picture, int x, int y) {
  const Rgb d = ground.At(x, y) - ground.PixelAt(picture, x, y);
  return static_cast<int>(std::clamp(std::max({d.R, d.G, d.B}), 0.0f, 255.0f));
}

/// For blocks of the picture, below which colour a pixel is ink, and below which it is faint.
struct Limits {
  int Side = 0, Columns = 0, Rows = 0;
  std::uint32_t Flip = 0;
  std::vector<std::array<float, 6>> Blocks;  // red, green, blue of either

  /// The limits of a row of pixels, one array for each of the six.
  void OfRow(int y, int width, std::array<std::vector<std::uint8_t>, 6>& limits) const {
    const auto at = [&](int pixel, int count) {
      return std::clamp((static_cast<float>(pixel) + 0.5f) / static_cast<float>(Side) - 0.5f, 0.0f,
                        static_cast<float>(count - 1));
    };
    const float v = at(y, Rows);
    const int top = static_cast<int>(v), bottom = std::min(top + 1, Rows - 1);
    const float t = v - static_cast<float>(top);
    const auto* upper = &Blocks[static_cast<std::size_t>(top) * Columns];
    const auto* lower = &Blocks[static_cast<std::size_t>(bottom) * Columns];
    for (std::size_t c = 0; c < limits.size(); ++c) {
      limits[c].resize(static_cast<std::size_t>(width));
      const auto block = [&](int column) {
        return (1 - t) * upper[column][c] + t * lower[column][c];
      };
      // From the centre of one block to that of the next; constant before the first and behind
      // the last.
      for (int from = 0, column = -1; column < Columns; ++column) {
        const int end =
            column + 1 < Columns ? std::min(Side * (column + 1) + Side / 2, width) : width;
        const float a = block(std::max(column, 0)), b = block(std::min(column + 1, Columns - 1));
        const float first = (static_cast<float>(column) + 0.5f) * static_cast<float>(Side);
        const float slope = (b - a) / static_cast<float>(Side);
        // The half rounds.
        const float start = a + 0.5f + slope * (static_cast<float>(from) + 0.5f - first);
        std::uint8_t* out = limits[c].data() + from;
        for (int i = 0; i < end - from; ++i)
          out[i] =
              static_cast<std::uint8_t>(static_cast<int>(start + slope * static_cast<float>(i)));
        from = std::max(from, end);
      }
    }
  }
};

/// Of no use when the operation was stopped.
Limits LimitsOf(const Raster& picture, PictureOperation& operation) {
  const Ground ground = GroundOf(picture, operation);
  const Paper& paper = ground.Of;
  Limits limits{paper.Side, paper.Columns, paper.Rows, ground.Flip, {}};
  const auto blockCount = static_cast<std::size_t>(paper.Columns) * paper.Rows;
  std::vector<Levels> counts(blockCount);
  const auto count = [&](int first, int end) {
    for (int row = first; row < end; ++row)
      for (int column = 0; column < paper.Columns; ++column) {
        Levels& block = counts[static_cast<std::size_t>(row) * paper.Columns + column];
        const int right = column + 1 == paper.Columns ? picture.Width() : (column + 1) * paper.Side;
        const int bottom = row + 1 == paper.Rows ? picture.Height() : (row + 1) * paper.Side;
        Sample(column * paper.Side, row * paper.Side, right, bottom, [&](int x, int y) {
          ++block[static_cast<std::size_t>(Difference(ground, picture, x, y))];
        });
      }
  };
  if (operation.Stopped ||
      !ParallelRows(picture.Width() * paper.Side, paper.Rows, operation, count))
    return limits;
  const auto sum = [](Levels& all, const Levels& block) {
    for (std::size_t i = 0; i < all.size(); ++i) all[i] += block[i];
  };
  Levels all{};
  for (const Levels& block : counts) sum(all, block);
  // Grain: what half of the pixels do not exceed, and what seven eighths do not.
  const int middle = Quantile(all, 0, 0.5).value_or(0);
  const float grain = static_cast<float>(Quantile(all, 0, 0.875).value_or(0) - middle) / 1.15f;
  const float spread = std::min(grain, 1.5f * paper.Grain + 0.5f);
  const float floor = static_cast<float>(middle) + 4 * spread;
  const int least = static_cast<int>(
      std::ceil(std::max(kLeastDifference, static_cast<float>(middle) + 6 * spread)));
  constexpr double kStrong = 0.9;
  const auto strongest = static_cast<float>(Quantile(all, least, kStrong).value_or(255));
  for (int row = 0; row < paper.Rows; ++row)
    for (int column = 0; column < paper.Columns; ++column) {
      Levels around{};
      for (int r = std::max(row - 1, 0); r <= std::min(row + 1, paper.Rows - 1); ++r)
        for (int c = std::max(column - 1, 0); c <= std::min(column + 1, paper.Columns - 1); ++c)
          sum(around, counts[static_cast<std::size_t>(r) * paper.Columns + c]);
      const auto strong =
          static_cast<float>(Quantile(around, least, kStrong, 12).value_or(strongest));
      // Where only pale lines are, they do not become ink.
      const float limit = std::max({0.47f * strong, 0.2f * strongest, floor});
      const Rgb here = paper.IsFlat
                           ? paper.Colour
                           : paper.Blocks[static_cast<std::size_t>(row) * paper.Columns + column];
      auto& block = limits.Blocks.emplace_back();
      const float channels[] = {here.R, here.G, here.B};
      for (std::size_t c = 0; c < 3; ++c) {
        block[c] = std::clamp(channels[c] - limit, 0.0f, 255.0f);
        block[c + 3] = std::clamp(channels[c] - std::max(0.4f * limit, floor), 0.0f, 255.0f);
      }
    }
  return limits;
}

bool ReduceLocally(Raster& picture, PictureOperation& operation) {
  const double from = operation.From, to = operation.To;
  operation.To = (from + to) / 2;
  const Limits limits = LimitsOf(picture, operation);
  operation.From = operation.To;
  operation.To = to;
  const int width = picture.Width();
  picture.Faint = BitMap(width, picture.Height());
  return ParallelRows(width, picture.Height(), operation, [&](int first, int end) {
    constexpr int kSameRows = 4, kWord = 64;
    std::array<std::vector<std::uint8_t>, 6> row;
    for (int y = first; y < end; ++y) {
      if (y == first || y % kSameRows == 0) limits.OfRow(y - y % kSameRows, width, row);
      std::uint32_t* pixels = picture.Row(y);
      for (int left = 0; left < width; left += kWord) {
        std::uint8_t isFaint[kWord] = {};
        const int count = std::min(kWord, width - left);
        for (int i = 0; i < count; ++i) {
          const auto at = static_cast<std::size_t>(left + i);
          const std::uint32_t pixel = pixels[at] ^ limits.Flip;
          const auto r = static_cast<std::uint8_t>(pixel >> 16),
                     g = static_cast<std::uint8_t>(pixel >> 8),
                     b = static_cast<std::uint8_t>(pixel);
          const bool isInk = (r < row[0][at]) | (g < row[1][at]) | (b < row[2][at]);
          const bool isDarker = (r < row[3][at]) | (g < row[4][at]) | (b < row[5][at]);
          pixels[at] = isInk ? kBlackPixel : kWhitePixel;
          isFaint[i] = static_cast<std::uint8_t>(isDarker & !isInk);
        }
        std::uint64_t bits = 0;
        for (int i = 0; i < kWord; ++i) bits |= static_cast<std::uint64_t>(isFaint[i]) << i;
        picture.Faint.Row(y)[left / kWord] = bits;
      }
    }
  });
}

/// The luminance halfway between the darkest paper and the ink. Of a picture that is light on a
/// dark ground, `LightOnDark`, the ink is what is lighter.
struct AutoLevel {
  float Level = kMiddleOfRange;
  bool LightOnDark = false;
};

/// Of no use when the operation was stopped.
AutoLevel AutoLevelOf(const Raster& picture, const PictureOperation& operation) {
  const Ground ground = GroundOf(picture, operation);
  if (operation.Stopped) return {};
  std::vector<float> papers;
  for (const Rgb& block : ground.Of.Blocks) papers.push_back(Luminance(block));
  const auto dark = papers.begin() + static_cast<std::ptrdiff_t>(papers.size() / 20);
  std::nth_element(papers.begin(), dark, papers.end());
  const float paper = ground.Of.IsFlat ? Luminance(ground.Of.Colour) : *dark;

  // How dark is what is drawn: the middle of the darker half.
  Levels inks{};
  const auto least = static_cast<int>(std::max(2 * kLeastDifference, 6 * ground.Of.Grain));
  const int step =
      std::max(1, static_cast<int>(std::sqrt(static_cast<double>(picture.PixelCount()) / 1000000)));
  for (int y = step / 2; y < picture.Height(); y += step)
    for (int x = step / 2; x < picture.Width(); x += step)
      if (Difference(ground, picture, x, y) >= least)
        ++inks[static_cast<std::size_t>(Luminance(ground.PixelAt(picture, x, y)))];
  const auto ink = Quantile(inks, 0, 0.25);
  AutoLevel level{.LightOnDark = ground.Flip != 0};
  if (ink && static_cast<float>(*ink) < paper) {
    level.Level = std::round(0.5f * (paper + static_cast<float>(*ink))) + 0.5f;
    if (level.LightOnDark) level.Level = 255 - level.Level;
  }
  return level;
}

}  // namespace

bool Reduce(Raster& picture, const InkThreshold& threshold, PictureOperation& operation) {
  if (picture.IsEmpty()) return true;
  if (threshold.Is == InkThreshold::Kind::Local) return ReduceLocally(picture, operation);
  AutoLevel level{.Level = threshold.Level};
  if (threshold.Is == InkThreshold::Kind::Auto) level = AutoLevelOf(picture, operation);
  if (level.LightOnDark) {
    ParallelRows(picture.Width(), picture.Height(), operation, [&](int first, int end) {
      std::uint32_t* const behind = picture.Row(end - 1) + picture.Width();
      for (std::uint32_t* p = picture.Row(first); p != behind; ++p) *p ^= kColourBits;
    });
    level.Level = 255 - level.Level;
  }
  return ReduceToBlackAndWhite(picture, level.Level, operation);
}

}  // namespace graphize
