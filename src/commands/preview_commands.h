#pragma once

#include <string>

#include "desktop/desktop.h"
#include "raster/paper.h"
#include "workspace/workspace.h"

namespace graphize {

/// What a preview that is made now is read from.
ReadFrom ReadFromNow(Workspace& ws);
/// A colour for marks that stands out from an ink, from paper, and as far as it can from the
/// picture's other inks.
Colour ColourBeside(Rgb ink, const std::vector<Rgb>& others = {});
/// The colour near a picture position that differs most from what is around: nobody hits a thin
/// line.
Rgb InkNear(const Raster& picture, int x, int y);
/// Into LBL_Reading, and the first line into the panel "status".
void SayReading(Workspace& ws, const std::string& text);
/// Without axes, that the values come with them: a line to follow what was read; else nothing.
std::string NoteOnAxes(const Workspace& ws);

/// A click in the mode "readcurve": reads the curve there and shows it. While one is shown, the
/// curve goes through here, too. What could not be read, and a further click where the curve was
/// not found, leaves what was shown, and says why.
void ClickCurve(Workspace& ws, const Desktop& desktop, int x, int y);
/// Reads again without the last of the further clicks; false where there is none.
bool TakeBackClick(Workspace& ws, const Desktop& desktop);
/// A blocker at (x, y) while curves are read; what is shown is read again.
void BlockReading(Workspace& ws, const Desktop& desktop, float x, float y);

/// The controls of the frames. What is shown is read again by ReadAgain, which the window calls
/// when the slider has come to rest.
void SetTolerance(Workspace& ws, int percent);
void ReadAgain(Workspace& ws, const Desktop& desktop);
void SetDensity(Workspace& ws, ReadingDensity::Kind density);
void TypeDensity(Workspace& ws, const std::string& text);

/// Captures the points that are shown, as one step.
void TakeReading(Workspace& ws, const Desktop& desktop);
bool CanTakeReading(const Workspace& ws);
/// Nothing is shown any longer.
void DropReading(Workspace& ws);
bool HasReading(const Workspace& ws);
/// After each command: another mode, picture, blocker or axis than it was read with drops what is
/// shown, and closes a window that shows it.
void DropStaleReading(Workspace& ws);

}  // namespace graphize
