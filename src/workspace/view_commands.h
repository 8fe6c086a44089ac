#pragma once

#include "workspace/workspace.h"

namespace graphize {

/// The opening over the picture has a new size, in picture pixels.
void ResizeView(Workspace& ws, int width, int height);

}  // namespace graphize
