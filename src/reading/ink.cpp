#include "reading/ink.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numbers>

namespace graphize {

namespace {

constexpr float kLeastDifference = 20;  // levels: fainter is paper
constexpr std::size_t kMostInks = 16;

float CosineOf(double degrees) {
  return static_cast<float>(std::cos(degrees * std::numbers::pi / 180));
}

Rgb Unit(Rgb d) {
  return (1 / Length(d)) * d;
}

/// Differences of pixels that differ no less than those around them.
std::vector<Rgb> Ridges(const Raster& picture, const Paper& paper,
                        const PictureOperation* operation = nullptr) {
  const int width = picture.Width(), height = picture.Height();
  // Of a large page, bands of rows are enough.
  const int band = 3,
            period = std::max(band, static_cast<int>(picture.PixelCount() / 700000) * band);
  std::vector<Rgb> ridges;
  std::vector<std::vector<float>> squares(3, std::vector<float>(static_cast<std::size_t>(width)));
  const auto read = [&](int y) {
    std::vector<float>& row = squares[static_cast<std::size_t>(y % 3)];
    const std::uint32_t* pixels = picture.Row(y);
    for (int x = 0; x < width; ++x) {
      const Rgb d = paper.At(x, y) - RgbOf(pixels[x]);
      row[static_cast<std::size_t>(x)] = Dot(d, d);
    }
  };
  for (int top = 0; top + 2 < height; top += period) {
    if (operation && operation->Stopped) break;
    const int end = std::min(period <= band ? top + band : top + band + 1, height - 2);
    for (int y = top; y < end; ++y) {
      for (int r = y; r < y + 3; ++r)
        if (y == top || r == y + 2) read(r);
      const float* rows[3];
      for (int r = 0; r < 3; ++r) rows[r] = squares[static_cast<std::size_t>((y + r) % 3)].data();
      for (int x = 1; x + 1 < width; ++x) {
        const float here = rows[1][x];
        if (here < kLeastDifference * kLeastDifference) continue;
        bool isRidge = true;
        for (int r = 0; r < 3 && isRidge; ++r)
          isRidge = here >= rows[r][x - 1] && here >= rows[r][x] && here >= rows[r][x + 1];
        if (isRidge) ridges.push_back(paper.At(x, y + 1) - RgbOf(picture.Row(y + 1)[x]));
      }
    }
  }
  return ridges;
}

}  // namespace

std::vector<Rgb> InkDirections(const Raster& picture, const Paper& paper,
                               const PictureOperation* operation) {
  std::vector<Rgb> ridges = Ridges(picture, paper, operation);
  std::vector<Rgb> found;
  if (ridges.empty()) return found;
  std::vector<float> lengths;
  for (const Rgb& d : ridges) lengths.push_back(Length(d));
  const auto strong = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() * 9 / 10);
  std::nth_element(lengths.begin(), strong, lengths.end());
  const float least = *strong / 4;
  std::erase_if(ridges, [&](const Rgb& d) { return Length(d) < least; });

  // Cells of directions, then the mean about the fullest cell, again and again.
  struct Cell {
    Rgb Sum;
    int Count = 0;
  };
  std::map<int, Cell> cells;
  for (const Rgb& d : ridges) {
    const Rgb unit = Unit(d);
    const auto step = [](float part) { return static_cast<int>(std::lround(part * 24)) + 32; };
    Cell& cell = cells[(step(unit.R) * 64 + step(unit.G)) * 64 + step(unit.B)];
    cell.Sum = cell.Sum + unit;
    ++cell.Count;
  }
  std::vector<Cell> left;
  for (const auto& [key, cell] : cells) left.push_back(cell);
  const float near = CosineOf(8);
  const int least_count = std::max(8, static_cast<int>(ridges.size() / 400));
  while (found.size() < kMostInks && !left.empty()) {
    Rgb centre = std::max_element(left.begin(), left.end(), [](const Cell& a, const Cell& b) {
                   return a.Count < b.Count;
                 })->Sum;
    int count = 0;
    for (int round = 0; round < 2; ++round) {
      centre = Unit(centre);
      Rgb sum;
      count = 0;
      for (const Cell& cell : left) {
        if (Dot(Unit(cell.Sum), centre) < near) continue;
        sum = sum + cell.Sum;
        count += cell.Count;
      }
      if (count > 0) centre = sum;
    }
    if (count < least_count) break;
    centre = Unit(centre);
    const bool isNew = std::none_of(found.begin(), found.end(),
                                    [&](Rgb other) { return Dot(other, centre) >= near; });
    if (isNew) found.push_back(centre);
    const std::size_t before = left.size();
    std::erase_if(left, [&](const Cell& cell) { return Dot(Unit(cell.Sum), centre) >= near; });
    if (left.size() == before) break;
  }
  return found;
}

