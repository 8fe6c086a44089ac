#pragma once

#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Settings that the tracer's panel has, too. Increments that somebody has set stay with the trace
/// type that they were set for.
void ChooseTraceType(Workspace& ws, int type);
void ChooseSnap(Workspace& ws, int mode);
void ChooseThreshold(Workspace& ws, int level);

/// Opens the window frmOptions, filled from the settings.
void ShowOptions(Workspace& ws);

/// Its buttons. OK and Apply take every tab over; Cancel puts format, cursor and colours back.
void AcceptOptions(Workspace& ws);
void ApplyOptions(Workspace& ws);
void CancelOptions(Workspace& ws);
/// Takes every tab over, writes the settings file and reads it again; when it cannot be written,
/// which is told, the settings stay as they are.
void SaveOptions(Workspace& ws, const Desktop& desktop);
void LoadOptions(Workspace& ws, const Desktop& desktop);
void DefaultOptions(Workspace& ws);

/// The number format was changed: the list and the example line follow.
void FormatChanged(Workspace& ws);
/// A colour was changed: the blockers on the picture follow.
void ColoursChanged(Workspace& ws);

/// The window speaks the language of this code from its next start on; written at once.
void ChooseLanguage(Workspace& ws, const Desktop& desktop, const std::string& code);

}  // namespace graphize
