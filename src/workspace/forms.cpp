#include "workspace/forms.h"

#include "workspace/options_commands.h"

namespace graphize {

void CloseForm(Workspace& ws, const Desktop&) {
  if (ws.form == Form::Options) CancelOptions(ws);
  ws.scanner.Open.reset();  // open only while its window is
  ws.form = Form::None;
}

}  // namespace graphize
