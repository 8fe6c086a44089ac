#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bit_map.h"
#include "base/palette.h"
#include "calibration/axis_calibration.h"
#include "calibration/transform.h"
#include "reading/density.h"
#include "reading/find_symbols.h"
#include "reading/read_curve.h"
#include "tracing/blockers.h"
#include "workspace/mode.h"

namespace graphize {

/// What a preview was read from. It goes when anything of this becomes another.
struct ReadFrom {
  std::uint64_t Picture = 0;  // PictureNumber
  AxisCalibration Calibration;
  BlockerList Blockers;

  bool operator==(const ReadFrom&) const = default;
};

/// A curve as it was read where the user has clicked, shown over the picture until it is taken over
/// or left. Not part of the document.
struct CurvePreview {
  /// Picture pixels, row downward: the first click, and those that the curve goes through.
  std::vector<PlotPixel> Clicks;
  int Tolerance = 0;               // that it was read with, percent of as found
  CurveReading Reading;            // as dense as it was read
  std::vector<CurvePoint> Points;  // those that would be captured
  BitMap Ink;                      // the pixels that count as the curve's
  Colour MarkColour = kBlack;      // which stands out from its ink
  ReadFrom From;
};

/// A standard uncertainty, in pixels, from which on a point is shown as doubtful.
inline constexpr double kDoubtfulSigma = 0.5;

/// The symbols that were found where the user has clicked, shown likewise.
struct SymbolPreview {
  PlotPixel Click;  // picture pixels, row downward
  int Tolerance = 0;
  SymbolCentre Centre = SymbolCentre::Mass;
  SymbolFinding Finding;
  std::vector<bool> LeftOut;  // of the finding's symbols
  int Current = -1;           // the one that is looked at; -1: none
  Colour MarkColour = kBlack;
  ReadFrom From;
};

/// The frames "Read Curve" and "Find Symbols" of the side panel, and what they have led to: at most
/// one preview, which belongs to the mode.
struct ReadingControl {
  static constexpr int kNarrowest = 50, kAsFound = 100, kWidest = 200;
  int Tolerance = kAsFound;  // SCRL_Tolerance: what counts as the curve's ink, percent of as found
  ReadingDensity::Kind Density = ReadingDensity::Kind::Each;  // CMB_Density
  std::string Pixels = "10", Xs;                              // TXT_Density, as typed
  std::string Reading;       // LBL_Reading: what was read, how sure, or why nothing was
  Mode SaidIn = Mode::None;  // of the text
  int SaidPoints = 0;        // of the active curve by then

  SymbolCentre Centre = SymbolCentre::Mass;  // OPT_Centre_0 (mass), OPT_Centre_1 (box)

  std::optional<CurvePreview> Curve;
  std::optional<SymbolPreview> Symbols;
};

}  // namespace graphize
