#include "support/colour_plot.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace graphize::test {

namespace {

/// Changes every channel of every pixel: `change(x, y, level)`.
template <class Change>
void ChangeLevels(Raster& picture, const Change& change) {
  for (int y = 0; y < picture.Height(); ++y)
    for (int x = 0; x < picture.Width(); ++x) {
      std::uint32_t mixed = 0xff000000u;
      for (const int shift : {0, 8, 16}) {
        const double level = change(x, y, picture.Row(y)[x] >> shift & 0xff);
        mixed |= static_cast<std::uint32_t>(std::lround(std::clamp(level, 0.0, 255.0))) << shift;
      }
      picture.Row(y)[x] = mixed;
    }
}

std::uint32_t Mixed(std::uint32_t pixel, double share, std::uint32_t ink) {
  std::uint32_t mixed = 0xff000000u;
  for (const int shift : {0, 8, 16}) {
    const double from = pixel >> shift & 0xff, to = ink >> shift & 0xff;
    mixed |= static_cast<std::uint32_t>(std::lround(from + share * (to - from))) << shift;
  }
  return mixed;
}

using Polygon = std::vector<PixelPosition>;

/// The strokes of a symbol of size 1 about its centre of mass; a closed one ends where it begins.
std::vector<Polygon> StrokesOf(Symbol symbol) {
  const auto ring = [](int corners, double radius, double turn) {
    Polygon places;
    for (int i = 0; i <= corners; ++i) {
      const double angle = turn + 2 * std::numbers::pi * i / corners;
      places.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return places;
  };
  constexpr double kUp = -std::numbers::pi / 2, kQuarter = std::numbers::pi / 4;
  const Polygon level = {{-0.5, 0}, {0.5, 0}}, upright = {{0, -0.5}, {0, 0.5}},
                rising = {{-0.42, 0.42}, {0.42, -0.42}}, falling = {{-0.42, -0.42}, {0.42, 0.42}};
  switch (symbol) {
    case Symbol::Disc:
      return {ring(72, 0.5, 0)};
    case Symbol::Square:
      return {ring(4, 0.62, kQuarter)};
    case Symbol::Triangle:
      return {ring(3, 0.62, kUp)};
    case Symbol::Diamond:
      return {ring(4, 0.6, 0)};
    case Symbol::Plus:
      return {level, upright};
    case Symbol::Times:
      return {rising, falling};
    case Symbol::Star:
      return {upright, rising, falling};
  }
  return {};
}

double DistanceTo(const Polygon& line, PixelPosition at) {
  double nearest = 1e9;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const PixelPosition a = line[i - 1], d{line[i].X - a.X, line[i].Y - a.Y};
    const double t =
        std::clamp(((at.X - a.X) * d.X + (at.Y - a.Y) * d.Y) / (d.X * d.X + d.Y * d.Y), 0.0, 1.0);
    nearest = std::min(nearest, std::hypot(at.X - a.X - t * d.X, at.Y - a.Y - t * d.Y));
  }
  return nearest;
}

/// By the crossings of a ray.
bool IsInside(const Polygon& ring, PixelPosition at) {
  bool inside = false;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    const PixelPosition a = ring[i - 1], b = ring[i];
    if ((a.Y > at.Y) != (b.Y > at.Y) && at.X < a.X + (at.Y - a.Y) / (b.Y - a.Y) * (b.X - a.X))
      inside = !inside;
  }
  return inside;
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
  for (std::size_t i = 0; i < Picture.PixelCount(); ++i)
    Picture.Pixels()[i] = Mixed(Picture.Pixels()[i], 1 - (cover.Pixels()[i] & 0xff) / 255.0, ink);
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

void ColourPlot::Symbols(const std::vector<PixelPosition>& centres, const SymbolLook& look,
                         std::uint32_t ink) {
  std::vector<Polygon> strokes = StrokesOf(look.Is);
  for (Polygon& stroke : strokes)
    for (PixelPosition& corner : stroke) corner = {look.Size * corner.X, look.Size * corner.Y};
  const auto isInside = [&](PixelPosition at) { return IsInside(strokes.front(), at); };
  const auto isInk = [&](PixelPosition at) {
    return look.Outline > 0 ? std::any_of(strokes.begin(), strokes.end(),
                                          [&](const Polygon& stroke) {
                                            return DistanceTo(stroke, at) <= look.Outline / 2;
                                          })
                            : isInside(at);
  };
  const auto fill = [&](PixelPosition centre, const auto& isPart, std::uint32_t colour) {
    const int reach = static_cast<int>(look.Size);
    const int cx = static_cast<int>(std::lround(centre.X)),
              cy = static_cast<int>(std::lround(centre.Y));
    for (int y = std::max(cy - reach, 0); y <= std::min(cy + reach, Picture.Height() - 1); ++y)
      for (int x = std::max(cx - reach, 0); x <= std::min(cx + reach, Picture.Width() - 1); ++x) {
        constexpr int kParts = 8;
        int covered = 0;
        for (int i = 0; i < kParts * kParts; ++i)
          covered += isPart(PixelPosition{x - 0.5 + (i % kParts + 0.5) / kParts - centre.X,
                                          y - 0.5 + (i / kParts + 0.5) / kParts - centre.Y})
                         ? 1
                         : 0;
        double share = static_cast<double>(covered) / (kParts * kParts);
        if (look.Hard) share = share >= 0.5 ? 1 : 0;
        if (share > 0) Picture.Row(y)[x] = Mixed(Picture.Row(y)[x], share, colour);
      }
  };
  for (const PixelPosition& centre : centres) {
    if (look.Inside) fill(centre, isInside, *look.Inside);
    fill(centre, isInk, ink);
  }
}

void ColourPlot::Scan(double fall, double fade, double grain, unsigned seed) {
  std::mt19937 random(seed);
  const auto part = [&] {
    return static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
  };
  const double w = Picture.Width(), h = Picture.Height();
  ChangeLevels(Picture, [&](int x, int y, double level) {
    const double faded = level + fade * x / w * (255 - level);
    return faded * (1 - fall * (x / w + y / h) / 2) + grain * 2 * (part() + part() + part() - 1.5);
  });
}

}  // namespace graphize::test
