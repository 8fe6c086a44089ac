#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "calibration/axis_calibration.h"
#include "finding_axes/propose_axes.h"
#include "workspace/mode.h"

namespace graphize {

/// What a proposal was made for. It goes when anything of this becomes another.
struct ProposedFrom {
  std::uint64_t Picture = 0;  // PictureNumber
  AxisCalibration Calibration;
  Mode In = Mode::None;

  bool operator==(const ProposedFrom&) const = default;
};

/// A value of the frame that proposes axes: the text in its box, and whether somebody has looked at
/// it.
struct ProposedValue {
  std::string Text;
  bool Confirmed = false;
};

/// The frame FRM_ProposeAxes: axes as they were found, shown over the picture until they are taken
/// over or left. Not part of the document.
struct ProposedAxesForm {
  bool Shown = false;
  AxesProposal Found;
  std::array<ProposedValue, 3> X, Y;  // TXT_PXPos, TXT_PYPos; X of row 2 and Y of row 1 follow
  bool XLog = false, YLog = false;    // CHK_PXLog, CHK_PYLog
  std::optional<int> Row;             // whose box is being looked at
  ProposedFrom From;
  bool FocusAsked = false;  // on what is to be done first; the window takes it back
};

/// What the next click on the picture adds to the references of the axes.
struct ReferenceEntry {
  bool Armed = false;       // CMD_AddReference is pressed
  std::string X, Y;         // TXT_RefX, TXT_RefY, as typed; one of them may be empty
  int Chosen = -1;          // row of LST_References
  bool FocusAsked = false;  // on TXT_RefX; the window takes it back
};

}  // namespace graphize
