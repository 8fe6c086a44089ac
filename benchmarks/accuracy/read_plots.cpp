#include "read_plots.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>

#include "sheet.h"

namespace graphize::accuracy {

namespace {

using Function = std::function<double(double)>;

/// A smooth course that fills most of the height.
Function Smooth(Chance& chance) {
  const double f = chance.Between(0.7, 2.2), p = chance.Between(0, 2 * kPi);
  const double g = chance.Between(2, 4), q = chance.Between(0, 2 * kPi), k = chance.Between(0, 1.2);
  return [=](double u) {
    return 0.5 + std::exp(-k * u) *
                     (0.3 * std::sin(2 * kPi * f * u + p) + 0.12 * std::sin(2 * kPi * g * u + q));
  };
}

/// A click near the course at part `at` of it, off by up to 2 pixels.
PixelPosition ClickOn(const std::vector<PixelPosition>& course, double at, Chance& chance) {
  const PixelPosition place =
      course[static_cast<std::size_t>(at * static_cast<double>(course.size() - 1))];
  return {std::round(place.X + chance.Between(-1.4, 1.4)),
          std::round(place.Y + chance.Between(-1.4, 1.4))};
}

struct Look {
  Colour Paper = kPaper, Ink = kBlackInk, Lines = kBlackInk;
  Stroke Line = {.Thickness = 2};
  bool Hard = false;
  double Degrees = 0;
  int Width = 800, Height = 600;
  double First = 0.03, Last = 0.97;
  double Off = 0;
};

/// One curve on a frame.
ReadPlot One(Chance& chance, const Look& look, const Function& v,
             const std::function<void(Sheet&)>& before = nullptr,
             const std::function<void(Sheet&)>& after = nullptr) {
  Sheet sheet(look.Paper, look.Width, look.Height, look.Degrees, look.Off);
  if (before) before(sheet);
  sheet.Frame(look.Lines, look.Hard);
  PlotDrawing layer = sheet.Layer();
  ReadPlot plot;
  plot.Course = layer.Curve(v, look.Line, look.First, look.Last);
  plot.Click = ClickOn(plot.Course, chance.Between(0.1, 0.9), chance);
  sheet.Put(layer, look.Ink, look.Hard);
  if (after) after(sheet);
  plot.Picture = sheet.Picture();
  plot.Axes = layer.Calibration();
  if (look.Off != 0) plot.Value = v;
  return plot;
}

ReadPlot AxesOff(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 2}, .Off = chance.Between(-0.5, 0.5)}, Smooth(chance));
}
ReadPlot ThinSteep(unsigned seed) {
  Chance chance(seed);
  const double waves = chance.Between(3, 6), p = chance.Between(0, 2 * kPi);
  return One(chance, {.Line = {.Thickness = 1}},
             [=](double u) { return 0.5 + 0.42 * std::sin(2 * kPi * waves * u + p); });
}
ReadPlot Antialiased(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = chance.Between(1.2, 3)}}, Smooth(chance));
}
ReadPlot OnLogGrid(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 2}}, Smooth(chance),
             [](Sheet& sheet) { sheet.Grid(kPaleGrid, 1, true); });
}
ReadPlot OnGrid(unsigned seed) {
  Chance chance(seed);
  const Colour grid = seed % 2 == 0 ? kPaleGrid : kBlackInk;
  return One(chance, {.Line = {.Thickness = 2}}, Smooth(chance),
             [&](Sheet& sheet) { sheet.Grid(grid); });
}
ReadPlot Coloured(unsigned seed) {
  Chance chance(seed);
  const int count = 2 + static_cast<int>(seed % 4);
  const std::size_t own = seed % 5;
  const Stroke line{.Thickness = chance.Between(1.4, 2.4)};
  const Function v = Smooth(chance);
  std::vector<Function> others;
  for (int i = 1; i < count; ++i) others.push_back(Smooth(chance));
  const auto draw = [&](Sheet& sheet, int first, int end) {
    for (int i = first; i < end; ++i) {
      PlotDrawing layer = sheet.Layer();
      layer.Curve(others[static_cast<std::size_t>(i)], line, 0.03, 0.97);
      const double y = 0.13 * 600 + 14.0 * i;
      layer.Polyline({{660, y}, {685, y}}, line);
      sheet.Put(layer, kInks[(own + 1 + static_cast<std::size_t>(i)) % 5]);
    }
  };
  const int below = (count - 1) / 2;
  return One(
      chance, {.Ink = kInks[own], .Line = line}, v,
      [&](Sheet& sheet) {
        sheet.Grid(kPaleGrid);
        draw(sheet, 0, below);
        PlotDrawing legend = sheet.Layer();
        legend.Polyline({{660, 64}, {685, 64}}, line);
        sheet.Put(legend, kInks[own]);
      },
      [&](Sheet& sheet) { draw(sheet, below, count - 1); });
}
ReadPlot Inverse(unsigned seed) {
  Chance chance(seed);
  return One(chance,
             {.Paper = {16, 16, 24},
              .Ink = {250, 230, 90},
              .Lines = {200, 200, 200},
              .Line = {.Thickness = chance.Between(1.3, 2.5)}},
             Smooth(chance));
}
ReadPlot Turned(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 2}, .Degrees = chance.Between(-6, 6)}, Smooth(chance));
}
ReadPlot Hard(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 1.0 + static_cast<double>(seed % 3)}, .Hard = true},
             Smooth(chance));
}
ReadPlot Thick(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = chance.Between(5, 9)}, .Hard = seed % 2 == 0},
             Smooth(chance));
}
ReadPlot Tiny(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 1.2}, .Width = 220, .Height = 160}, Smooth(chance));
}
ReadPlot Scanned(unsigned seed) {
  Chance chance(seed);
  const int ink = 40 + 30 * static_cast<int>(seed % 3);
  return One(chance,
             {.Paper = {244, 240, 228},
              .Ink = {ink, ink, ink},
              .Lines = {ink, ink, ink},
              .Line = {.Thickness = chance.Between(1.8, 3)},
              .Degrees = chance.Between(-1.5, 1.5)},
             Smooth(chance), nullptr,
             [&](Sheet& sheet) { sheet.Scan(seed, 1 + static_cast<int>(seed % 2), 0.25, 5); });
}
ReadPlot Faded(unsigned seed) {
  Chance chance(seed);
  const int ink = 165 + 10 * static_cast<int>(seed % 3);
  return One(chance,
             {.Paper = {246, 242, 232},
              .Ink = {ink, ink, ink},
              .Lines = {ink, ink, ink},
              .Line = {.Thickness = chance.Between(2, 3)}},
             Smooth(chance), nullptr, [&](Sheet& sheet) { sheet.Scan(seed, 1, 0.1, 4); });
}
ReadPlot UnevenlyLit(unsigned seed) {
  Chance chance(seed);
  return One(chance,
             {.Paper = {244, 244, 240},
              .Ink = {50, 50, 60},
              .Lines = {50, 50, 60},
              .Line = {.Thickness = chance.Between(1.8, 3)}},
             Smooth(chance), nullptr, [&](Sheet& sheet) { sheet.Scan(seed, 1, 0.55, 4); });
}
ReadPlot Speckled(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = chance.Between(2, 3)}}, Smooth(chance), nullptr,
             [&](Sheet& sheet) {
               sheet.Speckle(seed, 1500);
               sheet.Scan(seed, 1, 0.1, 3);
             });
}
ReadPlot Compressed(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Ink = kInks[seed % 5], .Line = {.Thickness = chance.Between(1.8, 3)}},
             Smooth(chance), nullptr, [&](Sheet& sheet) {
               sheet.Scan(seed, 1, 0, 2);
               sheet.Compress(0.4 + 0.3 * (seed % 3));
             });
}
ReadPlot DashDotted(unsigned seed) {
  Chance chance(seed);
  const Function v = Smooth(chance);
  const double dash = chance.Between(8, 12), gap = chance.Between(3, 4.5);
  // The dots are drawn beside the dashes: every other one of a finer pattern.
  ReadPlot plot;
  Sheet sheet;
  sheet.Frame();
  PlotDrawing layer = sheet.Layer(), whole = sheet.Layer();
  plot.Course = whole.Curve(v, {}, 0.03, 0.97);
  std::vector<PixelPosition> piece;
  double along = 0;
  for (std::size_t i = 1; i <= plot.Course.size(); ++i) {
    const double at = std::fmod(along, dash + 2 * gap + 2);
    const bool isInk = at < dash || (at >= dash + gap && at < dash + gap + 2);
    if (isInk && i < plot.Course.size()) piece.push_back(plot.Course[i - 1]);
    if ((!isInk || i == plot.Course.size()) && !piece.empty()) {
      layer.Polyline(piece, {.Thickness = 2});
      piece.clear();
    }
    if (i < plot.Course.size())
      along += std::hypot(plot.Course[i].X - plot.Course[i - 1].X,
                          plot.Course[i].Y - plot.Course[i - 1].Y);
  }
  plot.Click = ClickOn(plot.Course, chance.Between(0.1, 0.9), chance);
  sheet.Put(layer, kInks[seed % 5]);
  plot.Picture = sheet.Picture();
  plot.Axes = layer.Calibration();
  return plot;
}
ReadPlot Dashed(unsigned seed) {
  Chance chance(seed);
  return One(chance,
             {.Ink = kInks[seed % 5],
              .Line = {.Thickness = 2, .Dash = chance.Between(6, 12), .Gap = chance.Between(3, 7)}},
             Smooth(chance));
}
ReadPlot Dotted(unsigned seed) {
  Chance chance(seed);
  return One(chance, {.Line = {.Thickness = 1.8, .Dash = 2, .Gap = chance.Between(2.5, 4)}},
             Smooth(chance));
}
ReadPlot WithGaps(unsigned seed) {
  Chance chance(seed);
  const Function v = Smooth(chance);
  const double at = chance.Between(0.3, 0.7);
  ReadPlot plot = One(chance, {.Line = {.Thickness = 2}}, v, nullptr, [&](Sheet& sheet) {
    PlotDrawing label = sheet.Layer();
    const PixelPosition place = label.Place(at, v(at));
    label.Disc(place, 14);
    sheet.Put(label, kPaper);
  });
  plot.Click = ClickOn(plot.Course, 0.15, chance);
  return plot;
}
ReadPlot Crossed(unsigned seed) {
  Chance chance(seed);
  const Function v = Smooth(chance), w = Smooth(chance);
  ReadPlot plot = One(chance, {.Line = {.Thickness = 2}}, v, [&](Sheet& sheet) {
    PlotDrawing other = sheet.Layer();
    other.Curve(w, {.Thickness = 2}, 0.03, 0.97);
    sheet.Put(other, kBlackInk);
  });
  // Clicked where it is alone: elsewhere nobody could tell which curve was meant.
  const auto isAlone = [&](PixelPosition at) {
    const double u = (at.X - 80) / 680;
    return std::fabs(v(u) - w(u)) * 480 > 16;
  };
  while (!isAlone(plot.Click)) plot.Click = ClickOn(plot.Course, chance.Between(0.1, 0.9), chance);
  return plot;
}
/// With symbols of its colour on it.
ReadPlot WithSymbols(unsigned seed) {
  Chance chance(seed);
  const Function v = Smooth(chance);
  const double size = chance.Between(6, 9);
  return One(chance, {.Ink = kInks[seed % 5], .Line = {.Thickness = 1.6}}, v, nullptr,
             [&](Sheet& sheet) {
               PlotDrawing symbols = sheet.Layer();
               for (int i = 0; i < 14; ++i) {
                 const PixelPosition at = symbols.Place(0.05 + 0.07 * i, v(0.05 + 0.07 * i));
                 if (seed % 2 == 0)
                   symbols.Disc(at, size);
                 else
                   symbols.Box(at, size, {.Thickness = 1.2});
               }
               sheet.Put(symbols, kInks[seed % 5]);
             });
}
/// On a page of 139 megapixels, drawn column by column.
ReadPlot Huge(unsigned seed) {
  Chance chance(seed);
  const Function v = Smooth(chance);
  constexpr int kSide = 11800, kFirst = kSide / 20, kLast = kSide * 19 / 20;
  const double half = chance.Between(3, 5);
  const auto yAt = [&](double x) { return kSide * (1 - v((x - kFirst) / (kLast - kFirst))); };
  ReadPlot plot{.Picture = Raster::Filled(kSide, kSide, kWhitePixel)};
  for (int x = kFirst; x <= kLast; ++x) {
    const double y = yAt(x), slope = yAt(x + 0.5) - yAt(x - 0.5);
    const double steep = std::sqrt(1 + slope * slope), reach = (half + 1) * steep;
    plot.Course.push_back({static_cast<double>(x), y});
    for (int row = static_cast<int>(y - reach); row <= y + reach; ++row) {
      const double cover = std::clamp(half + 0.5 - std::fabs(row - y) / steep, 0.0, 1.0);
      const auto level = static_cast<std::uint32_t>(255 - std::lround(255 * cover));
      plot.Picture.Row(row)[x] = 0xff000000u | level * 0x010101u;
    }
  }
  plot.Click = ClickOn(plot.Course, chance.Between(0.1, 0.9), chance);
  return plot;
}
/// By a curve of its own colour, at an angle from 5 to 60 degrees, and by no other.
ReadPlot CrossedAt(unsigned seed) {
  Chance chance(seed);
  constexpr double kAngles[] = {5, 10, 15, 25, 40, 60};
  const Function v = Smooth(chance);
  const double at = chance.Between(0.35, 0.65), scale = 480.0 / 680;
  const double slope = scale * (v(at + 1e-4) - v(at - 1e-4)) / 2e-4;
  const double turned = std::atan(slope) - kAngles[seed % 6] * kPi / 180 * (slope > 0 ? 1 : -1);
  const double more = (std::tan(turned) - slope) / scale;
  const Function w = [=](double u) {
    // As much steeper at the crossing, and less and less away from it.
    return v(u) + more * 0.25 * std::tanh((u - at) / 0.25);
  };
  ReadPlot plot = One(chance, {.Line = {.Thickness = 2}}, v, [&](Sheet& sheet) {
    PlotDrawing other = sheet.Layer();
    other.Curve(w, {.Thickness = 2}, 0.03, 0.97);
    sheet.Put(other, kBlackInk);
  });
  plot.Click = ClickOn(plot.Course, 0.12, chance);
  return plot;
}
ReadPlot Peaked(unsigned seed) {
  Chance chance(seed);
  std::vector<std::array<double, 3>> peaks;
  for (int i = 0; i < 5; ++i)
    peaks.push_back({0.12 + 0.17 * i + chance.Between(0, 0.08), chance.Between(0.3, 0.8),
                     chance.Between(0.006, 0.012)});
  return One(chance, {.Line = {.Thickness = 1.6}}, [&](double u) {
    double v = 0.08;
    for (const auto& [at, high, wide] : peaks) v += high * std::exp(-std::pow((u - at) / wide, 2));
    return v;
  });
}
ReadPlot Stepped(unsigned seed) {
  Chance chance(seed);
  const double at = chance.Between(0.3, 0.7), steep = chance.Between(60, 140);
  return One(chance, {.Line = {.Thickness = 1.6}},
             [&](double u) { return 0.15 + 0.7 / (1 + std::exp(-steep * (u - at))); });
}
ReadPlot Noisy(unsigned seed) {
  Chance chance(seed);
  std::vector<double> values;
  double y = 0;
  constexpr int kSteps = 130;
  for (int i = 0; i <= kSteps + 1; ++i) {
    y = 0.97 * y + chance.Between(-0.04, 0.04);
    values.push_back(0.5 + y);
  }
  return One(chance, {.Line = {.Thickness = 1.3}}, [&](double u) {
    const double at = std::clamp(u, 0.0, 1.0) * kSteps;
    const auto i = static_cast<std::size_t>(at);
    return values[i] + (at - static_cast<double>(i)) * (values[i + 1] - values[i]);
  });
}
/// A closed or winding course.
ReadPlot Looped(unsigned seed) {
  Chance chance(seed);
  Sheet sheet;
  sheet.Frame();
  PlotDrawing layer = sheet.Layer();
  ReadPlot plot;
  const double p = chance.Between(0.2, 1.2);
  for (int i = 0; i <= 4000; ++i) {
    const double t = i / 4000.0;
    if (seed % 2 == 0)
      plot.Course.push_back(
          layer.Place(0.5 + 0.4 * std::cos(2 * kPi * t + p), 0.5 + 0.4 * std::sin(4 * kPi * t)));
    else
      plot.Course.push_back(layer.Place(0.5 + (0.06 + 0.35 * t) * std::cos(6 * kPi * t + p),
                                        0.5 + (0.06 + 0.35 * t) * std::sin(6 * kPi * t + p)));
  }
  layer.Polyline(plot.Course, {.Thickness = 1.8});
  plot.Click = ClickOn(plot.Course, 0.37, chance);
  sheet.Put(layer, kBlackInk);
  plot.Picture = sheet.Picture();
  plot.Axes = layer.Calibration();
  return plot;
}

}  // namespace

