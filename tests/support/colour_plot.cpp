#include "support/colour_plot.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace graphize::test {

namespace {

/// Changes every channel of every pixel: `level(x, y, channel, shift)`.
template <class Change>
void ChangeLevels(Raster& picture, const Change& change) {
  for (int y = 0; y < picture.Height(); ++y)
    for (int x = 0; x < picture.Width(); ++x) {
      std::uint32_t mixed = 0xff000000u;
      for (const int shift : {0, 8, 16}) {
        const double level = change(x, y, picture.Row(y)[x] >> shift & 0xff, shift);
        mixed |= static_cast<std::uint32_t>(std::lround(std::clamp(level, 0.0, 255.0))) << shift;
      }
      picture.Row(y)[x] = mixed;
    }
}

}  // namespace

ColourPlot::ColourPlot(std::uint32_t paper, double degrees, int width, int height)
    : Picture(Raster::Filled(width, height, paper)), Degrees(degrees) {}

PlotDrawing ColourPlot::Layer() const {
  const double w = Picture.Width(), h = Picture.Height();
  return PlotDrawing(Picture.Width(), Picture.Height(), 0.1 * w, h / 15, 0.95 * w, h * 13 / 15,
                     Degrees);
}

void ColourPlot::Put(const PlotDrawing& layer, std::uint32_t ink, bool hard) {
  const Raster cover = hard ? layer.Picture() : layer.GreyPicture();
  ChangeLevels(Picture, [&](int x, int y, double level, int shift) {
    const double share = 1 - (cover.Row(y)[x] & 0xff) / 255.0, to = ink >> shift & 0xff;
    return level + share * (to - level);
  });
}

void ColourPlot::Frame(std::uint32_t ink) {
  PlotDrawing layer = Layer();
  layer.Frame({.Thickness = 1.4}, 5, 5);
  layer.Digits(layer.Place(0.4, -0.06), "405");
  Put(layer, ink);
}

void ColourPlot::Grid(std::uint32_t ink) {
  PlotDrawing layer = Layer();
  layer.LinesAtU(Linear(5), {});
  layer.LinesAtV(Linear(4), {});
  Put(layer, ink);
}

std::vector<PixelPosition> ColourPlot::Curve(const std::function<double(double)>& v,
                                             const Stroke& stroke, std::uint32_t ink) {
  PlotDrawing layer = Layer();
  std::vector<PixelPosition> course = layer.Curve(v, stroke, 0.04, 0.96);
  Put(layer, ink);
  return course;
}

void ColourPlot::Scan(double fall, double fade, double grain, unsigned seed) {
  std::mt19937 random(seed);
  const auto part = [&] {
    return static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
  };
  const double w = Picture.Width(), h = Picture.Height();
  ChangeLevels(Picture, [&](int x, int y, double level, int) {
    const double faded = level + fade * x / w * (255 - level);
    return faded * (1 - fall * (x / w + y / h) / 2) + grain * 2 * (part() + part() + part() - 1.5);
  });
}

}  // namespace graphize::test
