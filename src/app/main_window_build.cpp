// The main window's making: menus, toolbar, panels and what their events call.

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QMenuBar>
#include <QScrollBar>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/floating_views.h"
#include "app/icons.h"
#include "app/main_window.h"
#include "app/next_line.h"
#include "app/picture_area.h"
#include "app/recovery_bar.h"
#include "app/side_panel.h"
#include "app/status_panels.h"
#include "app/zoom_percent.h"
#include "base/translation.h"
#include "calibration/axis_panel.h"
#include "capture/curve_panel.h"
#include "capture/read_out_panel.h"
#include "codecs/picbuf.h"
#include "commands/capture_commands.h"
#include "commands/data_commands.h"
#include "commands/extraction_commands.h"
#include "commands/ink_check_commands.h"
#include "commands/options_commands.h"
#include "commands/overlay.h"
#include "commands/plot_mouse.h"
#include "commands/toolbar.h"
#include "data/data_list_panel.h"
#include "raster/overview_view.h"
#include "raster/plot_view.h"
#include "raster/zoom_view.h"
#include "settings/recent_files.h"
#include "tracing/ink_check_panel.h"
#include "tracing/tracer_panel.h"
#include "widgets/show.h"
#include "widgets/tool_tip.h"
#include "workspace/propose_axes_panel.h"
#include "workspace/reading_panel.h"

