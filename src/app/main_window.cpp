#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QGridLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleHints>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <tuple>
#include <utility>

#include "app/help_window.h"
#include "app/next_line.h"
#include "app/picture_area.h"
#include "app/status_panels.h"
#include "calibration/axis_panel.h"
#include "capture/curve_panel.h"
#include "capture/read_out_panel.h"
#include "data/data_list_panel.h"
#include "raster/plot_view.h"
#include "raster/zoom_view.h"
#include "session/project_file.h"
#include "tracing/ink_check_panel.h"
#include "tracing/tracer_panel.h"
#include "widgets/keys.h"
#include "widgets/plot_cursor.h"
#include "widgets/show.h"
#include "workspace/capture_commands.h"
#include "workspace/ink_check_commands.h"
#include "workspace/next_step.h"
#include "workspace/overlay.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/point_edit_commands.h"
#include "workspace/run_command.h"
#include "workspace/session.h"

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
  desktop_ = new QtDesktop(this, plot_, [this] { Render(); });
  ConnectPanels();
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
       std::initializer_list<QWidget*>{readOut_, dataList_, axisPanel_, tracerPanel_}) {
    for (QWidget* child : panel->findChildren<QWidget*>()) child->ensurePolished();
    panel->ensurePolished();
    panel->layout()->invalidate();
    width = std::max(width, panel->minimumSizeHint().width());
  }
  sidePanel_->setFixedWidth(width + sidePanel_->verticalScrollBar()->sizeHint().width());
}

void MainWindow::PlaceZoom() {
  // Below the panels that are shown where there is room, so that nothing of the picture is covered;
  // else in one of its lower corners.
  constexpr int kMargin = 8;
  const QSize size = zoom_->sizeHint();
  const QRect picture = pictureArea_->geometry();
  // As high as the picture and its scroll bar; its own geometry may still be that of before.
  const QRect side(sidePanel_->x(), picture.y(), sidePanel_->width(),
                   picture.height() + horizontal_->sizeHint().height());
  const QWidget* panel = ws_.window.AxisPanelShown ? static_cast<const QWidget*>(axisPanel_)
                                                   : static_cast<const QWidget*>(tracerPanel_);
  const int panels =
      readOut_->sizeHint().height() + dataList_->sizeHint().height() + panel->sizeHint().height();
  zoomOverPicture_ = panels + size.height() + 3 * kMargin > side.height();
  const QPoint left(0, size.height() + kMargin), right(size.width(), size.height() + kMargin);
  if (!zoomOverPicture_)
    zoom_->SetHome(side.bottomRight() - QPoint((side.width() - size.width()) / 2, 0) - right);
  else if (zoomToTheLeft_)
    zoom_->SetHome(picture.bottomLeft() + QPoint(kMargin, 0) - left);
  else
    zoom_->SetHome(picture.bottomRight() - QPoint(kMargin, 0) - right);
}

void MainWindow::LetZoomGiveWay() {
  constexpr int kNear = 12;  // pixels
  if (!zoomOverPicture_ || zoom_->IsMoved() || ws_.mode == Mode::None) return;
  if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier)) return;
  if (QGuiApplication::mouseButtons() != Qt::NoButton) return;  // a drag ends where it was aimed
  const QPoint pointer = centralWidget()->mapFromGlobal(QCursor::pos());
  if (!zoom_->geometry().adjusted(-kNear, -kNear, kNear, kNear).contains(pointer)) return;
  zoomToTheLeft_ = !zoomToTheLeft_;
  PlaceZoom();
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (event->spontaneous() || shown_) return;
  shown_ = true;
  FitSidePanel();
  PlaceZoom();
  // What the window can be seen without.
  QTimer::singleShot(50, this, [this] { FinishStart(); });
}

void MainWindow::OpenWhenShown(const std::vector<std::filesystem::path>& files) {
  openWhenShown_.insert(openWhenShown_.end(), files.begin(), files.end());
  QTimer::singleShot(0, this, &MainWindow::OpenWaiting);
}

void MainWindow::OpenWaiting() {
  // A picture waits for the command that runs, unlike an event: it was asked for once.
  if (IsBusy()) return QTimer::singleShot(20, this, &MainWindow::OpenWaiting);
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
  RunCommand(ws_, desktop_->Callbacks(), [&] {
    command(ws_, desktop_->Callbacks());
    OpenAskedProject(ws_, desktop_->Callbacks());
  });
  NoteRecentFiles();
  Commit();
  if (redraw) plot_->update();
  Render();
  desktop_->EndCommand();
  if (QWidget* window = std::exchange(closeAfterCommand_, nullptr))
    QTimer::singleShot(0, window, &QWidget::close);
}