std::vector<ReadFamily> ReadFamilies() {
  return {{"antialiased", 0.04, 0.08, 0.99, Antialiased},
          {"on a logarithmic grid", 0.04, 0.08, 0.99, OnLogGrid},
          {"on a grid, pale or black", 0.04, 0.08, 0.99, OnGrid},
          {"2 to 5 colours with a legend", 0.04, 0.08, 0.99, Coloured},
          {"light on dark", 0.04, 0.08, 0.99, Inverse},
          {"turned by up to 6 degrees", 0.04, 0.08, 0.99, Turned},
          {"axes off by up to half a pixel", 0.04, 0.08, 0.99, AxesOff},
          {"thin and steep", 0.04, 0.08, 0.99, ThinSteep},
          {"hard edges", 0.09, 0.17, 0.99, Hard},
          {"thick", 0.09, 0.17, 0.99, Thick},
          {"tiny", 0.09, 0.17, 0.99, Tiny},
          {"scanned", 0.08, 0.14, 0.99, Scanned},
          {"scanned, faded", 0.08, 0.14, 0.99, Faded},
          {"scanned, unevenly lit", 0.08, 0.14, 0.99, UnevenlyLit},
          {"scanned, with speckle", 0.08, 0.14, 0.99, Speckled},
          {"compressed as JPEG, in colour", 0.08, 0.14, 0.99, Compressed},
          {"dash-dotted", 0.12, 0.17, 0.99, DashDotted},
          {"dashed", 0.12, 0.17, 0.99, Dashed},
          {"dotted", 0.27, 0.27, 0.99, Dotted},
          {"gap under a label", 0.12, 0.17, 0.99, WithGaps},
          {"crossed in its own colour, 5 to 60 degrees", 0.12, 0.17, 0.99, CrossedAt},
          {"crossed in its own colour anyhow", 0.12, 0.17, 0.99, Crossed},
          {"symbols of its colour on the line", 0.09, 0.09, 0.99, WithSymbols},
          {"peaks", 0.14, 0.19, 0.97, Peaked},
          {"steps", 0.14, 0.19, 0.97, Stepped},
          {"noisy record", 0.20, 0.20, 0.90, Noisy},
          {"loops and spirals", 0.05, 0.06, 0.99, Looped},
          {"a page of 139 megapixels", 0.04, 0.08, 0.99, Huge, 3}};
}

}  // namespace graphize::accuracy
