#pragma once

#include <string_view>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

// What is kept of the window FRM_OtherPictures: the list in a file beside the calibrated picture,
// and what came of each picture in a project beside that.

/// The list of the present picture's file, empty where there is none. One that cannot be read is
/// told and stays as it is; then nothing is kept. False when Escape stopped it.
bool TakeKeptList(Workspace& ws, const Desktop& desktop);
/// Writes the list where it has changed, or says in KeepFault why it could not; without pictures
/// there is no file.
void KeepList(OtherPicturesForm& form);

/// Reads the picture's project if it is another one than at the last look. One that was saved since
/// counts as mended; one that went leaves its picture waiting.
void LookAtProject(OtherPicture& picture);
/// The same for all, beside the window, with its progress. False when Escape stopped it: then they
/// are as they were.
bool LookAtProjects(Workspace& ws, const Desktop& desktop, std::vector<OtherPicture>& pictures);
/// These bytes are the picture's project, just written.
void NoteProject(OtherPicture& picture, std::string_view bytes);

}  // namespace graphize
