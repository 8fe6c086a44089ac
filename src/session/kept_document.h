#pragma once

#include <array>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// All of a document that is kept on the disk, but for the picture's pixels: what
/// session/document.h lists, and the options that its steps depend on. What follows from the rest
/// (captions, which commands there are) is not in it.
struct KeptDocument {
  PictureSource Picture;
  std::string OriginalFile, PictureFile;  // names in a project; the latter of what is shown
  std::string ColoursFile;                // of Workspace::colours; empty: there are none
  std::string SourceName;
  int Width = 0, Height = 0;  // pixels
  bool HasUndo = false, PersistentDrawing = false;

  AxisCalibration Axes;
  std::array<AxisPanel::Row, 3> AxisRows;
  std::string AxisAngle, AxisTips;
  bool AxisPanelShown = false;
  bool GridBuster = false;  // grid lines can be removed: axes have been complete
  Mode InMode = Mode::None;
  BlockerList Blockers;
  PictureMap Map;

  std::vector<Curve> Curves;  // each with its points, and what of them is saved
  int Active = 0;
  std::string DataFileName, DataFileTitle;

  using OptionValues = std::vector<std::string>;  // in the order of RecipeOptions()
  OptionValues Options;
  Recipe Steps;  // without what counts within a session
};

/// The document as it is. Costs a copy of the active curve's points.
KeptDocument Keep(const Workspace& ws);

/// The kept document takes the place of the one that is there, in a workspace in which its picture
/// has been put (SetPicture). Marks are not drawn; what was being done must have ended. The recipe
/// counts as another one than before.
void BringBack(Workspace& ws, const Desktop& desktop, KeptDocument&& kept);

}  // namespace graphize
