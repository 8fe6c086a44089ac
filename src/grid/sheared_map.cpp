#include "grid/sheared_map.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graphize {

namespace {

/// round(slope * i) for i = 0 .. count - 1, moved so that the smallest is 0.
std::vector<int> Shifts(double slope, int count) {
  std::vector<int> shifts(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) shifts[i] = static_cast<int>(std::lround(slope * i));
  const int least = count == 0 ? 0 : std::min(shifts.front(), shifts.back());
  for (int& shift : shifts) shift -= least;
  return shifts;
}

int Largest(const std::vector<int>& shifts) {
  return shifts.empty() ? 0 : std::max(shifts.front(), shifts.back());
}

BitMap ShiftColumns(const BitMap& map, const std::vector<int>& shifts) {
  BitMap shifted(map.Width(), map.Height() + Largest(shifts));
  struct Piece {
    std::uint64_t Mask = 0;
    int Shift = 0;
  };
  std::vector<std::vector<Piece>> pieces(static_cast<std::size_t>(map.WordsPerRow()));
  for (int x = 0; x < map.Width(); ++x) {
    std::vector<Piece>& ofWord = pieces[x / 64];
    if (ofWord.empty() || ofWord.back().Shift != shifts[x]) ofWord.push_back({0, shifts[x]});
    ofWord.back().Mask |= std::uint64_t{1} << (x % 64);
  }
  for (int y = 0; y < map.Height(); ++y) {
    const std::uint64_t* row = map.Row(y);
    for (int j = 0; j < map.WordsPerRow(); ++j) {
      if (row[j] == 0) continue;
      for (const Piece& piece : pieces[j]) shifted.Row(y + piece.Shift)[j] |= row[j] & piece.Mask;
    }
  }
  return shifted;
}

BitMap ShiftRows(const BitMap& map, const std::vector<int>& shifts) {
  BitMap shifted(map.Width() + Largest(shifts), map.Height());
  for (int y = 0; y < map.Height(); ++y) {
    const std::uint64_t* from = map.Row(y);
    std::uint64_t* to = shifted.Row(y) + shifts[y] / 64;
    const int bits = shifts[y] % 64;
    for (int j = 0; j < map.WordsPerRow(); ++j) {
      if (from[j] == 0) continue;
      to[j] |= from[j] << bits;
      const std::uint64_t carried = bits == 0 ? 0 : from[j] >> (64 - bits);
      if (carried != 0) to[j + 1] |= carried;
    }
  }
  return shifted;
}

}  // namespace

MapPixel ShearedMap::OfMap(MapPixel pixel) const {
  const int row = pixel.Row + ColumnShift[pixel.Column];
  return {pixel.Column + RowShift[row], row};
}

double ShearedMap::RowOfMap(int column, double row) const {
  return row - ColumnShift.front() + Slope * column;
}

ShearedMap ShearMap(const BitMap& map, double slope) {
  // Lines that rise by `slope` rows per column become level; then the perpendicular ones, which
  // have come to lean by -slope / (1 + slope^2) columns per row, become upright.
  ShearedMap level;
  level.Slope = slope;
  level.ColumnShift = Shifts(-slope, map.Width());
  level.Bits = Largest(level.ColumnShift) > 0 ? ShiftColumns(map, level.ColumnShift) : map;
  level.RowShift = Shifts(slope / (1 + slope * slope), level.Bits.Height());
  if (Largest(level.RowShift) > 0) level.Bits = ShiftRows(level.Bits, level.RowShift);
  return level;
}

}  // namespace graphize
