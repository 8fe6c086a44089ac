// The window FRM_ImageTools: what its events call.

#include "app/main_window.h"
#include "commands/image_tools_commands.h"
#include "image_tools/image_tools_dialog.h"

namespace graphize {

FormDialog* MainWindow::MakeImageToolsForm() {
  auto* dialog = new ImageToolsDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.imageTools); };
  connect(dialog, &ImageToolsDialog::ToolChosen, this, [this](int tool) {
    Do([=](Workspace& ws,
           const Desktop&) { ChooseTool(ws.imageTools, static_cast<PictureTool>(tool)); },
       false);
  });
  connect(dialog, &ImageToolsDialog::AmountMoved, this, [this](int amount) {
    Do([=](Workspace& ws, const Desktop&) { SetAmount(ws.imageTools, amount); }, false);
  });
  connect(dialog, &ImageToolsDialog::ProcessPressed, this,
          [this] { Do(StepOfForm(ws_.imageTools)); });
  connect(dialog, &ImageToolsDialog::UndoPressed, this, [this] { Do(UndoImageToolStep{}); });
  return dialog;
}

}  // namespace graphize
