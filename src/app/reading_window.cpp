// What reads the picture in its colours, in the main window: buttons, frame and keys.

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "app/icons.h"
#include "app/main_window.h"
#include "commands/forms.h"
#include "commands/ink_preview.h"
#include "commands/preview_commands.h"
#include "commands/read_all_preview.h"
#include "commands/symbol_preview.h"
#include "raster/plot_view.h"
#include "widgets/show.h"
#include "workspace/ink_dialog.h"
#include "workspace/read_all_dialog.h"
#include "workspace/reading_panel.h"

namespace graphize {

namespace {

constexpr int kSlideRest = 80;          // ms for which the tolerance has not moved
constexpr int kReadAtOnce = 1'000'000;  // pixels of a picture that is read in no time

/// A command that pumps takes the events of a slider away: while it is held, none does.
Desktop Still(const Desktop& desktop, bool sliding) {
  Desktop still = desktop;
  if (sliding) still.Pump = still.ShowNow = [] {};
  return still;
}

}  // namespace

QWidget* MainWindow::MakeModeButtons() {
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 4, 0, 0);
  constexpr struct {
    const char *Name, *Action, *Icon;
  } kButtons[] = {{"CMD_ReadCurve", "MNU_MODE_readcurve", "readcurve"},
                  {"CMD_FindSymbols", "MNU_MODE_findsymbols", "findsymbols"}};
  for (const auto& [name, actionName, icon] : kButtons) {
    auto* action = findChild<QAction*>(QLatin1String(actionName));
    action->setIcon(ToolIcon(icon));
    auto* button = Named(new QToolButton, name, action->text().remove(u'&'));
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    row->addWidget(button);
  }
  return buttons;
}

void MainWindow::ConnectReading() {
  readAgain_ = new QTimer(this);
  readAgain_->setSingleShot(true);
  readAgain_->setInterval(kSlideRest);
  // While the slider is held, what is read in no time is read, and all else when it is let go.
  connect(readAgain_, &QTimer::timeout, this, [this] {
    const bool sliding = readingPanel_->IsSliding();
    const int pixels = ws_.plot.Width() * ws_.plot.Height();
    if (sliding && (pixels > kReadAtOnce || ws_.mode == Mode::FindSymbols)) return;
    if (IsBusy()) return readAgain_->start();
    Do([sliding](Workspace& ws, const Desktop& desktop) {
      ReadAgain(ws, Still(desktop, sliding));
    });
  });
  connect(readingPanel_, &ReadingPanel::ToleranceChosen, this, [this](int percent) {
    Do([=](Workspace& ws, const Desktop&) { SetTolerance(ws, percent); }, false);
    readAgain_->start();
  });
  connect(readingPanel_, &ReadingPanel::DensityChosen, this, [this](int kind) {
    Do([=](Workspace& ws, const Desktop&) {
      SetDensity(ws, static_cast<ReadingDensity::Kind>(kind));
    });
  });
  connect(readingPanel_, &ReadingPanel::DensityTyped, this, [this](const std::string& text) {
    Do([&](Workspace& ws, const Desktop&) { TypeDensity(ws, text); });
  });
  connect(readingPanel_, &ReadingPanel::CentreChosen, this, [this](int centre) {
    Do([=](Workspace& ws, const Desktop& desktop) {
      ChooseCentre(ws, desktop, static_cast<SymbolCentre>(centre));
    });
  });
  connect(readingPanel_, &ReadingPanel::DoubtfulStepped, this,
          [this](int step) { Do([=](Workspace& ws, const Desktop&) { StepDoubtful(ws, step); }); });
  connect(readingPanel_, &ReadingPanel::LeaveOutPressed, this, [this](bool leaveOut) {
    Do([=](Workspace& ws, const Desktop&) { LeaveOutCurrent(ws, leaveOut); });
  });
  connect(readingPanel_, &ReadingPanel::AcceptPressed, this, [this] { Do(TakeReading); });
  connect(readingPanel_, &ReadingPanel::CancelPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { DropReading(ws); }); });
}

void MainWindow::RenderReading() {
  readingPanel_->Render(ws_.reading, {.FindsSymbols = ws_.mode == Mode::FindSymbols,
                                      .CanTake = CanTakeReading(ws_),
                                      .CanCancel = HasReading(ws_),
                                      .HasDoubtful = HasDoubtful(ws_),
                                      .HasCurrent = CurrentSymbol(ws_) != nullptr,
                                      .IsLeftOut = IsCurrentLeftOut(ws_)});
}

