#include "tracing/ink_sight.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace graphize {

namespace {

constexpr int kTile = 128;     // pixels
constexpr int kAround = 32;    // pixels of its neighbours that a tile's paper is told from, too
constexpr int kStep = 6;       // of the pixels that are looked at there
constexpr int kPale = 24;      // levels by which the palest ink differs from even paper
constexpr int kCoarsest = 60;  // the same on the coarsest paper

struct Channels {
  int Red, Green, Blue;
};

Channels ChannelsOf(std::uint32_t pixel) {
  return {static_cast<int>(pixel >> 16 & 0xffu), static_cast<int>(pixel >> 8 & 0xffu),
          static_cast<int>(pixel & 0xffu)};
}

using Counts = std::array<int, 256>;

int MedianOf(const Counts& counts, int all) {
  int below = 0;
  for (int level = 0; level < 255; ++level) {
    below += counts[static_cast<std::size_t>(level)];
    if (2 * below >= all) return level;
  }
  return 255;
}

int DifferenceOf(Channels a, Channels b) {
  return std::max(
      {std::abs(a.Red - b.Red), std::abs(a.Green - b.Green), std::abs(a.Blue - b.Blue)});
}

/// Whether `holds` for some pixel at most `reach` pixels across and down from a place between them.
template <class Holds>
bool AnyNear(double x, double y, double reach, const Holds& holds) {
  constexpr double kRounding = 0.01;
  const double far = reach + kRounding;
  for (int row = static_cast<int>(std::ceil(y - far)); row <= y + far; ++row)
    for (int column = static_cast<int>(std::ceil(x - far)); column <= x + far; ++column)
      if (holds(column, row)) return true;
  return false;
}

}  // namespace

double InkShade::Strength() const {
  return std::sqrt(Red * Red + Green * Green + Blue * Blue);
}

bool InkShade::IsAlike(const InkShade& other, double noise) const {
  constexpr double kLeast = 0.4;   // of the strength: a line between two rows of pixels has half
  constexpr double kAside = 0.25;  // of the other's part along this one
  const double square = Red * Red + Green * Green + Blue * Blue;
  if (square <= 0) return false;
  const double part = (Red * other.Red + Green * other.Green + Blue * other.Blue) / square;
  const double aside =
      std::hypot(other.Red - part * Red, other.Green - part * Green, other.Blue - part * Blue);
  return part >= kLeast && aside <= kAside * part * std::sqrt(square) + noise;
}

InkSight::InkSight(const Raster& picture)
    : picture_(picture),
      columns_((picture.Width() + kTile - 1) / kTile),
      tiles_(static_cast<std::size_t>(columns_) * ((picture.Height() + kTile - 1) / kTile)) {
  constexpr int kSamples = 64;  // in either direction
  int black = 0, all = 0;
  for (int row = 0; row < kSamples; ++row) {
    const auto y = static_cast<int>((2 * row + 1LL) * Height() / (2 * kSamples));
    for (int column = 0; column < kSamples; ++column, ++all) {
      const auto x = static_cast<int>((2 * column + 1LL) * Width() / (2 * kSamples));
      black += IsBlackPixel(picture_.Row(y)[x]) ? 1 : 0;
    }
  }
  blackIsInk_ = 2 * black < all;
}

bool InkSight::IsInk(int x, int y) {
  if (x < 0 || y < 0 || x >= Width() || y >= Height()) return false;
  const std::uint32_t pixel = picture_.Row(y)[x];
  if (blackIsInk_ && IsBlackPixel(pixel)) return true;
  const Tile& tile = TileAt(x, y);
  return DifferenceOf(ChannelsOf(pixel), {tile.Red, tile.Green, tile.Blue}) >= tile.Least;
}

bool InkSight::HasInkNear(double x, double y, double reach) {
  return AnyNear(x, y, reach, [&](int column, int row) { return IsInk(column, row); });
}

bool InkSight::HasInkNear(double x, double y, double reach, const InkShade& like) {
  return AnyNear(x, y, reach, [&](int column, int row) {
    return IsInk(column, row) &&
           like.IsAlike(ShadeAt(column, row), 0.5 * TileAt(column, row).Least);
  });
}

std::optional<InkShade> InkSight::StrongestNear(double x, double y, double reach) {
  std::optional<InkShade> strongest;
  AnyNear(x, y, reach, [&](int column, int row) {
    if (!IsInk(column, row)) return false;
    const InkShade shade = ShadeAt(column, row);
    if (!strongest || shade.Strength() > strongest->Strength()) strongest = shade;
    return false;
  });
  return strongest;
}

InkShade InkSight::ShadeAt(int x, int y) {
  const Tile& tile = TileAt(x, y);
  const Channels pixel = ChannelsOf(picture_.Row(y)[x]);
  return {pixel.Red - tile.Red, pixel.Green - tile.Green, pixel.Blue - tile.Blue};
}

const InkSight::Tile& InkSight::TileAt(int x, int y) {
  Tile& tile = tiles_[static_cast<std::size_t>(y / kTile) * columns_ + x / kTile];
  if (tile.Red < 0) LookAt(tile, x / kTile * kTile, y / kTile * kTile);
  return tile;
}

void InkSight::LookAt(Tile& tile, int left, int top) const {
  const int firstX = std::max(left - kAround, 0), firstY = std::max(top - kAround, 0);
  const int endX = std::min(left + kTile + kAround, Width());
  const int endY = std::min(top + kTile + kAround, Height());
  Counts red{}, green{}, blue{}, differences{};
  int all = 0;
  const auto forEach = [&](const auto& take) {
    for (int y = firstY; y < endY; y += kStep)
      for (int x = firstX; x < endX; x += kStep) take(ChannelsOf(picture_.Row(y)[x]));
  };
  forEach([&](Channels pixel) {
    ++red[static_cast<std::size_t>(pixel.Red)];
    ++green[static_cast<std::size_t>(pixel.Green)];
    ++blue[static_cast<std::size_t>(pixel.Blue)];
    ++all;
  });
  const Channels paper{MedianOf(red, all), MedianOf(green, all), MedianOf(blue, all)};
  forEach(
      [&](Channels pixel) { ++differences[static_cast<std::size_t>(DifferenceOf(pixel, paper))]; });
  // Of evenly spread grain, half lies within two thirds of its standard deviation.
  const int grain = MedianOf(differences, all);
  tile = {paper.Red, paper.Green, paper.Blue, std::clamp(6 * grain, kPale, kCoarsest)};
}

}  // namespace graphize
