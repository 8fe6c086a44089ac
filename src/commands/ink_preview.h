#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Opens the window FRM_Ink with the inks of the picture. It stands beside the main window: a click
/// on the picture is an eyedropper then. A picture without colours is told instead.
void ShowInk(Workspace& ws, const Desktop& desktop);
/// One of its swatches; the ink at a picture position. What counts as this ink is shown.
void ChooseSwatch(Workspace& ws, const Desktop& desktop, int index);
void PickInk(Workspace& ws, const Desktop& desktop, int x, int y);
/// The tolerance alone: what counts as the ink is shown by ShowMask, which the window calls when
/// the slider has come to rest.
void SetInkTolerance(Workspace& ws, int percent);
void ShowMask(Workspace& ws, const Desktop& desktop);
/// The chosen ink becomes the picture, black on white, and the window closes.
void TakeInk(Workspace& ws, const Desktop& desktop);
/// The picture has its colours again; the window stays.
void ShowColoursAgain(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
