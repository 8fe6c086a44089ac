#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QGridLayout>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyleHints>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "app/clipboard.h"
#include "app/floating_views.h"
#include "app/help_window.h"
#include "app/next_line.h"
#include "app/picture_area.h"
#include "app/status_panels.h"
#include "app/zoom_percent.h"
#include "calibration/axis_panel.h"
#include "capture/curve_panel.h"
#include "capture/read_out_panel.h"
#include "commands/ink_check_commands.h"
#include "commands/picture_commands.h"
#include "commands/start_and_close.h"
#include "data/data_list_panel.h"
#include "raster/plot_view.h"
#include "session/commit.h"
#include "session/project_commands.h"
#include "tracing/ink_check_panel.h"
#include "tracing/tracer_panel.h"
#include "widgets/show.h"
#include "workspace/next_step.h"
#include "workspace/propose_axes_panel.h"
#include "workspace/reading_panel.h"

namespace graphize {

namespace {

constexpr int kGrip = 80;  // pixels of the window that stay within reach

QRect ScreenSpace() {
  return QGuiApplication::primaryScreen()->availableVirtualGeometry();
}

}  // namespace

MainWindow::MainWindow(ProgramFiles files)
    : journal_(files.Sessions), sessions_(std::move(files.Sessions)) {
  setObjectName(QStringLiteral("Graphize"));
  setAcceptDrops(true);
  ws_.settingsPath = std::move(files.Settings);
  ws_.picture.Folder = std::move(files.StartFolder);
  ws_.help.File = std::move(files.Help);
  const QSize screen = QGuiApplication::primaryScreen()->size();
  ws_.window.ScreenWidth = screen.width();
  ws_.window.ScreenHeight = screen.height();
  ws_.window.DragDistance = QGuiApplication::styleHints()->startDragDistance();
  BuildMenus();
  BuildToolbar();
  BuildCentre();
  status_ = std::make_unique<StatusPanels>(statusBar());
  statusBar()->addWidget(zoomPercent_);
  desktop_ = new QtDesktop(this, plot_, [this] { Render(); });
  ConnectPanels();
  ConnectView();
  qApp->installEventFilter(this);
}

MainWindow::~MainWindow() = default;

void MainWindow::Start() {
  Do(StartUp);
  history_.Begin(ws_);
}

void MainWindow::FitSidePanel() {
  // Wide enough for every panel, whichever is shown now: known once styles are set.
  tracerPanel_->ReserveCaptions();
  int width = 0;
  for (QWidget* panel :
       std::initializer_list<QWidget*>{readOut_, dataList_, modeButtons_, axisPanel_, proposePanel_,
                                       tracerPanel_, readingPanel_}) {
    for (QWidget* child : panel->findChildren<QWidget*>()) child->ensurePolished();
    panel->ensurePolished();
    panel->layout()->invalidate();
    width = std::max(width, panel->minimumSizeHint().width());
  }
  sidePanel_->setFixedWidth(width + sidePanel_->verticalScrollBar()->sizeHint().width());
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (event->spontaneous() || shown_) return;
  shown_ = true;
  FitSidePanel();
  PlaceFloatingViews();
}

void MainWindow::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (std::exchange(painted_, true)) return;
  // What the window can be seen without: on a busy machine it takes long to be seen.
  QTimer::singleShot(50, this, [this] { FinishStart(); });
}

void MainWindow::OpenWhenShown(const std::vector<std::filesystem::path>& files) {
  openWhenShown_.insert(openWhenShown_.end(), files.begin(), files.end());
  QTimer::singleShot(0, this, &MainWindow::OpenWaiting);
}

void MainWindow::OpenWaiting() {
  // A picture waits for the command that runs, unlike an event: it was asked for once.
  if (IsBusy()) return QTimer::singleShot(20, this, &MainWindow::OpenWaiting);
  ShowIcon();  // what is told of it has it, too
  const auto files = std::exchange(openWhenShown_, {});
  Do([&](Workspace& ws, const Desktop& desktop) { OpenFiles(ws, desktop, files); });
}

bool MainWindow::IsBusy() const {
  return ws_.commandRuns || desktop_->IsPumping();
}

void MainWindow::Do(const Command& command, bool redraw) {
  // An event that comes while a command pumps is not for later.
  if (IsBusy()) return;
  desktop_->BeginCommand();
  const Desktop& desktop = desktop_->Callbacks();
  const auto all = [&] {
    command(ws_, desktop);
    OpenAskedProject(ws_, desktop);
    NoteRecentFiles();
  };
  const CommandEnd end = RunCommand(ws_, desktop, std::ref(all));
  if (CommitCommand(ws_, desktop, history_, journal_, end)) sessionEnds_ = false;
  if (redraw) plot_->update();
  Render();
  desktop_->EndCommand();
  if (QWidget* window = std::exchange(closeAfterCommand_, nullptr))
    QTimer::singleShot(0, window, &QWidget::close);
}

void MainWindow::Do(const Step& step) {
  Do([&](Workspace& ws, const Desktop& desktop) { graphize::Do(ws, desktop, step); });
}

void MainWindow::Note(const std::function<void(Workspace&)>& change) {
  change(ws_);
  Render();
}

