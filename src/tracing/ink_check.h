#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "calibration/transform.h"
#include "capture/point_set.h"
#include "raster/plot_image.h"

namespace graphize {

/// What the picture says of a captured point.
enum class InkVerdict : std::uint8_t {
  OnInk,
  NotOnInk,        // nothing is drawn there
  OnFrame,         // on the line of the frame or an axis at the plot's side, or beyond it
  BetweenStrokes,  // the ink above and below is of two strokes, or of a far thicker one
  Leap,            // the curve went straight on, and these points went another way
};

/// In a word, for tables: "ink", "none", "frame", "between", "leap".
const char* WordOf(InkVerdict verdict);

/// Holds points against the picture without marks: one verdict each. The points are in the order
/// in which they were captured; positions are picture pixels, row downward. An edge of a stroke,
/// one row beside it, is on ink, and so is the middle of a hollow symbol.
///
/// Costs some hundred nanoseconds a point, however large the picture is.
std::vector<InkVerdict> CheckInk(const Raster& picture, const AxisCalibration& calibration,
                                 std::span<const PlotPosition> points);

/// What came of the last check.
struct InkCheck {
  std::string Text;                       // LBL_InkCheck; empty: there is none
  std::vector<PointId> Ids;               // of the points, in the order of their capture
  std::vector<PlotPosition> Places;       // of each
  std::vector<InkVerdict> Verdicts;       // of each
  const std::uint32_t* Pixels = nullptr;  // of the picture, and how much of it was edited last
  std::size_t Edited = 0;
  bool AllCurves = false;     // the text has lines of other curves, too
  PointSet Removed;           // the doubtful points that were removed last
  std::vector<PointId> Gone;  // of an earlier check, which went with its points

  bool AnyDoubtful() const;
  PointSet Doubtful() const;
};

/// How many there are of each verdict: "734 points: 230 not on ink, 2 on the frame".
std::string InkCheckText(std::span<const InkVerdict> verdicts);

}  // namespace graphize
