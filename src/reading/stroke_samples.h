#pragma once

#include <vector>

#include "reading/ink_blend.h"
#include "reading/ink_map.h"
#include "reading/stroke_path.h"

namespace graphize {

/// What a stroke is like, measured along it.
struct StrokeKind {
  double Width = 1;       // pixels across it
  bool IsHard = false;    // drawn in full pixels, without soft edges
  bool IsDotted = false;  // a row of dots
};

/// Where the stroke's middle lies across one column of the picture, or across one row where it is
/// steeper than 45 degrees.
struct StrokeSample {
  bool AlongRow = false;  // steep: `At` is the row, `Middle` a column
  int At = 0;
  double Middle = 0;       // where it is seen, else where the path went
  bool IsSeen = false;     // not hidden, not merged with other ink, not in a gap
  bool IsGap = false;      // there is only paper
  bool IsPart = false;     // less ink than the stroke's full width
  bool IsLoose = false;    // seen to half a pixel only, as the top of a stroke without soft edges
  bool IsCrowded = false;  // more ink than the stroke's
  int Pixel = 0;           // of the path, an index
  double Slope = 0;        // of the path: rows per column, or columns per row where it is steep

  double X() const { return AlongRow ? Middle : At; }
  double Y() const { return AlongRow ? At : Middle; }
};

StrokeKind KindOf(const InkMap& map, const std::vector<PathPixel>& path);

/// One sample per column, or row, that the path goes through, in its order. Where a stroke ends or
/// is interrupted, what is not its full width across is not seen. What other inks share with it is
/// seen by `blends`, if given; and where a part of the stroke shows one of its edges, its width
/// tells the other.
std::vector<StrokeSample> SamplesOf(const InkMap& map, const std::vector<PathPixel>& path,
                                    const StrokeKind& kind, const InkBlends* blends = nullptr);

}  // namespace graphize
