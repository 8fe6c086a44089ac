#include "read_plots.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>

namespace graphize::accuracy {

namespace {

using test::Decades;
using test::Linear;
using test::PlotDrawing;
using test::Stroke;

constexpr double kPi = std::numbers::pi;

struct Colour {
  int R = 0, G = 0, B = 0;
};
constexpr Colour kBlackInk = {}, kPaper = {255, 255, 255}, kPaleGrid = {215, 215, 215};
constexpr Colour kInks[] = {
    {31, 119, 180}, {214, 39, 40}, {44, 160, 44}, {148, 103, 189}, {255, 127, 14}};

/// Even numbers from 0 to 1, the same on every machine.
class Chance {
 public:
  explicit Chance(unsigned seed) : random_(seed) {}
  double Part() {
    return static_cast<double>(random_()) / static_cast<double>(std::mt19937::max());
  }
  double Between(double a, double b) { return a + (b - a) * Part(); }

 private:
  std::mt19937 random_;
};

/// A picture made of one layer of each colour over the paper.
class Sheet {
 public:
  explicit Sheet(Colour paper = kPaper, int width = 800, int height = 600, double degrees = 0,
                 double off = 0)
      : off_(off),
        width_(width),
        height_(height),
        degrees_(degrees),
        channels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    for (auto& pixel : channels_)
      pixel = {static_cast<double>(paper.R), static_cast<double>(paper.G),
               static_cast<double>(paper.B)};
  }

  PlotDrawing Layer() const {
    return PlotDrawing(width_, height_, 0.1 * width_ + off_, 0.08 * height_ - 0.7 * off_,
                       0.95 * width_ - 0.6 * off_, 0.88 * height_ + off_, degrees_);
  }
  void Put(const PlotDrawing& layer, Colour colour, bool hard = false) {
    const Raster cover = hard ? layer.Picture() : layer.GreyPicture();
    const double ink[] = {static_cast<double>(colour.R), static_cast<double>(colour.G),
                          static_cast<double>(colour.B)};
    for (std::size_t i = 0; i < channels_.size(); ++i) {
      const double share = 1 - (cover.Pixels()[i] & 0xff) / 255.0;
      for (std::size_t c = 0; c < 3; ++c) channels_[i][c] += share * (ink[c] - channels_[i][c]);
    }
  }
  /// Frame with ticks outside and numbers below.
  void Frame(Colour colour = kBlackInk, bool hard = false) {
    PlotDrawing layer = Layer();
    layer.Frame({.Thickness = 1.4}, 10, 5);
    for (int i = 0; i <= 10; ++i) {
      const PixelPosition at = layer.Place(i / 10.0, 0);
      layer.Digits({at.X - 4, at.Y + 9}, std::to_string(i));
    }
    Put(layer, colour, hard);
  }
  void Grid(Colour colour, double thickness = 1, bool log = false) {
    PlotDrawing layer = Layer();
    layer.LinesAtU(log ? Decades(4) : Linear(10), {.Thickness = thickness});
    layer.LinesAtV(log ? Decades(3) : Linear(8), {.Thickness = thickness});
    Put(layer, colour);
  }
  /// A soft focus, light that falls off to a corner, and grain, in levels.
  void Scan(unsigned seed, int rounds, double fall, double grain) {
    for (int round = 0; round < rounds; ++round) {
      const auto from = channels_;
      for (int y = 1; y + 1 < height_; ++y)
        for (int x = 1; x + 1 < width_; ++x) {
          const std::size_t i = static_cast<std::size_t>(y) * width_ + x, w = width_;
          for (std::size_t c = 0; c < 3; ++c)
            channels_[i][c] = 0.5 * from[i][c] + 0.125 * (from[i - 1][c] + from[i + 1][c] +
                                                          from[i - w][c] + from[i + w][c]);
        }
    }
    Chance chance(seed);
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x) {
        auto& pixel = channels_[static_cast<std::size_t>(y) * width_ + x];
        const double light = 1 - fall * (x + y) / (width_ + height_);
        const double speck = grain * (chance.Part() + chance.Part() + chance.Part() - 1.5) * 2;
        for (double& channel : pixel) channel = channel * light + speck;
      }
  }
  /// Dark and light dots.
  void Speckle(unsigned seed, int count) {
    Chance chance(seed);
    for (int i = 0; i < count; ++i) {
      const auto x = static_cast<std::size_t>(chance.Between(0, width_ - 1));
      const auto y = static_cast<std::size_t>(chance.Between(0, height_ - 1));
      const double level = chance.Part() < 0.7 ? 60 : 255;
      channels_[y * static_cast<std::size_t>(width_) + x] = {level, level, level};
    }
  }
  /// What JPEG leaves of each channel: blocks of 8 x 8 cosines in steps that grow with the
  /// frequency as those of its luminance table at quality 50 do, by `scale`.
  void Compress(double scale) {
    double cosine[8][8];
    for (int k = 0; k < 8; ++k)
      for (int i = 0; i < 8; ++i)
        cosine[k][i] = (k == 0 ? std::sqrt(0.125) : 0.5) * std::cos((2 * i + 1) * k * kPi / 16);
    const auto pixel = [&](int x, int y) -> auto& {
      return channels_[static_cast<std::size_t>(y) * width_ + x];
    };
    for (int top = 0; top + 8 <= height_; top += 8)
      for (int left = 0; left + 8 <= width_; left += 8)
        for (std::size_t c = 0; c < 3; ++c) {
          double waves[8][8] = {};
          for (int v = 0; v < 8; ++v)
            for (int u = 0; u < 8; ++u) {
              for (int y = 0; y < 8; ++y)
                for (int x = 0; x < 8; ++x)
                  waves[v][u] += cosine[v][y] * cosine[u][x] * pixel(left + x, top + y)[c];
              const double step = scale * (12 + 6 * (u + v));
              waves[v][u] = step * std::nearbyint(waves[v][u] / step);
            }
          for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x) {
              double& level = pixel(left + x, top + y)[c] = 0;
              for (int v = 0; v < 8; ++v)
                for (int u = 0; u < 8; ++u) level += cosine[v][y] * cosine[u][x] * waves[v][u];
            }
        }
  }
  Raster Picture() const {
    Raster raster(width_, height_);
    const auto level = [](double value) {
      return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    for (std::size_t i = 0; i < channels_.size(); ++i) {
      const auto& [r, g, b] = channels_[i];
      raster.Pixels()[i] = 0xff000000u | level(r) << 16 | level(g) << 8 | level(b);
    }
    return raster;
  }

 private:
  double off_;  // of the box from whole pixels
  int width_, height_;
  double degrees_;
  std::vector<std::array<double, 3>> channels_;
};

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
  return One(chance, {.Line = {.Thickness = 2}}, v, [&](Sheet& sheet) {
    PlotDrawing other = sheet.Layer();
    other.Curve(w, {.Thickness = 2}, 0.03, 0.97);
    sheet.Put(other, kBlackInk);
  });
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
          {"peaks", 0.14, 0.19, 0.97, Peaked},
          {"steps", 0.14, 0.19, 0.97, Stepped},
          {"noisy record", 0.20, 0.20, 0.90, Noisy},
          {"loops and spirals", 0.05, 0.06, 0.99, Looped}};
}

}  // namespace graphize::accuracy