namespace graphize {

QAction* MainWindow::MakeAction(const MenuEntry& entry) {
  auto* action = new QAction(tr(entry.Caption), this);
  action->setObjectName(QLatin1String(entry.Name));
  action->setStatusTip({});
  action->setToolTip(tr(entry.Tip));
  action->setShortcuts(QKeySequence::listFromString(QLatin1String(entry.Key)));
  action->setCheckable(entry.Checked != nullptr);
  if (entry.Run != nullptr)
    connect(action, &QAction::triggered, this, [this, &entry] { Do(entry.Run); });
  menuActions_.emplace_back(action, &entry);
  return action;
}

void MainWindow::BuildMenus() {
  QMenu* menu = nullptr;
  QMenu* subMenu = nullptr;
  for (const MenuEntry& entry : MenuEntries()) {
    if (entry.Is == MenuEntry::Kind::Menu) {
      subMenu = nullptr;
      menu = menuBar()->addMenu(tr(entry.Caption));
      menu->setObjectName(QLatin1String(entry.Name));
      menu->setToolTipsVisible(true);
    }
    if (menu == nullptr) continue;
    QMenu* target = subMenu != nullptr ? subMenu : menu;
    switch (entry.Is) {
      case MenuEntry::Kind::Menu:
        break;
      case MenuEntry::Kind::SubMenu:
        subMenu = menu->addMenu(tr(entry.Caption));
        subMenu->menuAction()->setObjectName(QLatin1String(entry.Name));
        menuActions_.emplace_back(subMenu->menuAction(), &entry);
        break;
      case MenuEntry::Kind::Separator:
        if (subMenu == nullptr) menu->addSeparator();
        subMenu = nullptr;
        if (target != menu) menu->addSeparator();
        break;
      case MenuEntry::Kind::Item:
      case MenuEntry::Kind::Check:
        target->addAction(MakeAction(entry));
        break;
    }
  }
  connect(findChild<QAction*>(QStringLiteral("MNU_FILE_Exit")), &QAction::triggered, this,
          &QWidget::close);
  connect(findChild<QAction*>(QStringLiteral("MNU_EDIT_Undo")), &QAction::triggered, this,
          [this] { Do([this](Workspace& ws, const Desktop&) { history_.Undo(ws); }); });
  connect(findChild<QAction*>(QStringLiteral("MNU_EDIT_Redo")), &QAction::triggered, this,
          [this] { Do([this](Workspace& ws, const Desktop&) { history_.Redo(ws); }); });
  recentMenu_ = findChild<QAction*>(QStringLiteral("MNU_FILE_Recent"))->menu();
  recentMenu_->setToolTipsVisible(true);
  connect(findChild<QMenu*>(QStringLiteral("MNU_File")), &QMenu::aboutToShow, this,
          &MainWindow::ShowRecentFiles);
  connect(findChild<QMenu*>(QStringLiteral("MNU_Edit")), &QMenu::aboutToShow, this,
          [this] { Do(OpenEditMenu, false); });
  connect(findChild<QMenu*>(QStringLiteral("MNU_DATA")), &QMenu::aboutToShow, this,
          [this] { Do([](Workspace& ws, const Desktop&) { OpenDataMenu(ws); }, false); });
}

void MainWindow::ShowRecentFiles() {
  recentMenu_->clear();
  const std::vector<std::filesystem::path> files = ReadRecentFiles(RecentList());
  int number = 0;
  for (const std::filesystem::path& file : files) {
    QString name = ToQString(file.filename().string());
    name.replace(QLatin1Char('&'), QLatin1String("&&"));
    QAction* action = recentMenu_->addAction(QStringLiteral("&%1 %2").arg(number).arg(name));
    action->setObjectName(QStringLiteral("MNU_FILE_Recent_%1").arg(number++));
    action->setToolTip(ToolTipOf(ToQString(file.string())));
    std::error_code ignored;
    action->setEnabled(std::filesystem::exists(file, ignored));
    connect(action, &QAction::triggered, this, [this, file] { OpenWhenShown({file}); });
  }
  if (files.empty()) recentMenu_->addAction(tr("(none yet)"))->setEnabled(false);
}

std::filesystem::path MainWindow::RecentList() const {
  return ws_.settingsPath.parent_path() / "recent";
}

void MainWindow::NoteRecentFiles() {
  if (ws_.opened.empty()) return;
  const auto failure = AddRecentFiles(RecentList(), std::exchange(ws_.opened, {}));
  if (failure && !std::exchange(recentFailureTold_, true))
    ws_.status.Status = Tr("The list of recent files cannot be written: %1", failure.message());
}

void MainWindow::ShowIcon() {
  if (windowIcon().isNull()) setWindowIcon(ProgramIcon());
}

void MainWindow::FinishStart() {
  ShowIcon();
  AskForScanner();
  PrepareToDecode();
  // Ctrl+V works without the menu having been opened: the clipboard tells when it changes.
  const auto look = [this] {
    Note([this](Workspace& ws) { OpenEditMenu(ws, desktop_->Callbacks()); });
  };
  connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, look);
  look();
  leftFolders_ = SessionFolders(sessions_);
  OfferSession();
}

void MainWindow::BuildToolbar() {
  auto* bar = addToolBar(tr("Toolbar"));
  bar->setObjectName(QStringLiteral("Toolbar1"));
  bar->setMovable(false);
  bar->setIconSize(QSize(24, 24));
  setContextMenuPolicy(Qt::NoContextMenu);  // there is nothing to hide
  for (const ToolButton& button : ToolButtons()) {
    if (button.SeparatorBefore) bar->addSeparator();
    QAction* action = bar->addAction(ToolIcon(button.Key), tr(button.Tip));
    action->setObjectName(QLatin1String(button.Key));
    action->setToolTip(tr(button.Tip));
    action->setCheckable(button.IsMode);
    QWidget* shown = bar->widgetForAction(action);
    shown->setObjectName(QLatin1String("Toolbar1_") + QLatin1String(button.Key));
    shown->setFocusPolicy(Qt::TabFocus);
    connect(action, &QAction::triggered, this, [this, &button] {
      Do([&button](Workspace& ws, const Desktop& desktop) {
        Toolbar_ButtonClick(ws, desktop, button.Key);
      });
    });
    toolActions_.push_back(action);
  }
}

