// Keys that act on the window, whichever of its controls has the focus.

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>
#include <tuple>
#include <utility>

#include "app/main_window.h"
#include "capture/curve_panel.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/reference_commands.h"
#include "raster/plot_view.h"
#include "widgets/keys.h"
#include "workspace/propose_axes_panel.h"

namespace graphize {

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
  if (TakeSpace(watched, event)) return true;
  FollowShift(watched, event);
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

void MainWindow::FollowShift(const QObject* watched, const QEvent* event) {
  const bool held = event->type() == QEvent::KeyPress;
  if (watched != windowHandle() || (!held && event->type() != QEvent::KeyRelease)) return;
  if (static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Shift || ws_.mode != Mode::AxisDef ||
      !desktop_->Callbacks().PointerOverPlot())
    return;
  Do([held](Workspace& ws, const Desktop&) { FollowAxisSnap(ws, held); }, false);
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
  if (TakePointKey(*key) || TakeReadingKey(*key) || TakeProposalKey(*key)) return true;
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
      desktop_->Callbacks().PointerOverPlot() && !proposePanel_->isAncestorOf(focusWidget())) {
    if (key->isAutoRepeat()) return true;  // one press, one point
    plot_->ReadPointer();
    Do(Plot_Click);
    return true;
  }
  return false;
}

}  // namespace graphize
