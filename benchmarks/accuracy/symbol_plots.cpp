#include "symbol_plots.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "support/colour_plot.h"

namespace graphize::accuracy {

namespace {

using test::ColourPlot;
using test::PlotDrawing;
using test::Symbol;
using test::SymbolLook;

constexpr std::uint32_t kInks[] = {0xff1f77b4, 0xffd62728, 0xff2ca02c, 0xff000000, 0xffff7f0e};
constexpr std::uint32_t kPale = 0xffd7d7d7;
constexpr Symbol kSolid[] = {Symbol::Disc, Symbol::Square, Symbol::Triangle, Symbol::Diamond};
constexpr Symbol kCrosses[] = {Symbol::Plus, Symbol::Times, Symbol::Star};

struct Look {
  SymbolLook Symbols;
  bool Line = false;       // of their colour, from each to the next
  std::uint32_t Grid = 0;  // its colour
  double Apart = 1.7;      // nearest neighbours, in sizes
  bool Others = false;     // of another shape in the same colour
  bool Scanned = false;
  int Count = 40;
};

class Drawing {
 public:
  explicit Drawing(unsigned seed) : random_(seed), seed_(seed) {}

  double Between(double a, double b) {
    return a + (b - a) * static_cast<double>(random_()) / static_cast<double>(std::mt19937::max());
  }
  Symbol Solid() const { return kSolid[seed_ % 4]; }
  Symbol Cross() const { return kCrosses[seed_ % 3]; }
  std::uint32_t Ink() const { return kInks[seed_ % 5]; }

  SymbolPlot Of(const Look& look) {
    ColourPlot plot(look.Scanned ? 0xfff4f0e4 : kWhitePixel, 0, 800, 600);
    if (look.Grid != 0) plot.Grid(look.Grid);
    plot.Frame();
    const double size = look.Symbols.Size, apart = look.Apart * size;
    std::vector<PixelPosition> centres, others;
    const PlotDrawing layer = plot.Layer();
    const double f = Between(0.5, 1.5), p = Between(0, 6), spread = look.Line ? 0.04 : 0.25;
    const auto isFree = [&](PixelPosition at, const std::vector<PixelPosition>& from,
                            double least) {
      return std::none_of(from.begin(), from.end(), [&](PixelPosition other) {
        return std::hypot(at.X - other.X, at.Y - other.Y) < least;
      });
    };
    for (int i = 0, tries = 0; i < look.Count && tries < 4000; ++tries) {
      const double u =
          look.Line ? (i + 0.5 + Between(-0.2, 0.2)) / look.Count : Between(0.04, 0.96);
      const double v =
          0.5 + 0.3 * std::sin(2 * std::numbers::pi * f * u + p) + Between(-spread, spread);
      const PixelPosition at = layer.Place(std::clamp(u, 0.03, 0.97), std::clamp(v, 0.05, 0.95));
      if (!isFree(at, centres, apart)) continue;
      centres.push_back(at);
      ++i;
    }
    for (int tries = 0; tries < 200 && others.size() < 12; ++tries) {
      const PixelPosition at = layer.Place(Between(0.04, 0.96), Between(0.05, 0.95));
      if (isFree(at, centres, 2 * size) && isFree(at, others, 2 * size)) others.push_back(at);
    }
    // Another series below, of another colour and shape.
    SymbolLook second = look.Symbols;
    second.Is = look.Symbols.Is == Symbol::Disc ? Symbol::Square : Symbol::Disc;
    plot.Symbols(others, second, look.Others ? Ink() : kInks[(seed_ + 1) % 5]);
    if (look.Line) {
      PlotDrawing line = plot.Layer();
      line.Polyline(centres, {.Thickness = 1.5});
      plot.Put(line, Ink(), look.Symbols.Hard);
    }
    plot.Symbols(centres, look.Symbols, Ink());
    if (look.Scanned) plot.Scan(0.3, 0, 5, seed_);
    const PixelPosition clicked = centres[centres.size() / 3];
    return {
        std::move(plot.Picture),
        layer.Calibration(),
        centres,
        {std::round(clicked.X + Between(-1.4, 1.4)), std::round(clicked.Y + Between(-1.4, 1.4))},
        size};
  }

 private:
  std::mt19937 random_;
  unsigned seed_;
};

SymbolPlot Filled(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(5, 13)}});
}
SymbolPlot Hard(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(6, 12), 0, true, {}}});
}
SymbolPlot Open(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(8, 14), 1.4}});
}
SymbolPlot Crosses(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Cross(), drawing.Between(8, 13), 1.4}});
}
SymbolPlot FilledOnLine(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(7, 12)}, .Line = true});
}
SymbolPlot OpenOnLine(unsigned seed) {
  Drawing drawing(seed);
  SymbolLook look{drawing.Solid(), drawing.Between(9, 13), 1.4};
  if (seed % 2 == 0) look.Inside = kWhitePixel;
  return drawing.Of({.Symbols = look, .Line = true});
}
SymbolPlot CrossesOnLine(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Cross(), drawing.Between(9, 13), 1.4}, .Line = true});
}
SymbolPlot OnGrid(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(7, 12), seed % 3 == 0 ? 1.4 : 0},
                     .Grid = seed % 2 == 0 ? kPale : kBlackPixel});
}
SymbolPlot Overlapping(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of(
      {.Symbols = {drawing.Solid(), drawing.Between(8, 12)}, .Apart = 0.55, .Count = 150});
}
SymbolPlot OpenOverlapping(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of(
      {.Symbols = {drawing.Solid(), drawing.Between(9, 13), 1.4}, .Apart = 0.55, .Count = 110});
}
SymbolPlot TwoShapes(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(8, 12), seed % 2 == 0 ? 1.4 : 0},
                     .Others = true});
}
SymbolPlot Scanned(unsigned seed) {
  Drawing drawing(seed);
  return drawing.Of({.Symbols = {drawing.Solid(), drawing.Between(7, 12)}, .Scanned = true});
}

}  // namespace

std::vector<SymbolFamily> SymbolFamilies() {
  return {{"filled", 0.06, Filled},
          {"hard edges", 0.15, Hard},
          {"open", 0.25, Open},
          {"crosses", 0.4, Crosses},
          {"filled, on a line of their ink", 0.4, FilledOnLine},
          {"open, on a line of their ink", 0.4, OpenOnLine},
          {"crosses on a line of their ink", 0.4, CrossesOnLine},
          {"on a grid, pale or black", 0.25, OnGrid},
          {"filled, overlapping", 0.25, Overlapping},
          {"open, overlapping", 0.25, OpenOverlapping},
          {"two shapes of one colour", 0.25, TwoShapes},
          {"scanned", 0.15, Scanned}};
}

}  // namespace graphize::accuracy
