#pragma once

#include <filesystem>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Asks for a file and writes the project; all points then count as saved. A file that cannot be
/// written is told, and the one that is there stays whole.
void SaveProject(Workspace& ws, const Desktop& desktop);
bool CanSaveProject(const Workspace& ws);

/// Whether the document may go: asks about points that are not saved and, where a project was
/// opened or saved, about all else that is not as it is in that.
bool MayLeave(Workspace& ws, const Desktop& desktop);

/// Asks for a project, and opens it.
void OpenProject(Workspace& ws, const Desktop& desktop);
/// The project in this file takes the place of the document; asks first about points that are not
/// saved. A file that cannot be used is told with the reason, and nothing changes; of one whose
/// picture alone is damaged, the points are offered on an empty page. One Undo leads back to what
/// was there before.
void OpenProject(Workspace& ws, const Desktop& desktop, const std::filesystem::path& path);
/// The one that was asked for in the place of a picture, if any (Workspace::projectAsked).
void OpenAskedProject(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
