// The window FRM_OtherPictures: what its events call.

#include "app/main_window.h"
#include "batch/other_pictures.h"
#include "workspace/other_pictures_dialog.h"

namespace graphize {

FormDialog* MainWindow::MakeOtherPicturesForm() {
  auto* dialog = new OtherPicturesDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.otherPictures); };
  const auto call = [this](auto command) { return [this, command] { Do(command, false); }; };
  connect(dialog, &OtherPicturesDialog::AddPressed, this, call(AddOtherPictures));
  connect(dialog, &OtherPicturesDialog::RemovePressed, this,
          call([](Workspace& ws, const Desktop&) { RemoveOtherPicture(ws); }));
  connect(dialog, &OtherPicturesDialog::NextPressed, this,
          call([](Workspace& ws, const Desktop&) { SelectNextDoubtful(ws); }));
  connect(dialog, &OtherPicturesDialog::RunPressed, this, call(RunOtherPictures));
  connect(dialog, &OtherPicturesDialog::StopPressed, this, [this] {
    if (desktop_->IsPumping()) desktop_->AskToStop();
  });
  connect(dialog, &OtherPicturesDialog::OpenPressed, this, [this] { Do(OpenSelectedPicture); });
  connect(dialog, &OtherPicturesDialog::Selected, this, [this](int picture) {
    Do([=](Workspace& ws, const Desktop&) { ws.otherPictures.Selected = picture; }, false);
  });
  return dialog;
}

}  // namespace graphize
