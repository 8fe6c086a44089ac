// The window FRM_BlackWhite: what its events call.

#include "app/main_window.h"
#include "commands/black_white_commands.h"
#include "raster/black_white_dialog.h"

namespace graphize {

FormDialog* MainWindow::MakeBlackWhiteForm() {
  auto* dialog = new BlackWhiteDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.blackWhite); };
  connect(dialog, &BlackWhiteDialog::LocalChosen, this, [this](bool local) {
    Do([=](Workspace& ws, const Desktop&) { ChooseLocalThreshold(ws, local); }, false);
  });
  connect(dialog, &BlackWhiteDialog::ThresholdMoved, this, [this](int level) {
    Do([=](Workspace& ws, const Desktop&) { MoveThreshold(ws, level); }, false);
  });
  connect(dialog, &BlackWhiteDialog::PreviewDragged, this, [this](int columns, int rows) {
    Do([=](Workspace& ws, const Desktop&) { MovePreview(ws, columns, rows); }, false);
  });
  connect(dialog, &BlackWhiteDialog::ReducePressed, this, [this] { Do(ReduceAsPreviewed); });
  return dialog;
}

}  // namespace graphize
