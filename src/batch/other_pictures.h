#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

// The window FRM_OtherPictures: what was done on the present picture, done on a list of others of
// the same layout.

bool CanShowOtherPictures(const Workspace& ws);
/// Opens it. The present picture is the calibrated one, unless it is one of the list; its list is
/// the one that was left beside it. A list for another picture is begun anew only after a
/// question.
void ShowOtherPictures(Workspace& ws, const Desktop& desktop);

/// Asks for pictures and adds them to the list. A picture whose project is there already is not
/// done.
void AddOtherPictures(Workspace& ws, const Desktop& desktop);
/// The selected one leaves the list; its project stays.
void RemoveOtherPicture(Workspace& ws);
/// The next one that asks for a look is selected, behind the last the first.
void SelectNextDoubtful(Workspace& ws);

bool CanRunOtherPictures(const OtherPicturesForm& form);
/// Does the steps on all pictures that wait, several at a time, and writes a project for each
/// beside it. Escape stops it; what was begun is finished, and the rest goes on waiting.
void RunOtherPictures(Workspace& ws, const Desktop& desktop);

bool IsOtherPictureSelected(const OtherPicturesForm& form);
/// Closes the window and opens the selected picture's project, or the picture where there is none.
void OpenSelectedPicture(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
