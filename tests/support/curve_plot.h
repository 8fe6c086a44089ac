#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <vector>

#include "reading/read_curve.h"
#include "support/calibrated.h"
#include "support/plot_drawing.h"

namespace graphize::test {

inline constexpr std::uint32_t kBlue = 0xff1f77b4, kRed = 0xffd62728, kPale = 0xffd8d8d8;

/// A plot in colours, layer over layer, whose curves are read.
struct CurvePlot {
  static constexpr int kWidth = 400, kHeight = 300;

  explicit CurvePlot(std::uint32_t paper = kWhitePixel, double degrees = 0)
      : Picture(Raster::Filled(kWidth, kHeight, paper)), Degrees(degrees) {}

  PlotDrawing Layer() const { return PlotDrawing(kWidth, kHeight, 40, 20, 380, 260, Degrees); }
  void Put(const PlotDrawing& layer, std::uint32_t ink);
  void Frame(std::uint32_t ink = kBlackPixel);
  void Grid(std::uint32_t ink);
  std::vector<PixelPosition> Curve(const std::function<double(double)>& v, const Stroke& stroke,
                                   std::uint32_t ink);
  /// As a program draws it that knows no soft edges; all that there is becomes blue.
  void Harden();

  CurveReading Read(PixelPosition at, ReadingRequest request = {}) const;

  Raster Picture;
  double Degrees;
};

/// In pixels.
double Distance(const CurvePoint& point, const std::vector<PixelPosition>& course);

}  // namespace graphize::test
