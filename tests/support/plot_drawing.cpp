#include "support/plot_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <string_view>

namespace graphize::test {

namespace {

double DistanceToSegment(double x, double y, PixelPosition a, PixelPosition b) {
  const double dx = b.X - a.X, dy = b.Y - a.Y;
  const double squared = dx * dx + dy * dy;
  const double t =
      squared == 0 ? 0 : std::clamp(((x - a.X) * dx + (y - a.Y) * dy) / squared, 0.0, 1.0);
  return std::hypot(x - a.X - t * dx, y - a.Y - t * dy);
}

/// The drawn parts of a polyline.
std::vector<std::vector<PixelPosition>> Dashes(const std::vector<PixelPosition>& points,
                                               const Stroke& stroke) {
  if (stroke.Gap <= 0) return {points};
  std::vector<std::vector<PixelPosition>> dashes;
  const double period = stroke.Dash + stroke.Gap;
  double along = 0;
  bool drawing = false;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const PixelPosition a = points[i - 1], b = points[i];
    const double length = std::hypot(b.X - a.X, b.Y - a.Y);
    const int steps = std::max(1, static_cast<int>(std::ceil(length * 4)));
    for (int k = 0; k < steps; ++k) {
      const double part = static_cast<double>(k) / steps;
      const bool inDash = std::fmod(along + part * length, period) < stroke.Dash;
      const PixelPosition here{a.X + part * (b.X - a.X), a.Y + part * (b.Y - a.Y)};
      if (inDash && !drawing) dashes.emplace_back();
      if (inDash) dashes.back().push_back(here);
      drawing = inDash;
    }
    along += length;
  }
  return dashes;
}

std::vector<double> Steps(int count) {
  std::vector<double> steps;
  for (int i = 0; i <= count; ++i) steps.push_back(static_cast<double>(i) / count);
  return steps;
}

/// Seven rows of five dots each; none for what is no digit, minus or point.
std::string_view Glyph(char c) {
  static constexpr std::string_view kCharacters = "0123456789-.";
  static constexpr std::string_view kGlyphs[] = {
      "01110100011000110001100011000101110", "00100011000010000100001000010001110",
      "01110100010000100110010001000011111", "01110100010000100110000011000101110",
      "00010001100101010010111110001000010", "11111100001111000001000011000101110",
      "01110100001000011110100011000101110", "11111000010001000100010000100001000",
      "01110100011000101110100011000101110", "01110100011000101111000010000101110",
      "00000000000000011111000000000000000", "00000000000000000000000000110001100"};
  const std::size_t at = kCharacters.find(c);
  return at == kCharacters.npos ? "" : kGlyphs[at];
}

}  // namespace

PlotDrawing::PlotDrawing(int width, int height, double left, double top, double right,
                         double bottom, double degrees, double bend)
    : width_(width),
      height_(height),
      left_(left),
      top_(top),
      right_(right),
      bottom_(bottom),
      cos_(std::cos(degrees * std::numbers::pi / 180)),
      sin_(std::sin(degrees * std::numbers::pi / 180)),
      bend_(bend),
      darkness_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0.0f) {}

PixelPosition PlotDrawing::Place(double u, double v) const {
  const double x = left_ + u * (right_ - left_) - 0.5 * width_;
  const double y = bottom_ + v * (top_ - bottom_) - 0.5 * height_;
  const double sag = bend_ * std::sin(u * std::numbers::pi);
  return {0.5 * width_ + x * cos_ + y * sin_, 0.5 * height_ - x * sin_ + y * cos_ + sag};
}

void PlotDrawing::LinesAtU(const std::vector<double>& positions, const Stroke& stroke) {
  for (const double u : positions) {
    std::vector<PixelPosition> line;
    for (const double v : Steps(100)) line.push_back(Place(u, v));
    Polyline(line, stroke);
  }
}

void PlotDrawing::LinesAtV(const std::vector<double>& positions, const Stroke& stroke) {
  for (const double v : positions) {
    std::vector<PixelPosition> line;
    for (const double u : Steps(100)) line.push_back(Place(u, v));
    Polyline(line, stroke);
  }
}

