#include "workspace/forms.h"

#include "workspace/options_commands.h"

namespace graphize {

void CloseForm(Workspace& ws, const Desktop&) {
  if (ws.form == Form::Options) CancelOptions(ws);
  ws.form = Form::None;
}

}  // namespace graphize
