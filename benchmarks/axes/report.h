#pragma once

#include <QImage>
#include <algorithm>
#include <vector>

#include "base/raster.h"

namespace graphize::axes {

/// The picture as the program has it, opaque.
inline Raster RasterOf(const QImage& image) {
  Raster raster(image.width(), image.height());
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) raster.Row(y)[x] = image.pixel(x, y) | 0xff000000u;
  return raster;
}

/// The value below which this part (0..1) of them lies; 0 of none.
inline double Quantile(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

}  // namespace graphize::axes
