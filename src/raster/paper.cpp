#include "raster/paper.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace graphize {

namespace {

/// The middle of 256 counted levels.
float MiddleOf(const std::array<int, 256>& counts, int total) {
  int below = 0;
  for (int level = 0; level < 256; ++level) {
    below += counts[static_cast<std::size_t>(level)];
    if (2 * below >= total) return static_cast<float>(level);
  }
  return 255;
}

Rgb MedianOf(const Raster& picture, int left, int top, int right, int bottom) {
  std::array<std::array<int, 256>, 3> counts{};
  int total = 0;
  // Of large blocks a part says the same.
  const int step = right - left > 128 ? 3 : 1;
  for (int y = top; y < bottom; y += step) {
    const std::uint32_t* row = picture.Row(y);
    for (int x = left; x < right; x += step, ++total) {
      ++counts[0][row[x] >> 16 & 0xff];
      ++counts[1][row[x] >> 8 & 0xff];
      ++counts[2][row[x] & 0xff];
    }
  }
  return {MiddleOf(counts[0], total), MiddleOf(counts[1], total), MiddleOf(counts[2], total)};
}

float Middle(std::vector<float>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

float LargestPart(Rgb d) {
  return std::max({std::fabs(d.R), std::fabs(d.G), std::fabs(d.B)});
}

/// Each block becomes the median of itself and its neighbours: one that is mostly ink goes along
/// with them.
void Smooth(Paper& paper) {
  const std::vector<Rgb> from = paper.Blocks;
  std::array<std::vector<float>, 3> around;
  for (int row = 0; row < paper.Rows; ++row) {
    for (int column = 0; column < paper.Columns; ++column) {
      for (auto& channel : around) channel.clear();
      for (int y = std::max(row - 1, 0); y <= std::min(row + 1, paper.Rows - 1); ++y) {
        for (int x = std::max(column - 1, 0); x <= std::min(column + 1, paper.Columns - 1); ++x) {
          const Rgb colour = from[static_cast<std::size_t>(y) * paper.Columns + x];
          around[0].push_back(colour.R);
          around[1].push_back(colour.G);
          around[2].push_back(colour.B);
        }
      }
      paper.Blocks[static_cast<std::size_t>(row) * paper.Columns + column] = {
          Middle(around[0]), Middle(around[1]), Middle(around[2])};
    }
  }
}

/// From the median distance of pixels to the paper, which ink hardly moves.
float GrainOf(const Raster& picture, const Paper& paper) {
  std::vector<float> distances;
  const int step =
      std::max(1, static_cast<int>(std::sqrt(static_cast<double>(picture.PixelCount()) / 40000)));
  for (int y = step / 2; y < picture.Height(); y += step)
    for (int x = step / 2; x < picture.Width(); x += step) {
      const Rgb d = RgbOf(picture.Row(y)[x]) - paper.At(x, y);
      distances.push_back(std::fabs(d.R + d.G + d.B) / 3);
    }
  return 1.4826f * Middle(distances);
}

}  // namespace

Rgb Paper::At(int x, int y) const {
  if (IsFlat) return Colour;
  const auto side = static_cast<float>(Side);
  const float u = std::clamp((static_cast<float>(x) + 0.5f) / side - 0.5f, 0.0f,
                             static_cast<float>(Columns - 1));
  const float v =
      std::clamp((static_cast<float>(y) + 0.5f) / side - 0.5f, 0.0f, static_cast<float>(Rows - 1));
  const int left = static_cast<int>(u), top = static_cast<int>(v);
  const int right = std::min(left + 1, Columns - 1), bottom = std::min(top + 1, Rows - 1);
  const float s = u - static_cast<float>(left), t = v - static_cast<float>(top);
  const auto block = [&](int column, int row) {
    return Blocks[static_cast<std::size_t>(row) * Columns + column];
  };
  return (1 - t) * ((1 - s) * block(left, top) + s * block(right, top)) +
         t * ((1 - s) * block(left, bottom) + s * block(right, bottom));
}

Paper PaperOf(const Raster& picture, const PictureOperation* operation) {
  Paper paper;
  paper.Side = std::clamp(std::min(picture.Width(), picture.Height()) / 16, 24, 256);
  paper.Columns = std::max(picture.Width() / paper.Side, 1);
  paper.Rows = std::max(picture.Height() / paper.Side, 1);
  for (int row = 0; row < paper.Rows; ++row) {
    const int bottom = row + 1 == paper.Rows ? picture.Height() : (row + 1) * paper.Side;
    for (int column = 0; column < paper.Columns; ++column) {
      if (operation && operation->Stopped) return {};
      const int right = column + 1 == paper.Columns ? picture.Width() : (column + 1) * paper.Side;
      paper.Blocks.push_back(
          MedianOf(picture, column * paper.Side, row * paper.Side, right, bottom));
    }
  }
  Smooth(paper);
  std::array<std::vector<float>, 3> channels;
  for (const Rgb& block : paper.Blocks) {
    channels[0].push_back(block.R);
    channels[1].push_back(block.G);
    channels[2].push_back(block.B);
  }
  paper.Colour = {Middle(channels[0]), Middle(channels[1]), Middle(channels[2])};
  constexpr float kSame = 6;
  const auto same = std::count_if(paper.Blocks.begin(), paper.Blocks.end(), [&](Rgb block) {
    return LargestPart(block - paper.Colour) <= kSame;
  });
  paper.IsFlat = 20 * same >= 19 * static_cast<std::ptrdiff_t>(paper.Blocks.size());
  paper.Grain = GrainOf(picture, paper);
  return paper;
}

}  // namespace graphize
