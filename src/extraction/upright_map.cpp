#include "extraction/upright_map.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graphize {

namespace {

constexpr int kRowsBetweenLooks = 64;  // a picture of 32767 columns: well under a millisecond each

/// The blackness of one raster row from column `first`, at most 64 pixels, as a word.
std::uint64_t BlackWord(const std::uint32_t* pixels, int count) {
  std::uint64_t word = 0;
  for (int i = 0; i < count; ++i) word |= static_cast<std::uint64_t>(IsBlackPixel(pixels[i])) << i;
  return word;
}

void ReadRow(const PlotImage& picture, int y, BitMap& map) {
  const std::uint32_t* pixels = picture.Pixels.Row(y);
  std::uint64_t* row = map.Row(y);
  for (int x = 0; x < picture.Width(); x += 64)
    row[x / 64] = BlackWord(pixels + x, std::min(64, picture.Width() - x));
}

/// Picture rows y .. y + 63 as columns of `map`.
void ReadRowsTransposed(const PlotImage& picture, int y, BitMap& map) {
  const int rows = std::min(64, picture.Height() - y);
  for (int x = 0; x < picture.Width(); x += 64) {
    const int columns = std::min(64, picture.Width() - x);
    std::uint64_t block[64] = {};
    for (int i = 0; i < rows; ++i) block[i] = BlackWord(picture.Pixels.Row(y + i) + x, columns);
    Transpose64(block);
    for (int i = 0; i < columns; ++i) map.Row(x + i)[y / 64] = block[i];
  }
}

/// What the marks cover counts as if they were not there; the first mark on a pixel knows it.
void LookUnderMarks(const PlotImage& picture, bool transposed, BitMap& map) {
  for (auto mark = picture.Marks.rbegin(); mark != picture.Marks.rend(); ++mark) {
    int x = static_cast<int>(mark->Index % static_cast<std::uint32_t>(picture.Width()));
    int y = static_cast<int>(mark->Index / static_cast<std::uint32_t>(picture.Width()));
    if (transposed) std::swap(x, y);
    if (IsBlackPixel(mark->Pixel))
      map.Set(x, y);
    else
      map.Clear(x, y);
  }
}

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
  const int range = Largest(shifts);
  BitMap shifted(map.Width(), map.Height() + range);
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

UprightMap::Place UprightMap::OfPicture(int x, int y) const {
  if (Transposed) std::swap(x, y);
  const int row = y + ColumnShift[x];
  return {x + RowShift[row], row};
}

UprightMap::Place UprightMap::InPicture(int column, int row) const {
  const int x = column - RowShift[row], y = row - ColumnShift[x];
  return Transposed ? Place{y, x} : Place{x, y};
}

int UprightMap::ShiftAt(int column, int row) const {
  const int last = static_cast<int>(ColumnShift.size()) - 1;
  return ColumnShift[std::clamp(column - RowShift[row], 0, last)];
}

double UprightMap::ExactShiftAt(int column, int row) const {
  const int last = static_cast<int>(ColumnShift.size()) - 1;
  const int x = std::clamp(column - RowShift[row], 0, last);
  return ColumnShift.front() - Slope * x;
}

UprightMap MakeUprightMap(const PlotImage& picture, const AxisCalibration& calibration,
                          GridDirection direction, const KeepGoing& keepGoing) {
  // A line's direction on the picture (rows downward): (cos, -sin) for constant Y, (sin, cos) for
  // constant X. The larger component decides what becomes the map's columns.
  const double c = calibration.CosAngle, s = calibration.SinAngle;
  const double stepX = direction == GridDirection::Y ? c : s;
  const double stepY = direction == GridDirection::Y ? -s : c;

  UprightMap upright;
  upright.Transposed = std::abs(stepY) > std::abs(stepX);
  const int width = upright.Transposed ? picture.Height() : picture.Width();
  const int height = upright.Transposed ? picture.Width() : picture.Height();
  BitMap map(width, height);
  for (int y = 0; y < picture.Height(); ++y) {
    if (y % kRowsBetweenLooks == 0) {
      if (!keepGoing()) return {};
      if (upright.Transposed) ReadRowsTransposed(picture, y, map);
    }
    if (!upright.Transposed) ReadRow(picture, y, map);
  }
  LookUnderMarks(picture, upright.Transposed, map);

  // Lines that rise by `slope` rows per column become level; then the perpendicular ones, which
  // have come to lean by -slope / (1 + slope^2) columns per row, become upright.
  const double slope = upright.Transposed ? stepX / stepY : stepY / stepX;
  upright.Slope = slope;
  upright.ColumnShift = Shifts(-slope, width);
  if (Largest(upright.ColumnShift) > 0) map = ShiftColumns(map, upright.ColumnShift);
  upright.RowShift = Shifts(slope / (1 + slope * slope), map.Height());
  if (Largest(upright.RowShift) > 0) map = ShiftRows(map, upright.RowShift);
  upright.Bits = std::move(map);
  return upright;
}

}  // namespace graphize
