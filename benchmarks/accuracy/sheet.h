#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "base/raster.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::Decades;
using test::Linear;
using test::PixelPosition;
using test::PlotDrawing;
using test::Stroke;

inline constexpr double kPi = std::numbers::pi;

struct Colour {
  int R = 0, G = 0, B = 0;
};
inline constexpr Colour kBlackInk = {}, kPaper = {255, 255, 255}, kPaleGrid = {215, 215, 215};
inline constexpr Colour kInks[] = {
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

}  // namespace graphize::accuracy
