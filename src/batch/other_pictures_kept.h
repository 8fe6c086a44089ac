#pragma once

#include <string_view>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

// What is kept of the window FRM_OtherPictures: the list in a file beside the calibrated picture,
// and what came of each picture in a project beside that.

/// The list of the present picture's file, empty where there is none. One that cannot be read is
/// told and stays as it is; then nothing is kept.
void TakeKeptList(Workspace& ws, const Desktop& desktop);
/// Writes the list where it has changed, or says in KeepFault why it could not; without pictures
/// there is no file.
void KeepList(OtherPicturesForm& form);

/// Reads the picture's project if it is another one than at the last look. One that was saved since
/// counts as mended; one that went leaves its picture waiting.
void LookAtProject(OtherPicture& picture);
/// These bytes are the picture's project, just written.
void NoteProject(OtherPicture& picture, std::string_view bytes);

}  // namespace graphize