void MainWindow::BuildCentre() {
  auto* centre = new QWidget;
  auto* grid = new QGridLayout(centre);
  grid->setContentsMargins(4, 4, 4, 0);
  grid->setSpacing(0);

  readOut_ = new ReadOutPanel;
  sidePanel_ = BuildSidePanel();
  // What is read off stays in sight while the panels below it scroll.
  auto* side = new QVBoxLayout;
  side->setSpacing(4);
  side->addWidget(readOut_);
  side->addWidget(sidePanel_, 1);
  grid->addLayout(side, 0, 0, 4, 1);
  grid->setColumnMinimumWidth(1, 4);

  pictureArea_ = new PictureArea;
  plot_ = new PlotView(
      ws_.plot, ws_.view,
      [this](const PlotOverlay::Rectangle& area) { return Plot_Paint(ws_, area); }, pictureArea_);
  zoom_ = new ZoomView(ws_.plot, ZoomWindow::kMinimum, ZoomWindow::kMaximum, centre);
  overview_ = new OverviewView(ws_.plot, plot_->Levels(), centre);
  floating_ = std::make_unique<FloatingViews>(zoom_, overview_);
  horizontal_ = Named(new QScrollBar(Qt::Horizontal), "HPScroll", tr("Scroll the picture across"));
  horizontal_->setLayoutDirection(
      Qt::LeftToRight);  // as the picture, whatever is written beside it
  vertical_ = Named(new QScrollBar(Qt::Vertical), "VpScroll", tr("Scroll the picture down"));
  recoveryBar_ = new RecoveryBar;
  zoomPercent_ = new ZoomPercent;
  nextLine_ = new NextLine;
  grid->addWidget(recoveryBar_, 0, 2, 1, 2);
  grid->addWidget(nextLine_, 1, 2, 1, 2);
  grid->addWidget(pictureArea_, 2, 2);
  grid->addWidget(vertical_, 2, 3);
  grid->addWidget(horizontal_, 3, 2);
  grid->setColumnStretch(2, 1);
  grid->setRowStretch(2, 1);
  setCentralWidget(centre);
}

QScrollArea* MainWindow::BuildSidePanel() {
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 4);
  curvePanel_ = new CurvePanel(ws_.curves);
  curvePanel_->SetIcons(ToolIcon("newcurve"), ToolIcon("renamecurve"), ToolIcon("deletecurve"));
  inkCheck_ = new InkCheckPanel;
  dataList_ = new DataListPanel(curvePanel_, inkCheck_);
  axisPanel_ = new AxisPanelWidget;
  tracerPanel_ = new TracerPanel(Workspace::kLargestBlock);
  readingPanel_ = new ReadingPanel;
  proposePanel_ = new ProposeAxesPanel;
  axisPanel_->hide();
  proposePanel_->hide();
  readingPanel_->hide();
  modeButtons_ = MakeModeButtons();
  // The frame that changes with the mode is the last: nothing above it jumps.
  for (QWidget* panel : std::initializer_list<QWidget*>{
           dataList_, modeButtons_, axisPanel_, proposePanel_, tracerPanel_, readingPanel_}) {
    panel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    column->addWidget(panel);
  }
  column->addStretch();

  // On a small screen the panel scrolls, and does not push the status bar out of it.
  auto* scroll = new SidePanel;
  scroll->setWidget(side);
  scroll->setWidgetResizable(true);
  scroll->setFrameStyle(QFrame::NoFrame);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  return scroll;
}

