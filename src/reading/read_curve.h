#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/plot_surroundings.h"
#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/stroke_fit.h"
#include "reading/stroke_path.h"

namespace graphize {

/// A round dot that no reading passes, pixels.
struct ReadingWall {
  int X = 0, Y = 0, Size = 0;

  double Radius() const { return 0.5 * std::max(Size, 1); }
};

/// What is asked of a reading.
struct ReadingRequest {
  double X = 0, Y = 0;                  // the click, on the picture
  float Tolerance = 1;                  // MapOf
  std::vector<PathPixel> Through = {};  // further places that the curve goes through
  std::vector<ReadingWall> Walls = {};
};

/// A curve as it was read off the picture.
struct CurveReading {
  std::vector<CurvePoint> Points;  // along the curve, from its left end
  StrokeKind Kind;
  PathPixel Start;                  // where it was begun
  std::string Refusal;              // why there is nothing, in one sentence
  std::vector<std::string> Doubts;  // what could not be read safely, a sentence each
  std::vector<PathPixel> Missed;    // of ReadingRequest::Through, where it was not found
  InkMap Map;                       // what was taken for its ink; empty where there was none
  std::vector<Rgb> Inks;            // the picture's, as strong as the curve's
  bool IsStopped = false;           // nothing was read then
};

/// Reads the curve of any colour that was clicked, as antialiased, compressed or hard as it may be:
/// its ink is told from the paper and from other inks, grid lines and the frame are left out, and
/// the stroke is followed to both sides to its ends, within reach of every place that it is said to
/// go through. One point per column, or per row where the curve is steep. The frame is the axes',
/// without axes the one that is drawn, or else the whole picture. Words, a legend's samples and its
/// frame are refused, as far as they are known.
CurveReading ReadCurve(const Raster& picture, const AxesFrame& frame,
                       const PlotSurroundings& around, const ReadingRequest& request,
                       PictureOperation& operation);

}  // namespace graphize