void MainWindow::Do(const Step& step) {
  Do([&](Workspace& ws, const Desktop& desktop) { graphize::Do(ws, desktop, step); });
}

void MainWindow::Commit() {
  DropOldInkCheck(ws_);
  RunCommand(ws_, desktop_->Callbacks(), [&] { journal_.KeepPicture(ws_, desktop_->Callbacks()); });
  history_.Commit(ws_);
  const DocumentDelta delta = history_.TakeDelta();
  if (delta.Any) sessionEnds_ = false;
  journal_.Append(ws_, delta);
  if (std::string note = journal_.TakeNote(); !note.empty()) ws_.status.Status = std::move(note);
}

void MainWindow::Note(const std::function<void(Workspace&)>& change) {
  change(ws_);
  Render();
}

void MainWindow::Render() {
  RenderPicture();
  axisPanel_->Render(ws_.axisPanel, ws_.calibration);
  tracerPanel_->Render(ws_.tracer, ws_.settings, ws_.blockSize);
  readOut_->Render(ws_.readOut);
  curvePanel_->Render();
  const bool checkWasHidden = inkCheck_->isHidden();
  inkCheck_->Render(ws_.inkCheck.Text, CanRemoveDoubtful(ws_), IsDoubtfulShown(ws_));
  dataList_->Render(ws_.store, ws_.formats, ws_.settings.DecimalPoint);
  nextLine_->Render(NextStepOf(ws_), IsNextShown(ws_));
  status_->Render(ws_.status, ws_.store.NPoints, IsNextShown(ws_));
  if (inkCheck_->isHidden() != checkWasHidden) PlaceZoom();
  RenderModeFrame();
  RenderActions();
  RenderFrame();
  RenderForm();
  RenderHelp();
  axisPanel_->Focus(std::exchange(ws_.axisPanel.Focus, FocusTarget::None));
}

void MainWindow::RenderModeFrame() {
  if (axisPanel_->isHidden() != ws_.window.AxisPanelShown) return;
  axisPanel_->setVisible(ws_.window.AxisPanelShown);
  tracerPanel_->setVisible(!ws_.window.AxisPanelShown);
  PlaceZoom();
  QWidget* panel = ws_.window.AxisPanelShown ? static_cast<QWidget*>(axisPanel_) : tracerPanel_;
  // Where it will stand is known once the layout has been done.
  QTimer::singleShot(0, this, [this, panel] {
    zoom_->Uncover(QRect(panel->mapTo(centralWidget(), QPoint()), panel->size()));
  });
  if (!ws_.window.AxisPanelShown) return;
  // On a small screen the boxes to fill in now are brought into sight.
  QTimer::singleShot(0, this, [this] { sidePanel_->ensureWidgetVisible(axisPanel_); });
}

void MainWindow::RenderPicture() {
  const DirtyArea dirty = std::exchange(ws_.plot.Dirty, {});
  plot_->Render(dirty, RubberBand(ws_));
  pictureArea_->ShowHint(!ws_.plot.IsPresent());
  const Viewport& view = ws_.view;
  const auto bar = [](QScrollBar* scroll, int value, int maximum, int page, int step) {
    const QSignalBlocker quiet(scroll);
    scroll->setRange(0, maximum);
    scroll->setSingleStep(std::max(step, 1));
    scroll->setPageStep(std::max(page, 1));
    scroll->setValue(value);
    Enable(scroll, maximum > 0);
  };
  bar(horizontal_, view.X, view.MaximumX, view.Width, ws_.settings.XJump);
  bar(vertical_, view.Y, view.MaximumY, view.Height, ws_.settings.YJump);
  if (plot_->pos() != QPoint(-view.X, -view.Y)) plot_->move(-view.X, -view.Y);
  if (cursorShown_ != ws_.settings.CursorType) {
    cursorShown_ = ws_.settings.CursorType;
    plot_->setCursor(PlotCursor(cursorShown_, devicePixelRatioF()));
  }
  zoom_->Render(ws_.settings.Zoom == 1 && ws_.plot.IsPresent(), ws_.readOut.PlotX,
                ws_.readOut.PlotY, ws_.zoom.Factor, !dirty.IsEmpty());
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
  Do([&](Workspace& ws, const Desktop& desktop) { mayClose = MayClose(ws, desktop); });
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
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!FilesOf(*event->mimeData()).empty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  // After the drop is done with: the questions of opening would hold its source up.
  OpenWhenShown(FilesOf(*event->mimeData()));
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  // A text box keeps undo and redo to itself only while there is something typed in it.
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const auto* box = qobject_cast<QLineEdit*>(watched);
    if (box != nullptr && box->window() == this &&
        ((key->matches(QKeySequence::Undo) && !box->isUndoAvailable()) ||
         (key->matches(QKeySequence::Redo) && !box->isRedoAvailable()))) {
      event->ignore();
      return true;
    }
  }
  // The window looks at a key before the control that has the focus.
  if (event->type() == QEvent::KeyPress && !ws_.commandRuns &&
      QApplication::activeModalWidget() == nullptr &&
      QApplication::activePopupWidget() == nullptr && !curvePanel_->IsNaming()) {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (watched == windowHandle() || (widget != nullptr && widget->window() == this))
      return TakeKey(static_cast<QKeyEvent*>(event));
  }
  return QMainWindow::eventFilter(watched, event);
}