void MainWindow::ConnectPanels() {
  connect(plot_, &PlotView::Moved, this, [this](int button, int shift, float x, float y) {
    Do([=](Workspace& ws, const Desktop& d) { Plot_MouseMove(ws, d, button, shift, x, y); }, false);
  });
  connect(plot_, &PlotView::Pressed, this, [this](int button, int shift, float x, float y) {
    Do([=](Workspace& ws, const Desktop& d) { Plot_MouseDown(ws, d, button, shift, x, y); });
  });
  connect(plot_, &PlotView::Released, this, [this](int button, int shift, float x, float y) {
    Do([=](Workspace& ws, const Desktop& d) { Plot_MouseUp(ws, d, button, shift, x, y); });
  });
  connect(plot_, &PlotView::Clicked, this,
          [this](bool second) { Do(second ? Plot_DblClick : Plot_Click); });
  connect(plot_, &PlotView::Entered, this, [this](float x, float y) {
    Do([=](Workspace& ws, const Desktop& d) { Plot_MouseEnter(ws, d, x, y); }, false);
  });
  // Not when a box over the picture takes the pointer away: then a command runs.
  connect(plot_, &PlotView::Left, this,
          [this] { Do([](Workspace& ws, const Desktop&) { Plot_MouseLeave(ws); }, false); });

  connect(recoveryBar_, &RecoveryBar::RecoverPressed, this, &MainWindow::RecoverSession);
  connect(recoveryBar_, &RecoveryBar::DeletePressed, this, &MainWindow::DeleteSession);
  connect(recoveryBar_, &RecoveryBar::LaterPressed, this, &MainWindow::OfferSession);
  connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::PrepareForSessionEnd);

  connect(readOut_, &ReadOutPanel::PixelChosen, this, [this] { Do(ChoosePixelDisplay, false); });
  connect(readOut_, &ReadOutPanel::ErrorChosen, this, [this] { Do(ChooseErrorDisplay, false); });
  connect(readOut_, &ReadOutPanel::PercentSwitched, this, [this](bool on) {
    Do([=](Workspace& ws, const Desktop& d) { SwitchPercent(ws, d, on); }, false);
  });

  const auto change = [this](auto setter) {
    return [this, setter](auto value) {
      Do([&](Workspace& ws, const Desktop&) { setter(ws, value); }, false);
    };
  };
  connect(tracerPanel_, &TracerPanel::XIncrementTyped, this,
          change([](Workspace& ws, const std::string& text) { ws.tracer.Xrange = text; }));
  connect(tracerPanel_, &TracerPanel::YIncrementTyped, this,
          change([](Workspace& ws, const std::string& text) { ws.tracer.Yrange = text; }));
  connect(tracerPanel_, &TracerPanel::XIncrementStepped, this,
          change([](Workspace& ws, int step) { StepIncrement(ws.tracer.Xrange, step); }));
  connect(tracerPanel_, &TracerPanel::YIncrementStepped, this,
          change([](Workspace& ws, int step) { StepIncrement(ws.tracer.Yrange, step); }));
  connect(tracerPanel_, &TracerPanel::CenterSwitched, this,
          change([](Workspace& ws, bool on) { ws.tracer.Center.Checked = on; }));
  connect(tracerPanel_, &TracerPanel::AboveSwitched, this,
          change([](Workspace& ws, bool on) { ws.tracer.Above.Checked = on; }));
  connect(tracerPanel_, &TracerPanel::BelowSwitched, this,
          change([](Workspace& ws, bool on) { ws.tracer.Below.Checked = on; }));
  connect(tracerPanel_, &TracerPanel::InsideAxesSwitched, this,
          change([](Workspace& ws, bool on) { ws.tracer.InsideAxes = on; }));
  connect(tracerPanel_, &TracerPanel::TraceTypeChosen, this, change(ChooseTraceType));
  connect(tracerPanel_, &TracerPanel::SnapChosen, this, change(ChooseSnap));
  connect(tracerPanel_, &TracerPanel::ThresholdChosen, this, change(ChooseThreshold));
  connect(tracerPanel_, &TracerPanel::BlockSizeChosen, this,
          change([](Workspace& ws, int size) { ws.blockSize = size; }));

  ConnectCurves();
  ConnectReading();
  ConnectAxes();
  ConnectInkCheck();
  connect(dataList_, &DataListPanel::LinePressed, this, [this](int line, bool shift) {
    Do([=](Workspace& ws, const Desktop& desktop) {
      PressListLine(ws, line, shift);
      OpenEditMenu(ws, desktop);
    });
  });
  connect(dataList_, &DataListPanel::LineStepped, this, [this](int line, int by, bool extend) {
    Do([=](Workspace& ws, const Desktop& desktop) {
      StepListSelection(ws, line, by, extend);
      OpenEditMenu(ws, desktop);
    });
  });
  connect(dataList_, &DataListPanel::Scrolled, this, [this](int value) {
    Do([=](Workspace& ws, const Desktop&) { ScrollList(ws, value); }, false);
  });
}

