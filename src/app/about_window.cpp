// The window frmAbout: what its events call.

#include "app/icons.h"
#include "app/main_window.h"
#include "commands/system_programs.h"
#include "workspace/about_dialog.h"

namespace graphize {

FormDialog* MainWindow::MakeAboutForm() {
  auto* dialog = new AboutDialog(ToolIcon(""), this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.about); };
  connect(dialog, &AboutDialog::SystemInformationPressed, this, [this] {
    Do([](Workspace&, const Desktop& desktop) { SystemInformation(desktop); }, false);
  });
  return dialog;
}

}  // namespace graphize
