#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/export_curve.h"
#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// All curves as they are exported, the active one first.
std::vector<ExportCurve> ExportCurves(const Workspace& ws);

/// Opens the window FRM_Export. Exporting changes no points and is no step.
bool CanExport(const Workspace& ws);
void ShowExport(Workspace& ws, const Desktop& desktop);

/// What is to be written; nothing after a message.
std::optional<std::string> ExportText(const Workspace& ws, const Desktop& desktop);
/// Its button: asks for a file and writes it. The window closes when that is done; it stays after
/// Cancel, and after a message on an X grid that is none or a file that cannot be written.
void ExportPoints(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
