#include "grid/black_map.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graphize {

namespace {

constexpr int kRowsBetweenLooks = 64;  // a block of them takes about a millisecond

/// The blackness of pixels of one raster row, at most 64, as a word.
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
void LookUnderMarks(const PlotImage& picture, BlackMap& map) {
  const auto width = static_cast<std::uint32_t>(picture.Width());
  for (auto mark = picture.Marks.rbegin(); mark != picture.Marks.rend(); ++mark) {
    const MapPixel at =
        map.OfPicture(static_cast<int>(mark->Index % width), static_cast<int>(mark->Index / width));
    if (IsBlackPixel(mark->Pixel))
      map.Bits.Set(at.Column, at.Row);
    else
      map.Bits.Clear(at.Column, at.Row);
  }
}

}  // namespace

BlackMap WithFaintPixels(const BlackMap& map, const PlotImage& picture) {
  BlackMap united = map;
  const BitMap& faint = picture.Pixels.Faint;
  Unite(united.Bits, map.Transposed ? Transposed(faint) : faint);
  return united;
}

BlackMap ReadBlackMap(const PlotImage& picture, const AxisCalibration& calibration,
                      GridDirection direction, const KeepGoing& keepGoing) {
  // A line's direction on the picture (rows downward): (cos, -sin) for constant Y, (sin, cos) for
  // constant X. The larger component decides what becomes the map's columns.
  const double c = calibration.CosAngle, s = calibration.SinAngle;
  const double stepX = direction == GridDirection::Y ? c : s;
  const double stepY = direction == GridDirection::Y ? -s : c;

  BlackMap map;
  map.Transposed = std::abs(stepY) > std::abs(stepX);
  map.Slope = map.Transposed ? stepX / stepY : stepY / stepX;
  const int width = map.Transposed ? picture.Height() : picture.Width();
  const int height = map.Transposed ? picture.Width() : picture.Height();
  map.Bits = BitMap(width, height);
  for (int y = 0; y < picture.Height(); ++y) {
    if (y % kRowsBetweenLooks == 0) {
      if (!keepGoing()) return {};
      if (map.Transposed) ReadRowsTransposed(picture, y, map.Bits);
    }
    if (!map.Transposed) ReadRow(picture, y, map.Bits);
  }
  LookUnderMarks(picture, map);
  return map;
}

}  // namespace graphize