void MainWindow::ConnectInkCheck() {
  connect(inkCheck_, &InkCheckPanel::ShowPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { ShowDoubtful(ws); }); });
  connect(inkCheck_, &InkCheckPanel::RemovePressed, this, [this] {
    Do(RemoveDoubtful);
    plot_->setFocus();  // the button has gone
  });
  connect(inkCheck_, &InkCheckPanel::UndoPressed, this, [this] {
    findChild<QAction*>(QStringLiteral("MNU_EDIT_Undo"))->trigger();
    plot_->setFocus();
  });
}

void MainWindow::ConnectCurves() {
  const auto select = [this](int curve) {
    if (IsBusy()) return Render();  // the box shows the active one again
    curvePanel_->FinishNaming();
    Do(SelectCurveStep{ws_.curves.Curves[curve].Name});
  };
  const auto add = [this] {
    if (IsBusy()) return;
    curvePanel_->FinishNaming();
    Do(NewCurveStep{});
    curvePanel_->EditName();
  };
  const auto rename = [this] { curvePanel_->EditName(); };
  connect(curvePanel_, &CurvePanel::Chosen, this, select);
  connect(curvePanel_, &CurvePanel::NewPressed, this, add);
  connect(curvePanel_, &CurvePanel::RenamePressed, this, rename);
  const auto onKey = [this](const char* key, const auto& run) {
    connect(new QShortcut(QKeySequence(QLatin1String(key)), this), &QShortcut::activated, this,
            run);
  };
  onKey("Ctrl+N", add);
  onKey("F2", rename);
  onKey("Ctrl+Tab", [this, select] {
    select((ws_.curves.Active + 1) % static_cast<int>(ws_.curves.Curves.size()));
  });
  connect(curvePanel_, &CurvePanel::NameTyped, this,
          [this](const std::string& name) { Do(RenameCurveStep{name}); });
  connect(curvePanel_, &CurvePanel::NameDropped, this, [this](const std::string& reason) {
    Do([&](Workspace& ws, const Desktop&) { ws.status.Status = reason; }, false);
  });
  connect(curvePanel_, &CurvePanel::DeletePressed, this, [this] { Do(DeleteCurveStep{}); });
  connect(curvePanel_, &CurvePanel::ShownSwitched, this,
          [this](bool on) { Do(ShowCurveStep{on}); });
}

void MainWindow::RenderActions() {
  for (const auto& [action, entry] : menuActions_) {
    const bool can = entry->Can == nullptr || entry->Can(ws_);
    if (action->isEnabled() != can) action->setEnabled(can);
    if (entry->Text != nullptr) {
      const QString text = ToQString(entry->Text(ws_)).trimmed();
      if (action->text() != text) action->setText(text);
    }
    if (entry->Checked != nullptr) action->setChecked(entry->Checked(ws_));
  }
  const auto buttons = ToolButtons();
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    const bool can = CanPress(ws_, buttons[i].Key);
    if (toolActions_[i]->isEnabled() != can) toolActions_[i]->setEnabled(can);
    if (buttons[i].IsMode) toolActions_[i]->setChecked(IsPressed(ws_, buttons[i].Key));
  }
}

}  // namespace graphize
