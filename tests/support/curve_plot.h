#pragma once

#include <cstdint>
#include <vector>

#include "reading/read_curve.h"
#include "support/colour_plot.h"

namespace graphize::test {

inline constexpr std::uint32_t kBlue = 0xff1f77b4, kRed = 0xffd62728, kPale = 0xffd8d8d8;

/// A plot whose curves are read.
struct CurvePlot : ColourPlot {
  using ColourPlot::ColourPlot;

  /// As a program draws it that knows no soft edges; all that there is becomes blue.
  void Harden();

  CurveReading Read(PixelPosition at, ReadingRequest request = {}) const;
};

/// From the nearest place of the course, pixels.
double Distance(const CurvePoint& point, const std::vector<PixelPosition>& course);

}  // namespace graphize::test
