#pragma once

#include <optional>
#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "data/export_curve.h"
#include "data/point_table.h"
#include "desktop/desktop.h"

namespace graphize {

enum class ExportFormat { Csv, Json };
inline constexpr int kExportFormats = 2;

/// The window Export. What is chosen in it stays for the next time it opens.
struct ExportForm {
  ExportFormat Format = ExportFormat::Csv;
  bool AllCurves = false;  // else the first one
  bool CommonX = false;
  std::string XGrid;  // as typed (ReadXGrid); nothing: all X of the curves
  bool Errors = false;
  bool PixelErrors = false;  // those of one pixel even where the standard uncertainty is known

  std::vector<ExportCurve> Curves;  // the active one first
  std::string Hint;                 // what will be written, or what is wrong; one or two lines

  bool CanAllCurves() const { return Curves.size() > 1; }
  bool CanErrors() const;
  bool CanPixelErrors() const;  // there is the choice
};

/// The window as it opens. False without a point in any of the curves, which is told.
bool OpenExport(ExportForm& form, std::vector<ExportCurve> curves, const Desktop& desktop);

/// Something was chosen or typed: the hint follows.
void ShowHint(ExportForm& form);

/// What is to be written; nothing, after a message, when the X grid is none.
std::optional<PointTable> TableOfForm(const ExportForm& form, const AxisCalibration& calibration,
                                      const Desktop& desktop);

}  // namespace graphize
