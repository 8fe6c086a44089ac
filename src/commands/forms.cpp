#include "commands/forms.h"

#include "commands/image_tools_commands.h"
#include "commands/options_commands.h"

namespace graphize {

void CloseForm(Workspace& ws, const Desktop& desktop) {
  if (ws.form == Form::Options) CancelOptions(ws);
  if (ws.form == Form::ImageTools) LeaveImageTools(ws, desktop);
  ws.exportForm.Curves.clear();  // made anew when its window opens
  ws.scanner.Open.reset();       // open only while its window is
  ws.ink = {};
  ws.readAll = {};
  ws.form = Form::None;
}

}  // namespace graphize
