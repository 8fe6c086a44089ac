#pragma once

#include <optional>

#include "base/affine_map.h"
#include "base/raster.h"
#include "calibration/transform.h"
#include "finding_axes/page_lines.h"
#include "reading/ink.h"

namespace graphize {

/// A column of the calibrated picture in which a curve begins, and the rows within which it is
/// looked for.
struct StartColumn {
  double Column = 0;
  double Row = 0;  // where the curve of the calibrated picture is: of several the nearest counts
  std::optional<double> Top, Bottom;  // absent: the plot's
};

/// The shown picture of a page, and how the calibrated one's frame and grid lie on it.
struct PageView {
  const Raster& Picture;
  const HeldLines& Lines;
  double LineScale = 1;      // calibrated pixels to one of the image with the lines
  AffineMap FromCalibrated;  // places on the calibrated picture as it was shown to those here
  AffineMap FromUpright;     // those of the upright calibrated image to those here
};

struct CurveStart {
  PlotPixel At;
  bool IsDoubtful = false;  // more than one curve crosses the column
};

/// The curve of an ink, or of exact black without one, that crosses the column or one near it: what
/// can be followed to both sides, beside the lines of frame and grid.
std::optional<CurveStart> FindCurveStart(const PageView& page, const StartColumn& column,
                                         const std::optional<Ink>& ink);

/// How large a symbol is, pixels.
struct SymbolBlob {
  int Width = 0, Height = 0, Area = 0;
};
/// What hangs together in the ink there; absent where it is paper, or no symbol by its size.
std::optional<SymbolBlob> SymbolAt(const Raster& picture, const Ink& ink, PlotPixel at);
/// A pixel of the symbol within the frame whose size is nearest to that of `like`, if any is near.
std::optional<PlotPixel> FindSymbolLike(const PageView& page, const Ink& ink,
                                        const SymbolBlob& like);

}  // namespace graphize
