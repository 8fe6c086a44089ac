#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "finding_axes/text_reader.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Sure: two readers and the ticks agree, and nothing speaks against it. Proposal: each value is to
/// be confirmed. None: nothing was found, or nothing that goes together.
enum class AxesVerdict { None, Proposal, Sure };
/// "none", "proposal", "sure"
const char* NameOf(AxesVerdict verdict);

/// A label that was read, at the place of its tick: fractional column and row (downward), centres
/// of pixels being whole.
struct ProposedLabel {
  std::string Text;  // "10^3" where 3 is raised
  double Value = 0;
  double Column = 0, Row = 0;
  double Residual = 0;  // how far along the axis the tick lies from where the scale has the value,
                        // pixels
  bool ReadTwice = false;  // alike by both readers
};

struct ProposedAxis {
  AxesVerdict Verdict = AxesVerdict::None;
  bool Log = false;
  std::string Reason;  // in plain words, for each verdict
  std::vector<ProposedLabel> Labels;
  bool IsAfter = false;  // the labels are printed below their ticks, or to the right of them
  // Of several scales what each goes over, "0 to 50"; the first are nearest to the plot. Else
  // empty.
  std::vector<std::string> Scales;
  int Scale = 0;          // the one that is proposed
  bool IsChosen = false;  // it was chosen, and nothing but that there are others is doubtful
};

/// One of the three rows that define axes: the origin, a point on the X axis, one on the Y axis.
struct ProposedRow {
  double Column = 0, Row = 0;
  double X = 0, Y = 0;
  double Sigma = 0;  // standard uncertainty of column and row, pixels: the larger one of both axes
};

/// A part of the picture with a plot and its labels, all pixels included.
struct PlotArea {
  int Left = 0, Top = 0, Right = -1, Bottom = -1;
};

/// What is meant where a picture has several, by their numbers in the proposal. A scale that was
/// chosen is a proposal at best.
struct AxesChoice {
  std::optional<int> Plot, XScale, YScale;
};

struct AxesProposal {
  AxesVerdict Verdict = AxesVerdict::None;  // the lesser of the axes'
  ProposedAxis X, Y;
  std::vector<ProposedRow> Rows;  // three, or none without a verdict
  std::vector<PlotArea> Plots;    // that the picture has; from two on one is to be chosen
  AxesChoice Choice;              // that was asked for
  bool IsStopped = false;
};

/// Finds the axes of a plot by its frame, ticks and labels. The rows stand at labelled ticks far
/// apart, of which those are chosen whose places are nearest to whole pixels. Without a second
/// reader the best verdict is a proposal; of several plots none is looked at before one is chosen.
AxesProposal ProposeAxes(const Raster& picture, PictureOperation& operation,
                         const TextLineReader& second = ReadTextLine,
                         const AxesChoice& choice = {});

}  // namespace graphize