void PlotDrawing::Frame(const Stroke& stroke, int ticks, double tickLength) {
  LinesAtU({0, 1}, stroke);
  LinesAtV({0, 1}, stroke);
  if (ticks == 0) return;
  const double du = tickLength / (right_ - left_), dv = tickLength / (bottom_ - top_);
  for (const double at : Steps(ticks)) {
    Polyline({Place(at, 0), Place(at, -dv)}, stroke);
    Polyline({Place(0, at), Place(-du, at)}, stroke);
  }
}

std::vector<PixelPosition> PlotDrawing::Curve(const std::function<double(double)>& v,
                                              const Stroke& stroke, double first, double last) {
  const int count = static_cast<int>(4 * (right_ - left_) * (last - first)) + 1;
  std::vector<PixelPosition> points;
  for (const double part : Steps(count)) {
    const double u = first + part * (last - first);
    points.push_back(Place(u, v(u)));
  }
  Polyline(points, stroke);
  return points;
}

void PlotDrawing::Polyline(const std::vector<PixelPosition>& points, const Stroke& stroke) {
  // The cover of all pieces is collected first: a curve's overlapping pieces are one stroke.
  const double reach = 0.5 * stroke.Thickness + 1;
  std::vector<std::pair<std::size_t, float>> covers;
  for (const auto& dash : Dashes(points, stroke)) {
    for (std::size_t i = 0; i + (dash.size() > 1 ? 1 : 0) < dash.size(); ++i) {
      const PixelPosition a = dash[i], b = dash[std::min(i + 1, dash.size() - 1)];
      const int x0 = std::max(0, static_cast<int>(std::floor(std::min(a.X, b.X) - reach)));
      const int x1 = std::min(width_ - 1, static_cast<int>(std::ceil(std::max(a.X, b.X) + reach)));
      const int y0 = std::max(0, static_cast<int>(std::floor(std::min(a.Y, b.Y) - reach)));
      const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(std::max(a.Y, b.Y) + reach)));
      for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
          const double cover = 0.5 * stroke.Thickness + 0.5 - DistanceToSegment(x, y, a, b);
          if (cover > 0)
            covers.emplace_back(static_cast<std::size_t>(y) * width_ + x,
                                static_cast<float>(std::min(cover, 1.0)));
        }
      }
    }
  }
  std::sort(covers.begin(), covers.end());
  for (std::size_t i = 0; i < covers.size(); ++i) {
    if (i + 1 < covers.size() && covers[i + 1].first == covers[i].first) continue;
    const auto y = static_cast<int>(covers[i].first / static_cast<std::size_t>(width_));
    const auto x = static_cast<int>(covers[i].first % static_cast<std::size_t>(width_));
    Darken(x, y, covers[i].second, stroke.Darkness);
  }
}

void PlotDrawing::Disc(PixelPosition centre, double diameter) {
  Polyline({centre, centre}, {.Thickness = diameter});
}

void PlotDrawing::Box(PixelPosition centre, double side, const Stroke& stroke) {
  const double half = 0.5 * side;
  Polyline({{centre.X - half, centre.Y - half},
            {centre.X + half, centre.Y - half},
            {centre.X + half, centre.Y + half},
            {centre.X - half, centre.Y + half},
            {centre.X - half, centre.Y - half}},
           stroke);
}

void PlotDrawing::Digits(PixelPosition at, const std::string& text, double dot) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view glyph = Glyph(text[i]);
    for (int k = 0; k < static_cast<int>(glyph.size()); ++k) {
      if (glyph[k] != '1') continue;
      const auto x0 = static_cast<int>(at.X + dot * (static_cast<double>(i) * 6 + k % 5));
      const auto y0 = static_cast<int>(at.Y + dot * (k / 5));
      for (int y = y0; y < y0 + std::max(1.0, dot); ++y)
        for (int x = x0; x < x0 + std::max(1.0, dot); ++x) Darken(x, y, 1, 1);
    }
  }
}

void PlotDrawing::Blank(PixelPosition leftTop, PixelPosition rightBottom) {
  const auto clamped = [](double at, int size) {
    return std::clamp(static_cast<int>(std::lround(at)), 0, size - 1);
  };
  for (int y = clamped(leftTop.Y, height_); y <= clamped(rightBottom.Y, height_); ++y)
    for (int x = clamped(leftTop.X, width_); x <= clamped(rightBottom.X, width_); ++x) At(x, y) = 0;
}

