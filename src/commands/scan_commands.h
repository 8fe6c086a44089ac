#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Whether scanners can be looked for: those in the network are found by nothing else.
bool CanSelectSource(const Workspace& ws);
/// Whether there is something to scan with.
bool CanScan(const Workspace& ws);

/// Opens the window FRM_SelectSource, and its events: the scanners are looked for, again or in the
/// network, too; the selected one is chosen and remembered in the settings file.
void SelectSource(Workspace& ws, const Desktop& desktop);
void LookForSources(Workspace& ws, const Desktop& desktop, bool network);
void ChooseSource(Workspace& ws, const Desktop& desktop);

/// Opens the scanner and the window FRM_Scan, after the question whether to start anew. The scanner
/// is open as long as the window.
void Aquire(Workspace& ws, const Desktop& desktop);
/// The settings are changed: the device takes what it can of them. Nothing happens when no scanner
/// is open: what was being typed comes when the window closes, too.
void ChangeScan(Workspace& ws, const Desktop& desktop, const ScanSettings& settings);
/// The same for the resolution as typed; a text that starts with no number changes nothing.
void TypeResolution(Workspace& ws, const Desktop& desktop, const std::string& text);
/// A coarse picture of the whole glass in the window.
void PreviewScan(Workspace& ws, const Desktop& desktop);
/// Scans the page, closes the window and takes the page as the picture. After a failure, which is
/// told, and after Cancel the old picture is there.
void AcquireImage(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