bool MainWindow::KeysAreForPicture() const {
  return plot_->hasFocus() || desktop_->Callbacks().PointerOverPlot();
}

bool MainWindow::TakePointKey(const QKeyEvent& key) {
  constexpr float kTenth = 0.1f;
  static constexpr std::tuple<int, int, int> kMoves[] = {
      {Qt::Key_Left, -1, 0}, {Qt::Key_Right, 1, 0}, {Qt::Key_Up, 0, -1}, {Qt::Key_Down, 0, 1}};
  const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
  const bool editing = ws_.mode == Mode::EditPoints;
  const bool alt = held.testFlag(Qt::AltModifier);
  for (const auto& [code, columns, rows] : kMoves) {
    if (key.key() != code || held.testFlag(Qt::ControlModifier)) continue;
    if (!alt && !(editing && HasSelectedPoints(ws_) && KeysAreForPicture())) return false;
    const float step = held.testFlag(Qt::ShiftModifier) ? kTenth : 1;
    bool moved = false;
    Do([&, dx = static_cast<float>(columns) * step, dy = static_cast<float>(rows) * step](
           Workspace& ws, const Desktop& d) { moved = NudgePoints(ws, d, dx, dy); });
    return moved;
  }
  if (!editing) return false;
  if (key.matches(QKeySequence::SelectAll)) {
    const auto* box = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (box != nullptr && !box->isReadOnly()) return false;
    Do([](Workspace& ws, const Desktop&) { SelectAllPoints(ws); });
    return true;
  }
  if (key.key() != Qt::Key_Escape) return false;
  if (ws_.pointEdit.Pressed) {
    Do([](Workspace& ws, const Desktop&) { EndDrag(ws); });
    plot_->ReadPointer();
  } else {
    Do([](Workspace& ws, const Desktop&) { SelectNoPoints(ws); });
  }
  return true;
}

bool MainWindow::TakeKey(QKeyEvent* key) {
  if (TakePointKey(*key)) return true;
  static constexpr std::pair<int, PointerKey> kKeys[] = {
      {Qt::Key_PageUp, PointerKey::PageUp}, {Qt::Key_PageDown, PointerKey::PageDown},
      {Qt::Key_End, PointerKey::End},       {Qt::Key_Home, PointerKey::Home},
      {Qt::Key_Left, PointerKey::Left},     {Qt::Key_Up, PointerKey::Up},
      {Qt::Key_Right, PointerKey::Right},   {Qt::Key_Down, PointerKey::Down},
  };
  const Qt::KeyboardModifiers held = key->modifiers() & ~Qt::KeypadModifier;
  for (const auto& [code, pointerKey] : kKeys) {
    if (key->key() != code) continue;
    const int shift = ShiftState(held);
    bool moved = false;
    const PointerKey pressed = pointerKey;
    Do([&](Workspace& ws,
           const Desktop& desktop) { moved = MovePointerByKey(ws, desktop, pressed, shift); },
       false);
    return moved;
  }
  if (key->text() == QLatin1String(">") || key->text() == QLatin1String("<")) {
    const int step = key->text() == QLatin1String(">") ? 1 : -1;
    Do([step](Workspace& ws, const Desktop&) { StepZoom(ws, step); }, false);
    return true;
  }
  if (key->key() == Qt::Key_Escape && ws_.scanRectangle.Active) {
    Do([](Workspace& ws, const Desktop&) { EndDrag(ws); });
    return true;
  }
  if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
      desktop_->Callbacks().PointerOverPlot()) {
    if (key->isAutoRepeat()) return true;  // one press, one point
    plot_->ReadPointer();
    Do(Plot_Click);
    return true;
  }
  return false;
}

}  // namespace graphize
