#pragma once

#include <string>

#include "desktop/desktop.h"
#include "raster/picture_operation.h"
#include "workspace/workspace.h"

namespace graphize {

/// Copies a picture into the plot: the common tail of opening, pasting, scanning and image tools.
/// Returns the box in which the base picture that it replaces now lies.
PictureBox LoadImage(Workspace& ws, const Desktop& desktop, PictureBox picture,
                     const std::string& sourceName);
PictureBox LoadImage(Workspace& ws, const Desktop& desktop, Raster picture,
                     const std::string& sourceName);

/// Shows how far a work on a picture is, which is the stretch `from` to `to` percent of the whole;
/// Escape stops it.
PictureProgress ShowProgress(Workspace& ws, const Desktop& desktop, int from = 0, int to = 100);

/// What a picture is called: by its file, or what it is ("Pasted Plot") in the user's language.
std::string PictureLabel(const std::string& sourceName, bool withoutFile);

/// Title, source name and size in the caption, and the size panels.
void ShowPictureCaption(Workspace& ws);
void ShowPictureSize(Workspace& ws);

/// After a reset the picture that stays can still be worked on.
void KeepPictureUsable(Workspace& ws);

}  // namespace graphize
