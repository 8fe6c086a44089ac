// How the main window shows the picture: zoom, scrolling and panning, the zoom window's place.

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "app/floating_views.h"
#include "app/main_window.h"
#include "app/picture_area.h"
#include "app/zoom_percent.h"
#include "capture/curve_panel.h"
#include "commands/overlay.h"
#include "commands/plot_mouse.h"
#include "commands/view_commands.h"
#include "raster/overview_view.h"
#include "raster/plot_view.h"
#include "raster/zoom_view.h"
#include "widgets/plot_cursor.h"
#include "widgets/pointer.h"
#include "widgets/show.h"

namespace graphize {

void MainWindow::ConnectView() {
  const auto scroll = [this](int x, int y) {
    Do([=](Workspace& ws, const Desktop&) { ScrollTo(ws.view, x, y); }, false);
  };
  connect(horizontal_, &QScrollBar::valueChanged, this,
          [this, scroll](int value) { scroll(value, ws_.view.Y); });
  connect(vertical_, &QScrollBar::valueChanged, this,
          [this, scroll](int value) { scroll(ws_.view.X, value); });
  connect(pictureArea_, &PictureArea::Wheeled, this, [this, scroll](int dx, int dy) {
    scroll(ws_.view.X + dx, ws_.view.Y + dy);
    plot_->ReadPointer();
  });
  connect(plot_, &PlotView::Panned, this,
          [this, scroll](int dx, int dy) { scroll(ws_.view.X - dx, ws_.view.Y - dy); });
  connect(pictureArea_, &PictureArea::Resized, this, [this](int width, int height) {
    Note([=](Workspace& ws) { ResizeView(ws, width, height); });
    PlaceFloatingViews();
  });

  connect(overview_, &OverviewView::Asked, this, [this](double x, double y) {
    Do([=](Workspace& ws, const Desktop&) { ShowPlace(ws, x, y); }, false);
  });
  const auto makeWay = [this] {
    MakeWay(centralWidget()->mapFromGlobal(QCursor::pos()));
    plot_->ReadPointer();
  };
  connect(zoom_, &ZoomView::Entered, this, makeWay);
  connect(overview_, &OverviewView::Entered, this, makeWay);
  connect(plot_, &PlotView::Moved, this, [this](int, int, float x, float y) {
    const QPoint at(PlaceOfMark(ws_.view.Zoom, x), PlaceOfMark(ws_.view.Zoom, y));
    MakeWay(plot_->mapTo(centralWidget(), at));
  });
  connect(zoom_, &ZoomView::Resized, this, &MainWindow::PlaceFloatingViews);
  connect(zoom_, &ZoomView::FactorChosen, this, [this](int factor) {
    Do([=](Workspace& ws, const Desktop&) { ws.zoom.Factor = factor; }, false);
  });
  // A box to be filled in is not to be looked for below the zoom window.
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) {
    if (now != nullptr && sidePanel_->isAncestorOf(now))
      floating_->Uncover(QRect(now->mapTo(centralWidget(), QPoint()), now->size()));
  });

  const auto zoomTo = [this](double zoom, QPointF at) {
    Do([=](Workspace& ws, const Desktop&) { ZoomTo(ws, zoom, at.x(), at.y()); }, false);
    plot_->ReadPointer();
  };
  const auto zoomBy = [this, zoomTo](int steps, QPointF at) {
    zoomTo(NextZoom(ws_.view.Zoom, steps), at);
  };
  const auto onMenu = [this](const char* name, const auto& run) {
    connect(findChild<QAction*>(QLatin1String(name)), &QAction::triggered, this, run);
  };
  onMenu("MNU_VIEW_ZoomIn", [this, zoomBy] { zoomBy(1, ZoomMiddle()); });
  onMenu("MNU_VIEW_ZoomOut", [this, zoomBy] { zoomBy(-1, ZoomMiddle()); });
  onMenu("MNU_VIEW_ActualSize", [this, zoomTo] { zoomTo(1, ZoomMiddle()); });
  connect(pictureArea_, &PictureArea::Zoomed, this, zoomBy);
  connect(zoomPercent_, &ZoomPercent::ZoomChosen, this,
          [this, zoomTo](double zoom) { zoomTo(zoom, ZoomMiddle()); });
  const auto fit = [this] {
    Do([](Workspace& ws, const Desktop&) { FitPicture(ws); });
    plot_->ReadPointer();
  };
  onMenu("MNU_VIEW_Fit", fit);
  connect(zoomPercent_, &ZoomPercent::FitChosen, this, fit);
}

