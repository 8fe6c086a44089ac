#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/raster.h"
#include "support/plot_drawing.h"

namespace graphize::test {

enum class Symbol { Disc, Square, Triangle, Diamond, Plus, Times, Star };

/// How symbols are drawn.
struct SymbolLook {
  Symbol Is = Symbol::Disc;
  double Size = 9;     // of its box about, pixels
  double Outline = 0;  // thickness of the strokes of open ones and crosses; 0: filled
  bool Hard = false;   // no shades at its edges
  std::optional<std::uint32_t> Inside = {};  // the colour that an open one hides things with
};

/// A plot in colours, 400 x 300 unless told otherwise: one layer of each ink over the paper.
struct ColourPlot {
  explicit ColourPlot(std::uint32_t paper = kWhitePixel, double degrees = 0, int width = 400,
                      int height = 300);

  /// An empty layer with the plot's box.
  PlotDrawing Layer() const;
  void Put(const PlotDrawing& layer, std::uint32_t ink, bool hard = false);
  /// With ticks outside, and a number below.
  void Frame(std::uint32_t ink = kBlackPixel);
  void Grid(std::uint32_t ink);
  std::vector<PixelPosition> Curve(const std::function<double(double)>& v, const Stroke& stroke,
                                   std::uint32_t ink);
  /// Each centre is the symbol's centre of mass.
  void Symbols(const std::vector<PixelPosition>& centres, const SymbolLook& look,
               std::uint32_t ink);
  /// Light that falls off by `fall` of it from the upper left to the lower right corner, ink that
  /// fades by `fade` from left to right, and grain of that many levels.
  void Scan(double fall, double fade, double grain, unsigned seed = 1);

  Raster Picture;
  double Degrees;
};

}  // namespace graphize::test
