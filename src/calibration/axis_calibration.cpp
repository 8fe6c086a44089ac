#include "calibration/axis_calibration.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr const char* kOriginTip =
    Marked("Enter the origin X,Y values in the text box and click on the plot origin");
constexpr const char* kXAxisTip =
    Marked("Enter an X axis value and click on the apropriate location on the plot");
constexpr const char* kYAxisTip =
    Marked("Enter a Y axis value and click on the apropriate location on the plot");
constexpr const char* kYAxisAgainTip =
    Marked("Enter an Y axis value and click on the apropriate location on the plot");

constexpr const char* kXPointFault =
    Marked("X axis value must be positive for Log Axis, Please ReDefine X axis");
constexpr const char* kYPointFault =
    Marked("Y axis value must be positive for Log Axis, Please ReDefine Y axis");

void CheckRow(int Index) {
  if (Index < 0 || Index > 2) throw RunTimeError("Subscript out of range");
}

void EnableValues(AxisPanel& panel, int row, bool x, bool y) {
  panel.Rows[row].XEnabled = x;
  panel.Rows[row].YEnabled = y;
}

/// The transform of the three rows holds again; what the rows from `row` on snapped to is left.
void DropRefined(AxisCalibration& calibration, std::size_t row) {
  AxisRefinement& refined = calibration.Refined;
  refined.On = false;
  refined.Scale = {};
  for (; row < refined.Rows.size(); ++row) refined.Rows[row].reset();
}

bool Refuse(AxisCalibration& calibration, int row, const Desktop& desktop, const char* text) {
  Tell(desktop, text);
  calibration.Defined[row] = false;
  calibration.Armed[row] = false;
  return false;
}

/// The number in a value box, which shows it where it holds anything else; `note` says so.
float ReadValue(std::string& box, const char* axis, std::string& note) {
  const TypedNumber typed = ReadTyped(box);
  const float value = ToSingle(typed.Value);
  if (typed.IsPlain) return value;
  box = ShortestText(value);
  note += Tr("%1 was read as %2.", axis, box) + " ";
  return value;
}

void AcceptOrigin(const AxisCalibration& calibration, AxisPanel& panel) {
  EnableValues(panel, 1, true, false);
  EnableValues(panel, 0, false, false);
  panel.Tips = kXAxisTip;
  panel.Rows[1].YText = ShortestText(calibration.ValueY[0]);
  panel.Focus = FocusTarget::X1;
  panel.Rows[0].ReDefineEnabled = true;
}

bool AcceptXAxis(AxisCalibration& calibration, AxisPanel& panel, const Desktop& desktop, int dx,
                 int dy) {
  if (dx == 0)
    return Refuse(calibration, 1, desktop,
                  Marked("Origin and axis point can't be same, Please ReDefine X axis"));
  calibration.Angle = std::atan(static_cast<float>(dy) / static_cast<float>(dx));
  // 3.14, not pi: the shown rotation is meant to be this much larger.
  panel.Angle =
      FormatNumber(static_cast<float>(static_cast<double>(calibration.Angle) / 3.14 * 180), "#0.0");
  calibration.SinAngle = std::sin(calibration.Angle);
  calibration.CosAngle = std::cos(calibration.Angle);
  calibration.XAxisLength = static_cast<float>(dx) / calibration.CosAngle;
  EnableValues(panel, 2, false, true);
  panel.Rows[2].XText = ShortestText(calibration.ValueX[0]);
  EnableValues(panel, 1, false, false);
  panel.Tips = kYAxisTip;
  panel.Focus = FocusTarget::Y2;
  panel.Rows[1].ReDefineEnabled = true;
  return true;
}

bool AcceptYAxis(AxisCalibration& calibration, AxisPanel& panel, CommandStates& commands,
                 const Desktop& desktop, int dy) {
  if (dy == 0)
    return Refuse(calibration, 2, desktop,
                  Marked("Origin and axis point can't be identical, Please ReDefine Y axis"));
  calibration.YAxisLength = static_cast<float>(dy) / calibration.CosAngle;
  panel.Rows[2].YEnabled = false;
  for (AxisPanel::Row& row : panel.Rows) row.ReDefineEnabled = true;
  panel.Tips = Marked("To continue, click the Graphize button");
  commands.Graphize = true;
  commands.GridBuster = true;
  return true;
}

/// Values with which the axis never gives numbers are told where they are defined.
void TellUselessValue(const AxisCalibration& calibration, const Desktop& desktop, int row) {
  const bool isX = row == 1;
  const std::array<float, 3>& values = isX ? calibration.ValueX : calibration.ValueY;
  const bool isLog = isX ? calibration.XLog : calibration.YLog;
  if (isLog && !(values[row] > 0)) return Tell(desktop, isX ? kXPointFault : kYPointFault);
  if (values[row] == values[0])
    Tell(desktop,
         isX ? Tr("X axis value can't be the same as the origin's, Please ReDefine X axis")
             : Tr("Y axis value can't be the same as the origin's, Please ReDefine Y axis"));
}

}  // namespace

