#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "calibration/axis_references.h"
#include "desktop/command_states.h"
#include "desktop/desktop.h"

namespace graphize {

/// Three pixels tied to graph values: row 0 the origin, 1 the X-axis point, 2 the Y-axis point.
/// Pixel rows count upward from the bottom edge of the picture: height minus image row.
struct AxisCalibration {
  std::array<std::int16_t, 3> PixelX{};
  std::array<std::int16_t, 3> PixelY{};
  std::array<float, 3> ValueX{};
  std::array<float, 3> ValueY{};
  std::array<bool, 3> Defined{};
  std::array<bool, 3> Armed{};  // the row that waits for a click
  std::int16_t CurrentRow = 0;
  bool FocusOriginPending = false;
  bool XLog = false;
  bool YLog = false;
  float Angle = 0;  // radians, of the X axis on the picture; positive when it rises to the right
  float SinAngle = 0;
  float CosAngle = 1;
  float XAxisLength = 0;  // pixels along the turned X axis, negative when it runs to the left
  float YAxisLength = 0;  // pixels along the turned Y axis, negative when it runs downward
  std::string ValueFormat;
  AxisRefinement Refined;  // dropped by any change of a row; its references go with a reset

  bool IsComplete() const { return Defined[2]; }
  bool AnyDefined() const { return Defined[0] || Defined[1] || Defined[2]; }
  bool operator==(const AxisCalibration&) const = default;
};

enum class FocusTarget { None, X0, Y0, X1, Y1, X2, Y2 };

/// What the axis panel shows.
struct AxisPanel {
  struct Row {
    std::string XPixel, YPixel;  // LBL_Xpixel, LBL_Ypixel
    std::string XText, YText;    // TXT_XPos, TXT_YPos
    bool XEnabled = false, YEnabled = false;
    bool ReDefineEnabled = false;

    bool operator==(const Row&) const = default;
  };
  std::array<Row, 3> Rows;
  std::string Angle;                      // LBL_Angle, degrees
  std::string Tips;                       // LBL_Tips, in English
  std::string Note;                       // in front of Tips: how a typed text was read
  std::string LiveXPixel;                 // LBL_XRTPixel
  std::string LiveYPixel;                 // LBL_YRTPixel
  FocusTarget Focus = FocusTarget::None;  // asked for once; the window takes it back
};

/// What LBL_Tips says: note and instruction.
std::string Instruction(const AxisPanel& panel);

/// Whether there is anything in the panel that a reset would lose.
bool HasBegun(const AxisCalibration& calibration, const AxisPanel& panel);

/// An axis becomes logarithmic or linear: the rows' transform holds again.
void SetXLog(AxisCalibration& calibration, bool on);
void SetYLog(AxisCalibration& calibration, bool on);

/// Resets the calibration and asks for the origin. The log switches stay as they are.
void InitAxisDefFrame(AxisCalibration& calibration, AxisPanel& panel);

/// Accepts row Index at a pixel (row upward) with the values in the row's text boxes; false when it
/// is refused (already defined, empty boxes, on the origin's column or row), with a message where
/// the user can do something about it. A box that holds anything but a number then shows the number
/// that was read, and Note says so. A value that never gives numbers (not positive on a log axis,
/// the origin's once more) is accepted, and told. Index outside 0..2 and 16-bit overflow are
/// run-time errors.
bool DefineAxis(AxisCalibration& calibration, AxisPanel& panel, CommandStates& commands,
                const Desktop& desktop, int Index, std::int16_t pixelX, std::int16_t pixelY);

/// Opens row Index and the rows after it for definition again.
void ReDefineAxis(AxisCalibration& calibration, AxisPanel& panel, CommandStates& commands,
                  int Index);

/// What is wrong with the value of an axis point on a log axis, in plain words; nullptr when
/// nothing is. The origin's value: calibration/transform.h.
const char* LogPointFault(const AxisCalibration& calibration);

/// Asks for the focus on the value box of the row that waits for its click.
void FocusArmedRow(const AxisCalibration& calibration, AxisPanel& panel);

}  // namespace graphize
