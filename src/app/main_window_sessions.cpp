// What the main window does with sessions that have not ended as they should, and with its own.

#include <QApplication>
#include <ctime>
#include <utility>

#include "app/main_window.h"
#include "app/recovery_bar.h"
#include "base/translation.h"
#include "commands/plot_mouse.h"
#include "raster/plot_view.h"
#include "session/project_commands.h"

namespace graphize {

void MainWindow::OfferSession() {
  leftSession_.reset();
  while (!leftSession_ && !leftFolders_.empty()) {
    leftSession_ = FindLeftSession(leftFolders_.front());
    leftFolders_.erase(leftFolders_.begin());
  }
  if (leftSession_)
    recoveryBar_->Offer(leftSession_->Describe(std::time(nullptr)), leftSession_->Fault.empty());
  recoveryBar_->setVisible(leftSession_.has_value());
}

void MainWindow::DeleteSession() {
  if (IsBusy() || !leftSession_) return;
  bool sure = false;
  Do([&](Workspace&, const Desktop& desktop) {
    sure = desktop.ShowMessage({.Text = Tr("Do you want to delete this for good ?") + "\r\n\r\n" +
                                        leftSession_->Describe(std::time(nullptr)),
                                .Icon = MessageIcon::Exclamation,
                                .Buttons = MessageButtons::YesNo,
                                .DefaultIsNo = true}) == Answer::Yes;
  });
  if (!sure) return;
  RemoveSession(leftSession_->Folder);
  OfferSession();
}

void MainWindow::RecoverSession() {
  if (!leftSession_) return;
  bool broughtBack = false, whole = true;
  Do([&](Workspace& ws, const Desktop& desktop) {
    if (!MayLeave(ws, desktop)) return;
    ws.window.Hourglass = true;
    Workspace made;
    Desktop shown = desktop;
    shown.Pump = shown.ShowNow = [&] {
      ws.status.ProgressVisible = made.status.ProgressVisible;
      ws.status.ProgressValue = made.status.ProgressValue;
      desktop.Pump();
    };
    const std::string fault = RestorePicture(*leftSession_, made, shown);
    ws.window.Hourglass = ws.status.ProgressVisible = false;
    const bool hadPicture = leftSession_->Kept.Picture.has_value();
    if (hadPicture && !fault.empty() &&
        !AskYesNo(desktop,
                  Tr("The picture cannot be brought back as it was. %1\r\n\r\nDo you want to "
                     "have the points without the picture ?",
                     fault)))
      return;
    EndDrag(ws);
    BringBackSession(ws, desktop, *leftSession_, fault.empty() ? &made : nullptr);
    if (!ws.picture.KeptCopy.empty())
      whole = journal_.TakePicture(ws, leftSession_->Folder / ws.picture.KeptCopy);
    // A picture that cannot be had today, from a drive that is not there, may be had tomorrow.
    whole = whole && (!hadPicture || fault.empty());
    ws.status.Status = Tr("Brought back: %1", leftSession_->Describe(std::time(nullptr)));
    broughtBack = true;
  });
  if (!broughtBack) return;
  // It goes only when this session has all of it; else it is offered again at the next start.
  if (journal_.Flush() && whole) RemoveSession(leftSession_->Folder);
  OfferSession();
}

void MainWindow::LeaveForLater() {
  leaving_ = true;
  // What runs is stopped, and a question is answered with a no; either is committed on its way out.
  desktop_->AskToStop();
  if (!IsBusy()) PrepareForSessionEnd();
  QApplication::exit();
}

void MainWindow::PrepareForSessionEnd() {
  Do([](Workspace& ws, const Desktop&) { EndDrag(ws); });
  journal_.Flush();
  sessionEnds_ = true;
}

}  // namespace graphize