QPointF MainWindow::ZoomMiddle() const {
  if (desktop_->Callbacks().PointerOverPlot()) return PointerPlace(pictureArea_);
  return {std::min(pictureArea_->width(), plot_->width()) / 2.0,
          std::min(pictureArea_->height(), plot_->height()) / 2.0};
}

bool MainWindow::TakeSpace(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
      spaceIsForControl_ = true;
    else if (reason == Qt::MouseFocusReason)
      spaceIsForControl_ = false;
  }
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_Space || widget == nullptr || widget->window() != this) return false;
  if (event->type() == QEvent::KeyRelease) {
    if (!key->isAutoRepeat() && std::exchange(spacePans_, false)) {
      plot_->LetPan(false);
      return true;
    }
    return spacePans_;
  }
  if (spacePans_) return true;
  const bool forPicture = plot_->hasFocus() || !spaceIsForControl_;
  if (key->modifiers() != Qt::NoModifier || !forPicture || curvePanel_->IsNaming() ||
      !desktop_->Callbacks().PointerOverPlot())
    return false;
  spacePans_ = true;
  plot_->LetPan(true);
  return true;
}

void MainWindow::PlaceFloatingViews() {
  const QRect picture = pictureArea_->geometry();
  // Down to the end of the picture's scroll bar; its own geometry may still be that of before.
  const int end = picture.y() + picture.height() + horizontal_->sizeHint().height();
  const QRect side(sidePanel_->x(), sidePanel_->y(), sidePanel_->width(), end - sidePanel_->y());
  const QWidget* panels = sidePanel_->widget();
  const int panelsEnd =
      side.y() + panels->sizeHint().height() - panels->layout()->contentsMargins().bottom();
  floating_->Place(side, panelsEnd, picture);
}

void MainWindow::MakeWay(QPoint pointer) {
  if (ws_.mode == Mode::None) return;
  if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier)) return;
  if (QGuiApplication::mouseButtons() != Qt::NoButton) return;  // a drag ends where it was aimed
  floating_->MakeWay(pointer);
}

void MainWindow::RenderPicture() {
  const DirtyArea dirty = std::exchange(ws_.plot.Dirty, {});
  plot_->TellParts(ws_.settings.SubPixelClicks);
  plot_->Render(dirty, std::exchange(ws_.marksDirty, {}), RubberBand(ws_));
  pictureArea_->ShowHint(!ws_.plot.IsPresent());
  const Viewport& view = ws_.view;
  // The values of the axes' grid stand at the edges of what is seen.
  const QRect seen(view.X, view.Y, view.Width, view.Height);
  if (std::exchange(viewShown_, seen) != seen && ws_.commands.AxesGrid) plot_->update();
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
  zoomPercent_->Render(ws_.plot.IsPresent(), view.Zoom, view.Fits);
  if (cursorShown_ != ws_.settings.CursorType) {
    cursorShown_ = ws_.settings.CursorType;
    plot_->UseCursor(PlotCursor(cursorShown_, devicePixelRatioF()));
  }
  ZoomView::Look look{ws_.readOut.PlotX, ws_.readOut.PlotY, {}, {}, ws_.zoom.Factor};
  const bool zoomShown = ws_.settings.Zoom == 1 && ws_.plot.IsPresent();
  if (const auto snap = zoomShown ? SnapAhead(ws_) : std::nullopt)
    look.SnapsTo = QPoint(snap->X, snap->Y);
  if (const auto& snap = ws_.mouse.AxisSnap) look.SnapsWithin = QPointF(snap->Column, snap->Row);
  zoom_->Render(zoomShown, look, !dirty.IsEmpty());
  overview_->Render(view, !dirty.IsEmpty());
  const auto place = [](const QWidget* window) {
    return window->isHidden() ? QSize() : window->size();
  };
  if (std::exchange(overviewPlaced_, place(overview_)) != place(overview_) ||
      std::exchange(zoomPlaced_, place(zoom_)) != place(zoom_))
    PlaceFloatingViews();
}

}  // namespace graphize
