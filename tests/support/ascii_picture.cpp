#include "support/ascii_picture.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace graphize::test {

std::vector<std::string> RowsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

Raster Draw(const std::vector<std::string>& rows) {
  std::size_t width = 0;
  for (const std::string& row : rows) width = std::max(width, row.size());
  Raster raster =
      Raster::Filled(static_cast<int>(width), static_cast<int>(rows.size()), kWhitePixel);
  for (int y = 0; y < raster.Height(); ++y) {
    for (std::size_t x = 0; x < rows[y].size(); ++x) {
      if (rows[y][x] == '#') raster.Row(y)[x] = kBlackPixel;
      if (rows[y][x] == 'o') raster.Row(y)[x] = 0xff404040u;
    }
  }
  return raster;
}

std::vector<std::string> Show(const PlotImage& image) {
  std::vector<std::string> rows(static_cast<std::size_t>(image.Height()));
  for (int y = 0; y < image.Height(); ++y) {
    for (int x = 0; x < image.Width(); ++x) {
      const Colour colour = GetPixel(image, x, y);
      rows[y] += colour == kBlack ? '#' : colour == kWhite ? '.' : '?';
    }
  }
  return rows;
}

PlotImage MakePlotImage(const std::vector<std::string>& rows) {
  PlotImage image;
  SetPicture(image, Draw(rows));
  image.Dirty = {};
  return image;
}

}  // namespace graphize::test