void MainWindow::Render() {
  RenderPicture();
  RenderAxes();
  tracerPanel_->Render(ws_.tracer, ws_.settings, ws_.blockSize);
  RenderReading();
  readOut_->Render(ws_.readOut, ws_.calibration.Refined.On);
  curvePanel_->Render();
  const bool checkWasHidden = inkCheck_->isHidden();
  inkCheck_->Render(InkCheckLine(ws_), CanRemoveDoubtful(ws_), IsDoubtfulShown(ws_),
                    IsRemovedLast(ws_));
  dataList_->Render(ws_.store, ws_.formats, ws_.settings.DecimalPoint);
  nextLine_->Render(NextStepOf(ws_), IsNextShown(ws_));
  status_->Render(ws_.status, ws_.store.NPoints, IsNextShown(ws_));
  if (inkCheck_->isHidden() != checkWasHidden) PlaceFloatingViews();
  RenderModeFrame();
  RenderActions();
  RenderFrame();
  RenderForm();
  RenderHelp();
  axisPanel_->Focus(std::exchange(ws_.axisPanel.Focus, FocusTarget::None));
}

void MainWindow::RenderModeFrame() {
  QWidget* panel = ModeFrame();
  if (!panel->isHidden()) return;
  for (QWidget* frame :
       std::initializer_list<QWidget*>{axisPanel_, proposePanel_, tracerPanel_, readingPanel_})
    frame->setVisible(frame == panel);
  // Several frames have buttons of one name: who looks for a name finds those that are shown.
  panel->lower();
  PlaceFloatingViews();
  // Where it will stand is known once the layout has been done.
  QTimer::singleShot(0, this, [this, panel] {
    floating_->Uncover(QRect(panel->mapTo(centralWidget(), QPoint()), panel->size()));
  });
  if (panel == tracerPanel_) return;
  // On a small screen the boxes to fill in now are brought into sight.
  QTimer::singleShot(0, this, [this, panel] { sidePanel_->ensureWidgetVisible(panel); });
}

QWidget* MainWindow::ModeFrame() const {
  if (ws_.proposedAxes.Shown) return proposePanel_;
  if (ws_.window.AxisPanelShown) return axisPanel_;
  if (IsReading(ws_.mode)) return readingPanel_;
  return tracerPanel_;
}

void MainWindow::RenderFrame() {
  QString caption = ToQString(ws_.window.Caption);
  if (ws_.project.IsOf(ws_.recipe))
    caption += QLatin1String(" - ") + ToQString(ws_.project.File.filename().string());
  if (windowTitle() != caption) setWindowTitle(caption);
  if (hourglassShown_ != ws_.window.Hourglass) {
    hourglassShown_ = ws_.window.Hourglass;
    if (hourglassShown_)
      QApplication::setOverrideCursor(Qt::WaitCursor);
    else
      QApplication::restoreOverrideCursor();
  }
  if (std::exchange(ws_.window.PlacementAsked, false)) {
    const WindowPlacement place = ws_.window.Placement;
    placing_ = true;
    setWindowState(Qt::WindowNoState);
    if (place.Width > 0 && place.Height > 0) {
      // The place is the frame's, the size the inside's; some of it must lie on a screen.
      const QRect screen = ScreenSpace();
      resize(place.Width / kTwipsPerPixel, place.Height / kTwipsPerPixel);
      move(std::clamp(place.Left / kTwipsPerPixel, screen.left() - width() + kGrip,
                      screen.right() - kGrip),
           std::clamp(place.Top / kTwipsPerPixel, screen.top(), screen.bottom() - kGrip));
    }
    if (place.State == WindowState::Minimised) setWindowState(Qt::WindowMinimized);
    if (place.State == WindowState::Maximised) setWindowState(Qt::WindowMaximized);
    placing_ = false;
  }
}

void MainWindow::NotePlacement() {
  if (placing_ || !isVisible()) return;
  WindowPlacement& place = ws_.window.Placement;
  place.State = isMinimized()   ? WindowState::Minimised
                : isMaximized() ? WindowState::Maximised
                                : WindowState::Normal;
  place.Left = x() * kTwipsPerPixel;
  place.Top = y() * kTwipsPerPixel;
  place.Width = width() * kTwipsPerPixel;
  place.Height = height() * kTwipsPerPixel;
}

bool MainWindow::MustWaitToClose(QWidget* window) {
  if (!ws_.commandRuns && !desktop_->IsPumping()) return false;
  // The command ends first; then the window is asked once more.
  if (desktop_->IsPumping()) closeAfterCommand_ = window;
  desktop_->AskToStop();
  return true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (sessionEnds_) return event->accept();
  if (MustWaitToClose(this)) return event->ignore();
  bool mayClose = false;
  Do([&](Workspace& ws, const Desktop& desktop) { mayClose = MayLeave(ws, desktop); });
  event->setAccepted(mayClose);
  if (!mayClose) return;
  journal_.Close();
  QApplication::closeAllWindows();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  NotePlacement();
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  NotePlacement();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) NotePlacement();
  if (event->type() == QEvent::ActivationChange) {
    spacePans_ = false;
    plot_->LetPan(false);
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!FilesOf(*event->mimeData()).empty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  // After the drop is done with: the questions of opening would hold its source up.
  OpenWhenShown(FilesOf(*event->mimeData()));
}

}  // namespace graphize