void PlotDrawing::Scan(int rounds, double grain, unsigned seed) {
  for (int round = 0; round < rounds; ++round) {
    std::vector<float> soft = darkness_;
    for (int y = 1; y + 1 < height_; ++y) {
      for (int x = 1; x + 1 < width_; ++x) {
        soft[static_cast<std::size_t>(y) * width_ + x] =
            0.5f * At(x, y) + 0.125f * (At(x - 1, y) + At(x + 1, y) + At(x, y - 1) + At(x, y + 1));
      }
    }
    darkness_ = std::move(soft);
  }
  if (grain <= 0) return;
  std::mt19937 random(seed);
  for (float& darkness : darkness_) {
    const double unit = static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
    darkness += static_cast<float>(grain * (2 * unit - 1));
  }
}

Raster PlotDrawing::Picture() const {
  Raster raster(width_, height_);
  for (std::size_t i = 0; i < darkness_.size(); ++i)
    raster.Pixels()[i] = darkness_[i] > 0.5f ? kBlackPixel : kWhitePixel;
  return raster;
}

Raster PlotDrawing::GreyPicture() const {
  Raster raster(width_, height_);
  for (std::size_t i = 0; i < darkness_.size(); ++i) {
    const auto grey =
        static_cast<std::uint32_t>(std::lround(255 * (1 - std::clamp(darkness_[i], 0.0f, 1.0f))));
    raster.Pixels()[i] = 0xff000000u | grey << 16 | grey << 8 | grey;
  }
  return raster;
}

AxisCalibration PlotDrawing::Calibration(float x0, float x1, float y0, float y1, bool xLog,
                                         bool yLog) const {
  AxisCalibration calibration;
  const PixelPosition places[3] = {Place(0, 0), Place(1, 0), Place(0, 1)};
  for (int i = 0; i < 3; ++i) {
    calibration.PixelX[i] = static_cast<std::int16_t>(std::lround(places[i].X));
    calibration.PixelY[i] = static_cast<std::int16_t>(height_ - std::lround(places[i].Y));
    calibration.ValueX[i] = i == 1 ? x1 : x0;
    calibration.ValueY[i] = i == 2 ? y1 : y0;
    calibration.Defined[i] = true;
  }
  const auto dx = static_cast<float>(calibration.PixelX[1] - calibration.PixelX[0]);
  const auto dy = static_cast<float>(calibration.PixelY[1] - calibration.PixelY[0]);
  calibration.Angle = std::atan(dy / dx);
  calibration.SinAngle = std::sin(calibration.Angle);
  calibration.CosAngle = std::cos(calibration.Angle);
  calibration.XAxisLength = dx / calibration.CosAngle;
  calibration.YAxisLength =
      static_cast<float>(calibration.PixelY[2] - calibration.PixelY[0]) / calibration.CosAngle;
  calibration.XLog = xLog;
  calibration.YLog = yLog;
  return calibration;
}

void PlotDrawing::Darken(int x, int y, double cover, double darkness) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  float& here = At(x, y);
  here = static_cast<float>(here + cover * std::max(0.0, darkness - here));
}

std::vector<double> Linear(int intervals) {
  std::vector<double> positions;
  for (int i = 1; i < intervals; ++i) positions.push_back(static_cast<double>(i) / intervals);
  return positions;
}

std::vector<double> Decades(int decades) {
  std::vector<double> positions;
  for (int decade = 0; decade < decades; ++decade)
    for (int k = decade == 0 ? 2 : 1; k < 10; ++k)
      positions.push_back((decade + std::log10(k)) / decades);
  return positions;
}

Raster WithSecondScale(const Raster& pendulum) {
  Raster two = Raster::Filled(pendulum.Width() + 60, pendulum.Height(), kWhitePixel);
  for (int y = 0; y < pendulum.Height(); ++y) {
    std::copy(pendulum.Row(y), pendulum.Row(y) + pendulum.Width(), two.Row(y));
    if (y < 25 || y > 335) continue;
    std::copy(pendulum.Row(y) + 26, pendulum.Row(y) + 64, two.Row(y + 97) + 618);
  }
  return two;
}

}  // namespace graphize::test
