#include "support/recorder_page.h"

#include <cmath>
#include <string>

#include "support/plot_drawing.h"

namespace graphize::test {

double RecordedCurve(int page, double x) {
  return (0.6 + 0.2 * std::cos(0.13 * page)) * std::sin(0.55 * x + 0.8 * page);
}

Raster RecorderPage(int page, const Lie& lie, int firstLabel, const std::string& before) {
  const double left = 90 + lie.X, top = 60 + lie.Y;
  PlotDrawing drawing(720, 520, left, top, left + 480 * lie.Scale, top + 360 * lie.Scale,
                      lie.Degrees);
  drawing.Frame({.Thickness = 2}, 6, 6);
  drawing.LinesAtU(Linear(6), {.Darkness = 0.4});
  drawing.LinesAtV(Linear(4), {.Darkness = 0.4});
  drawing.Curve([&](double u) { return 0.5 + 0.5 * RecordedCurve(page, 12 * u); },
                {.Thickness = 3});
  for (int i = 0; i <= 6; ++i) {
    const auto [x, y] = drawing.Place(i / 6.0, 0);
    drawing.Digits({x - 8, y + 14}, std::to_string(2 * i + firstLabel), 2);
  }
  for (int i = 0; i <= 4; ++i) {
    const auto [x, y] = drawing.Place(0, i / 4.0);
    drawing.Digits({x - 46 - 12.0 * static_cast<double>(before.size()), y - 7},
                   before + std::to_string(i * 5 - 10), 2);
  }
  return drawing.GreyPicture();
}

Lie SlipOf(int page) {
  const double part = page / 24.0;
  return {.X = page % 2 == 0 ? 37 * part : -37 * part,
          .Y = page % 3 == 0 ? 22 : -22 * part,
          .Degrees = 1.6 * std::sin(1.7 * page),
          .Scale = 1 + 0.014 * std::cos(2.3 * page)};
}

}  // namespace graphize::test