FormDialog* MainWindow::MakeInkForm() {
  auto* dialog = new InkDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.ink); };
  auto* rest = new QTimer(dialog);
  rest->setSingleShot(true);
  rest->setInterval(kSlideRest);
  connect(rest, &QTimer::timeout, this, [this, dialog, rest] {
    const bool sliding = dialog->IsSliding();
    if (sliding && ws_.plot.Width() * ws_.plot.Height() > kReadAtOnce) return;
    if (IsBusy()) return rest->start();
    Do([sliding](Workspace& ws, const Desktop& desktop) { ShowMask(ws, Still(desktop, sliding)); });
  });
  connect(dialog, &InkDialog::SwatchChosen, this, [this](int index) {
    Do([=](Workspace& ws, const Desktop& desktop) { ChooseSwatch(ws, desktop, index); });
  });
  connect(dialog, &InkDialog::ToleranceChosen, this, [this, rest](int percent) {
    Do([=](Workspace& ws, const Desktop&) { SetInkTolerance(ws, percent); }, false);
    rest->start();
  });
  connect(dialog, &InkDialog::AcceptPressed, this, [this] { Do(TakeInk); });
  connect(dialog, &InkDialog::ShowColoursPressed, this, [this] { Do(ShowColoursAgain); });
  return dialog;
}

FormDialog* MainWindow::MakeReadAllForm() {
  auto* dialog = new ReadAllDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.readAll, CanTakeAll(ws_.readAll)); };
  connect(dialog, &ReadAllDialog::Ticked, this, [this](int row, bool taken) {
    Do([=](Workspace& ws, const Desktop&) { TickCurve(ws.readAll, row, taken); });
  });
  connect(dialog, &ReadAllDialog::NameTyped, this, [this](int row, const std::string& name) {
    Do([&](Workspace& ws, const Desktop&) { NameCurve(ws.readAll, row, name); }, false);
  });
  connect(dialog, &ReadAllDialog::RowChosen, this, [this](int row) {
    Do([=](Workspace& ws, const Desktop&) { ws.readAll.Current = row; });
  });
  connect(dialog, &ReadAllDialog::AcceptPressed, this, [this] { Do(TakeAll); });
  return dialog;
}

bool MainWindow::TakeSymbolKey(const QKeyEvent& key) {
  const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
  if (key.key() == Qt::Key_N && HasDoubtful(ws_)) {
    Do([shift](Workspace& ws, const Desktop&) { StepDoubtful(ws, shift ? -1 : 1); });
    return true;
  }
  const bool leaves = key.key() == Qt::Key_Delete;
  if ((!leaves && key.key() != Qt::Key_Insert) || shift || CurrentSymbol(ws_) == nullptr)
    return false;
  Do([leaves](Workspace& ws, const Desktop&) { LeaveOutCurrent(ws, leaves); });
  return true;
}

bool MainWindow::TakeReadingKey(const QKeyEvent& key) {
  if (ws_.form == Form::Ink && key.key() == Qt::Key_Escape) {
    Do(CloseForm);
    return true;
  }
  constexpr Qt::KeyboardModifiers kWith = Qt::KeypadModifier | Qt::ShiftModifier;
  if (!HasReading(ws_) || (key.modifiers() & ~kWith) != 0) return false;
  if (TakeSymbolKey(key)) return true;
  if (key.modifiers().testFlag(Qt::ShiftModifier)) return false;
  if (qobject_cast<QPushButton*>(focusWidget()) != nullptr && key.key() != Qt::Key_Escape)
    return false;
  if (key.key() == Qt::Key_Escape) {
    Do([](Workspace& ws, const Desktop&) { DropReading(ws); });
    return true;
  }
  if (key.key() == Qt::Key_Backspace && qobject_cast<QLineEdit*>(focusWidget()) == nullptr) {
    bool taken = false;
    Do([&](Workspace& ws, const Desktop& desktop) { taken = TakeBackClick(ws, desktop); });
    return taken;
  }
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (!key.isAutoRepeat()) Do(TakeReading);
  return true;
}

}  // namespace graphize
