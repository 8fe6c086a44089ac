#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Asks for a picture of the seven types and opens it.
void OpenImage(Workspace& ws, const Desktop& desktop);
/// The same with a list of every type that can be read.
void OpenOtherPicture(Workspace& ws, const Desktop& desktop);
/// Opens `path` through the same steps without asking for a file.
void OpenPicture(Workspace& ws, const Desktop& desktop, const std::filesystem::path& path);
/// A file that cannot be read gives one message; picture, points and calibration stay.
Outcome Run(Workspace& ws, const Desktop& desktop, OpenStep& step);

/// Opens the first of the files that were dropped, pasted or named; the rest, folders and addresses
/// elsewhere ("https://...") are told by name.
void OpenFiles(Workspace& ws, const Desktop& desktop,
               const std::vector<std::filesystem::path>& files);

/// Reads the current file again: points, blockers, calibration and mode stay.
Outcome Run(Workspace& ws, const Desktop& desktop, ReloadStep& step);
bool CanReload(const Workspace& ws);

/// Takes a picture that has come from no file.
void TakeInHand(Workspace& ws, const Desktop& desktop, Raster picture, const char* sourceName);
void PasteImage(Workspace& ws, const Desktop& desktop);

/// Writes the base picture in one of the seven formats.
void SaveImageAs(Workspace& ws, const Desktop& desktop);
bool CanSaveImage(const Workspace& ws);

/// What happens before the user has chosen a new picture: the question whether to start anew where
/// an axis has been defined, and the mode buttons come up.
void OfferReset(Workspace& ws, const Desktop& desktop);

/// Curves, points, blockers, calibration and mode as at the start.
Outcome Run(Workspace& ws, const Desktop& desktop, const ResetStep& step);

}  // namespace graphize
