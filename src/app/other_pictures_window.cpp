// The window FRM_OtherPictures: what its events call.

#include <QTimer>
#include <memory>
#include <utility>

#include "app/main_window.h"
#include "batch/other_pictures.h"
#include "batch/thumbnail_maker.h"
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
  // Of a thousand pictures only those that somebody looks at are read for a thumbnail.
  auto* look = new QTimer(dialog);
  connect(look, &QTimer::timeout, this, [this, dialog, maker = std::make_shared<ThumbnailMaker>()] {
    const auto [first, last] = dialog->ShownRows();
    const auto made = maker->Exchange(PicturesWithoutThumbnail(ws_.otherPictures, first, last));
    if (!made.empty()) Note([&](Workspace& ws) { PutThumbnails(ws.otherPictures, made); });
  });
  constexpr int kBetweenLooks = 50;  // milliseconds
  look->start(kBetweenLooks);
  return dialog;
}

}  // namespace graphize
