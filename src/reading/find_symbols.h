#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axes_frame.h"
#include "raster/picture_operation.h"
#include "reading/read_curve.h"

namespace graphize {

/// Where a symbol's point is.
enum class SymbolCentre { Mass, Box };

/// What is asked of a search for symbols.
struct SymbolRequest {
  double X = 0, Y = 0;  // the click, on the picture
  SymbolCentre Centre = SymbolCentre::Mass;
  float Tolerance = 1;  // kLeastTolerance to kMostTolerance: how far one may differ from the others
  std::vector<ReadingWall> Walls = {};  // no symbol has its centre there
};

/// A symbol as it was found on the picture.
struct FoundSymbol {
  double X = 0, Y = 0;  // its centre, rows downward; a pixel's centre has whole numbers
  double Sigma = 0;     // standard uncertainty of either, pixels
  double Score = 0;     // how like the others it is, 0 to 1
  std::string Doubt;    // why it may be none, in a few words; empty: it is one
};

/// The symbols of one kind.
struct SymbolFinding {
  std::vector<FoundSymbol> Symbols;  // from left to right
  double Width = 0, Height = 0;      // of each of them, pixels
  std::string Refusal;               // why there is nothing, in one sentence
  bool IsStopped = false;            // nothing was found then
};

/// Finds all symbols like the one that was clicked, of its colour: filled or open, on lines and on
/// a grid, overlapping or partly hidden. The one that was clicked shows the shape, and the clear
/// ones like it, in the middle, show it better; each is registered by least squares. The frame is
/// ReadCurve's.
SymbolFinding FindSymbols(const Raster& picture, const AxesFrame& frame,
                          const SymbolRequest& request, PictureOperation& operation);

}  // namespace graphize