std::vector<PictureInk> InksOf(const Raster& picture, const Paper& paper,
                               const PictureOperation* operation) {
  const std::vector<Rgb> directions = InkDirections(picture, paper, operation);
  std::vector<std::vector<float>> lengths(directions.size());
  std::size_t all = 0;
  for (const Rgb& d : Ridges(picture, paper, operation)) {
    const auto nearest = std::max_element(directions.begin(), directions.end(),
                                          [&](Rgb a, Rgb b) { return Dot(a, d) < Dot(b, d); });
    const float length = Length(d);
    if (nearest == directions.end() || length < 3.5f * paper.Grain ||
        Dot(*nearest, d) < CosineOf(14) * length)
      continue;
    lengths[static_cast<std::size_t>(nearest - directions.begin())].push_back(length);
    ++all;
  }
  std::vector<PictureInk> inks;
  for (std::size_t i = 0; i < directions.size(); ++i) {
    std::vector<float>& left = lengths[i];
    std::sort(left.begin(), left.end(), std::greater());
    // From the strongest down: what is weaker than half of it, and as even among itself, is drawn
    // with another ink, such as a pale grid. Few pixels are enough: a grid may have many more.
    const std::size_t enough = std::max<std::size_t>(8, all / 800);
    for (std::size_t first = 0; first + enough <= left.size();) {
      std::size_t top = first;
      while (top + enough < left.size() && left[top + enough - 1] < 0.85f * left[top]) ++top;
      const float least = 0.45f * left[top];
      std::size_t end = top;
      while (end < left.size() && left[end] >= least) ++end;
      const float usual = left[top + (end - top) / 12];
      const float strength = usual >= 0.85f * left[top] ? usual : left[top + enough / 2];
      if (end - top >= enough)
        inks.push_back({{directions[i], strength},
                        paper.Colour - strength * directions[i],
                        static_cast<float>(end - top) / static_cast<float>(all)});
      first = std::max(end, first + 1);
    }
  }
  std::stable_sort(inks.begin(), inks.end(),
                   [](const PictureInk& a, const PictureInk& b) { return a.Share > b.Share; });
  return inks;
}

std::optional<Ink> InkAt(const Raster& picture, const Paper& paper,
                         const std::vector<Rgb>& directions, double x, double y, int reach) {
  const auto difference = [&](int column, int row) {
    return paper.At(column, row) - RgbOf(picture.Row(row)[column]);
  };
  const auto around = [&](int distance, const auto& visit) {
    const int cx = static_cast<int>(std::lround(x)), cy = static_cast<int>(std::lround(y));
    for (int row = std::max(cy - distance, 0); row <= std::min(cy + distance, picture.Height() - 1);
         ++row)
      for (int column = std::max(cx - distance, 0);
           column <= std::min(cx + distance, picture.Width() - 1); ++column)
        visit(column, row, std::hypot(column - x, row - y));
  };
  const float same = CosineOf(14);
  // The strongest pixel counts, and less the farther it is from the click; where two curves cross,
  // one of their inks and no blend of both.
  const float least = std::max(kLeastDifference, 3.5f * paper.Grain);
  float best = 0;
  Rgb there;
  around(reach, [&](int column, int row, double distance) {
    const Rgb d = difference(column, row);
    const float length = Length(d);
    const bool isKnown = std::ranges::any_of(
        directions, [&](const Rgb& known) { return Dot(known, d) >= same * length; });
    const auto score = (isKnown ? 2 : 1) * length / static_cast<float>(1 + 0.5 * distance);
    if (distance > reach || length < least || score <= best) return;
    best = score;
    there = d;
  });
  if (best <= 0) return std::nullopt;
  Ink ink{.Direction = Unit(there)};
  const auto nearest = std::max_element(directions.begin(), directions.end(), [&](Rgb a, Rgb b) {
    return Dot(a, ink.Direction) < Dot(b, ink.Direction);
  });
  if (nearest != directions.end() && Dot(*nearest, ink.Direction) >= same) ink.Direction = *nearest;
  std::vector<float> strengths;
  around(10, [&](int column, int row, double distance) {
    const Rgb d = difference(column, row);
    const float along = Dot(d, ink.Direction);
    if (distance <= 10 && along >= least && along >= same * Length(d) &&
        along <= 1.35f * Dot(there, ink.Direction))
      strengths.push_back(along);
  });
  if (strengths.empty()) return std::nullopt;
  const auto strong = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() * 92 / 100);
  std::nth_element(strengths.begin(), strong, strengths.end());
  ink.Strength = *strong;
  return ink;
}

}  // namespace graphize