const char* LogPointFault(const AxisCalibration& c) {
  if (c.Defined[1] && c.XLog && !(c.ValueX[1] > 0)) return kXPointFault;
  if (c.Defined[2] && c.YLog && !(c.ValueY[2] > 0)) return kYPointFault;
  return nullptr;
}

void SetXLog(AxisCalibration& calibration, bool on) {
  if (std::exchange(calibration.XLog, on) != on) DropRefined(calibration, 3);
}

void SetYLog(AxisCalibration& calibration, bool on) {
  if (std::exchange(calibration.YLog, on) != on) DropRefined(calibration, 3);
}

std::string Instruction(const AxisPanel& panel) {
  return panel.Note + Tr(panel.Tips.c_str());
}

bool HasBegun(const AxisCalibration& calibration, const AxisPanel& panel) {
  return calibration.AnyDefined() ||
         std::any_of(panel.Rows.begin(), panel.Rows.end(), [](const AxisPanel::Row& row) {
           return !row.XText.empty() || !row.YText.empty();
         });
}

void InitAxisDefFrame(AxisCalibration& calibration, AxisPanel& panel) {
  for (int i = 0; i < 3; ++i) {
    panel.Rows[i] = AxisPanel::Row{};
    calibration.Defined[i] = false;
    calibration.Armed[i] = false;
  }
  calibration.Refined = {};
  calibration.Armed[0] = true;
  EnableValues(panel, 0, true, true);
  calibration.ValueFormat = "#.0000E+###";
  calibration.CurrentRow = 0;
  calibration.FocusOriginPending = true;
  panel.Tips = kOriginTip;
  panel.Note.clear();
}

bool DefineAxis(AxisCalibration& calibration, AxisPanel& panel, CommandStates& commands,
                const Desktop& desktop, int Index, std::int16_t pixelX, std::int16_t pixelY) {
  CheckRow(Index);
  if (calibration.Defined[Index]) return false;
  AxisPanel::Row& row = panel.Rows[Index];
  if (row.XText.empty() || row.YText.empty()) {
    Tell(desktop, "Please enter values in the X,Y boxes and then click on the plot");
    return false;
  }
  // All that can overflow comes before anything changes.
  std::string note;
  const float valueX = ReadValue(row.XText, "X", note);
  const float valueY = ReadValue(row.YText, "Y", note);
  const int dx = Index == 0 ? 0 : ToInt16(pixelX - calibration.PixelX[0]);
  const int dy = Index == 0 ? 0 : ToInt16(pixelY - calibration.PixelY[0]);

  DropRefined(calibration, static_cast<std::size_t>(Index));
  row.XPixel = std::to_string(pixelX);
  row.YPixel = std::to_string(pixelY);
  calibration.PixelX[Index] = pixelX;
  calibration.PixelY[Index] = pixelY;
  calibration.ValueX[Index] = valueX;
  calibration.ValueY[Index] = valueY;
  calibration.Defined[Index] = true;
  calibration.Armed[Index] = false;
  if (Index < 2) calibration.Armed[Index + 1] = true;

  static constexpr std::array<const char*, 3> kTips = {kOriginTip, kXAxisTip, kYAxisTip};
  panel.Note = note;
  if (!note.empty()) panel.Tips = kTips[Index];
  if (Index == 1 && !AcceptXAxis(calibration, panel, desktop, dx, dy)) return false;
  if (Index == 2 && !AcceptYAxis(calibration, panel, commands, desktop, dy)) return false;
  if (Index == 0) AcceptOrigin(calibration, panel);
  if (Index > 0) TellUselessValue(calibration, desktop, Index);
  return true;
}

void ReDefineAxis(AxisCalibration& calibration, AxisPanel& panel, CommandStates& commands,
                  int Index) {
  CheckRow(Index);
  DropRefined(calibration, static_cast<std::size_t>(Index));
  panel.Note.clear();
  for (int i = 0; i < 3; ++i) EnableValues(panel, i, i == Index, i == Index);
  calibration.Armed[Index] = true;
  calibration.CurrentRow = static_cast<std::int16_t>(Index);
  if (Index == 0) {
    calibration.FocusOriginPending = true;
    panel.Tips = kOriginTip;
    panel.Focus = FocusTarget::X0;
  } else if (Index == 1) {
    panel.Tips = kXAxisTip;
    panel.Focus = FocusTarget::X1;
  } else {
    panel.Tips = kYAxisAgainTip;
    panel.Focus = FocusTarget::Y2;
  }
  for (int i = Index; i < 3; ++i) calibration.Defined[i] = false;
  for (AxisPanel::Row& row : panel.Rows) row.ReDefineEnabled = false;
  commands.Graphize = false;
}

void FocusArmedRow(const AxisCalibration& calibration, AxisPanel& panel) {
  if (calibration.Armed[0] && calibration.FocusOriginPending)
    panel.Focus = FocusTarget::X0;
  else if (calibration.Armed[1])
    panel.Focus = FocusTarget::X1;
  else if (calibration.Armed[2])
    panel.Focus = FocusTarget::Y2;
}

}  // namespace graphize
