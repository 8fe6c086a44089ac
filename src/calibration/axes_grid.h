#pragma once

#include <string>
#include <vector>

#include "calibration/axis_calibration.h"

namespace graphize {

/// A part of the picture in pixels, row downward.
struct PicturePart {
  double Left = 0, Top = 0, Right = 0, Bottom = 0;
};

/// The line of a round value on the picture, fractional pixels, row downward; as `calibration` has
/// them, whatever is drawn there.
struct ValueLine {
  bool OfX = true;
  double Value = 0;
  std::string Text;  // empty: a minor line of a log axis
  double FromColumn = 0, FromRow = 0, ToColumn = 0, ToRow = 0;
};

/// The lines of round values of both axes within a part of a picture of that height: some eight of
/// each, 1, 2 or 5 of a power of ten apart; on a log axis the powers, with those between where
/// there is room. A line of X goes downward, one of Y to the right. Empty without axes that give
/// values.
std::vector<ValueLine> AxesGrid(const AxisCalibration& calibration, int pictureHeight,
                                const PicturePart& part);

}  // namespace graphize
