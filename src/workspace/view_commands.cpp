#include "workspace/view_commands.h"

namespace graphize {

void ResizeView(Workspace& ws, int width, int height) {
  ws.view.Width = width;
  ws.view.Height = height;
  ResetScrBars(ws.view, ws.plot.Width(), ws.plot.Height());
}

}  // namespace graphize
