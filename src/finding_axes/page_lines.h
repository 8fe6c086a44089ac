#pragma once

#include <vector>

#include "base/affine_map.h"
#include "finding_axes/page_match.h"

namespace graphize {

/// A straight line of a page that others are held by: of its frame or its grid.
struct HeldLine {
  bool IsLevel = false;
  double Across = 0;    // its row or column on the upright page
  double Length = 0;    // of what is drawn
  double Reach = 2;     // from its middle to beyond its ink, pixels
  bool IsSide = false;  // the outermost of its course
};

/// A point of a line, between pixels, and the line's normal there.
struct HeldPoint {
  double X = 0, Y = 0;
  double NormalX = 0, NormalY = 0;
  int Line = 0;
};

struct HeldLines {
  std::vector<HeldLine> Lines;
  std::vector<HeldPoint> Points;  // on the ink as the page lies
};

/// The long lines of a page, as the page itself shows them to a part of a pixel.
HeldLines HeldLinesOf(const UprightPage& page);

/// How the lines of one page lie on another.
struct LineFit {
  AffineMap Map;                  // from Ink to Ink
  std::vector<double> Residuals;  // of each point, along the line's normal; NaN: no line is there
  double Share = 0;               // of the points within a pixel
  double Rms = 0;                 // of those
  double Worst = 0;               // 90 % of all points that are found lie nearer
};

/// The map by weighted least squares over all points of the lines (biweight; Beaton and Tukey
/// 1974), beginning with a map that is right to some pixels. Shift, turn and one scale alone where
/// lines of one course do not tell of a second.
LineFit FitLines(const HeldLines& lines, const InkImage& page, const AffineMap& begin);

}  // namespace graphize
