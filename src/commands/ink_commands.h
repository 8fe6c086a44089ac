#pragma once

#include <optional>
#include <vector>

#include "desktop/desktop.h"
#include "reading/ink.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// The picture that inks are taken from: the one with colours, where an ink alone is shown.
const Raster& ColouredPicture(const Workspace& ws);
/// Its inks, the most used first, for the swatches of a window. A copy of the picture without marks
/// is not made: call it with the base picture shown.
std::vector<PictureInk> InksIn(const Workspace& ws, const PictureOperation& operation);

bool CanTakeInk(const Workspace& ws);
/// Why no ink can be taken: there are no colours. Looks at the picture.
std::optional<Outcome> InkRefused(Workspace& ws);
/// The picture becomes the ink of a colour alone, as black on white (reading/ink_mask.h), for the
/// tracers and the scan. Taken from the colours that were shown first. Points, blockers,
/// calibration and mode stay; Escape changes nothing.
Outcome Run(Workspace& ws, const Desktop& desktop, const InkStep& step);

/// The picture with its colours again, as it was before; what was drawn on the ink alone goes.
Outcome Run(Workspace& ws, const Desktop& desktop, const ShowColoursStep& step);
bool CanShowColours(const Workspace& ws);

}  // namespace graphize
