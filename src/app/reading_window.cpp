// What reads the picture in its colours, in the main window: buttons, frame and keys.

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "app/icons.h"
#include "app/main_window.h"
#include "raster/plot_view.h"
#include "widgets/show.h"
#include "workspace/preview_commands.h"
#include "workspace/reading_panel.h"

namespace graphize {

namespace {

constexpr int kSlideRest = 80;          // ms for which the tolerance has not moved
constexpr int kReadAtOnce = 1'000'000;  // pixels of a picture that is read in no time

}  // namespace

QWidget* MainWindow::MakeModeButtons() {
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 4, 0, 0);
  constexpr struct {
    const char *Name, *Action, *Icon;
  } kButtons[] = {{"CMD_ReadCurve", "MNU_MODE_readcurve", "readcurve"}};
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
  // A command that pumps takes the slider's events away. While it is held, what is read in no time
  // is read without, and all else when it is let go.
  connect(readAgain_, &QTimer::timeout, this, [this] {
    const bool sliding = readingPanel_->IsSliding();
    const int pixels = ws_.plot.Width() * ws_.plot.Height();
    if (sliding && pixels > kReadAtOnce) return;
    if (IsBusy()) return readAgain_->start();
    Do([sliding](Workspace& ws, const Desktop& desktop) {
      Desktop still = desktop;
      if (sliding) still.Pump = still.ShowNow = [] {};
      ReadAgain(ws, still);
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
  connect(readingPanel_, &ReadingPanel::AcceptPressed, this, [this] { Do(TakeReading); });
  connect(readingPanel_, &ReadingPanel::CancelPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { DropReading(ws); }); });
}

bool MainWindow::TakeReadingKey(const QKeyEvent& key) {
  if (!HasReading(ws_) || (key.modifiers() & ~Qt::KeypadModifier) != 0) return false;
  if (qobject_cast<QPushButton*>(focusWidget()) != nullptr && key.key() != Qt::Key_Escape)
    return false;
  if (key.key() == Qt::Key_Escape) {
    Do([](Workspace& ws, const Desktop&) { DropReading(ws); });
    return true;
  }
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (!key.isAutoRepeat()) Do(TakeReading);
  return true;
}

}  // namespace graphize
