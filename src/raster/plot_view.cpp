#include "raster/plot_view.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "raster/curve_marks.h"
#include "raster/mark_edges.h"
#include "raster/picture_scaling.h"
#include "raster/plot_marks_view.h"
#include "widgets/keys.h"
#include "widgets/paint_preview.h"
#include "widgets/paint_sketch.h"
#include "widgets/plot_cursor.h"
#include "widgets/pointer.h"

namespace graphize {

namespace {

constexpr int kScrollInterval = 40;  // milliseconds

int ButtonsOf(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? 1 : 0) | (buttons.testFlag(Qt::RightButton) ? 2 : 0) |
         (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

/// The places of picture pixels, all of them included.
QRect PlacesOf(const DirtyArea& area, double zoom) {
  return {QPoint(FirstPlaceOf(zoom, area.Left), FirstPlaceOf(zoom, area.Top)),
          QPoint(LastPlaceOf(zoom, area.Right), LastPlaceOf(zoom, area.Bottom))};
}

bool IsWhole(double value) {
  return value == std::floor(value);
}

}  // namespace

QImage AsImage(const Raster& raster) {
  return QImage(reinterpret_cast<const uchar*>(raster.Pixels()), raster.Width(), raster.Height(),
                qsizetype{4} * raster.Width(), QImage::Format_RGB32);
}

PlotView::PlotView(const PlotImage& image, const Viewport& view, OverlayIn overlayIn,
                   QWidget* parent)
    : QWidget(parent), image_(image), view_(view), overlayIn_(std::move(overlayIn)) {
  setObjectName(QStringLiteral("Plot"));
  setAccessibleName(tr("Picture of the graph"));
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);  // keys meant for the picture do not go on to a value box
  setAttribute(Qt::WA_OpaquePaintEvent);
  UseCursor(PlotCursor(0, devicePixelRatioF()));
  resize(0, 0);
}

void PlotView::Render(const DirtyArea& raster, const DirtyArea& overlay,
                      const std::optional<PlotOverlay::Rectangle>& rubberBand) {
  const double zoom = view_.Zoom;
  levels_.Follow(image_.Pixels, raster);
  const QSize size(ZoomedLength(zoom, image_.Width()), ZoomedLength(zoom, image_.Height()));
  if (this->size() != size) {
    resize(size);
    setVisible(!size.isEmpty());
  }
  if (std::exchange(zoomShown_, zoom) != zoom) update();
  if (const QPoint place(-view_.X, -view_.Y); pos() != place) move(place);
  if (!raster.IsEmpty()) {
    const int reach = ReachOfMarkEdges(zoom);
    update(PlacesOf(
        {raster.Left - reach, raster.Top - reach, raster.Right + reach, raster.Bottom + reach},
        zoom));
  }
  constexpr int kReach = kLargestReach + static_cast<int>(kLargestZoom) / 2 + 1;
  if (!overlay.IsEmpty())
    update(PlacesOf(overlay, zoom).adjusted(-kReach, -kReach, kReach, kReach));
  if (rubberBand_ == rubberBand) return;
  // Its old and new outline alone: what lies inside may be a whole page.
  if (rubberBand_) update(OutlineOf(*rubberBand_, zoom));
  if (rubberBand) update(OutlineOf(*rubberBand, zoom));
  rubberBand_ = rubberBand;
}

PlotOverlay::Rectangle PlotView::PixelsAround(const QRect& area) const {
  const double zoom = view_.Zoom;
  // A mark begins beside its pixel.
  const int reach = static_cast<int>(std::ceil(kLargestReach / zoom)) + 1;
  return {PixelAt(zoom, area.left()) - reach, PixelAt(zoom, area.top()) - reach,
          PixelAt(zoom, area.right()) + reach, PixelAt(zoom, area.bottom()) + reach};
}

void PlotView::PaintPicture(QPainter& painter, const QRegion& region, const PlotOverlay& overlay) {
  const QTransform device = painter.deviceTransform();
  const double ratio = device.m11();
  const PictureScaling scaling{ratio * view_.Zoom, device.dx(), device.dy()};
  if (scaling.Scale == 1 && ratio == 1 && IsWhole(scaling.Left) && IsWhole(scaling.Top) &&
      overlay.Curves.empty() && image_.Marks.empty()) {
    const QImage picture = AsImage(image_.Pixels);
    for (const QRect& part : region) painter.drawImage(part, picture, part);
    return;
  }
  painter.save();
  painter.setWorldTransform(device.inverted());  // from here on in the screen's pixels
  const auto screen = [ratio](double start, int place) {
    return FirstScreenPixel(start, ratio, place);
  };
  for (const QRect& area : region) {
    const int left = screen(scaling.Left, area.left()), top = screen(scaling.Top, area.top());
    Raster part(screen(scaling.Left, area.right() + 1) - left,
                screen(scaling.Top, area.bottom() + 1) - top);
    PaintScaled(part, left, top, image_.Pixels, levels_, scaling);
    const MarkScaling marked{view_.Zoom, ratio, scaling.Left, scaling.Top};
    PaintMarkEdges(part, left, top, image_, marked);
    for (const PlotOverlay::Marks& marks : overlay.Curves)
      PaintMarks(part, left, top, marks, marked);
    painter.drawImage(left, top, AsImage(part));
  }
  painter.restore();
}

void PlotView::paintEvent(QPaintEvent* event) {
  const QRect area = event->rect() & rect();
  if (!image_.IsPresent() || area.isEmpty()) return;
  QPainter painter(this);
  const PlotOverlay overlay = overlayIn_(PixelsAround(area));
  PaintPicture(painter, event->region() & area, overlay);
  if (!overlay.Previews.empty()) {
    painter.save();
    painter.scale(view_.Zoom, view_.Zoom);
    const PlotOverlay::Rectangle seen = PixelsAround(area);
    for (const PlotOverlay::Preview& preview : overlay.Previews)
      PaintPreview(painter, preview,
                   QRect(QPoint(seen.Left, seen.Top), QPoint(seen.Right, seen.Bottom)));
    painter.restore();
  }
  for (const PlotOverlay::Sketch& sketch : overlay.Sketches)
    PaintSketch(painter, sketch, view_.Zoom);
  PaintOverlay(painter, overlay, view_.Zoom);
  if (rubberBand_) PaintRubberBand(painter, event->region(), *rubberBand_, view_.Zoom);
}

void PlotView::UseCursor(const QCursor& cursor) {
  cursor_ = cursor;
  ShowCursor();
}

void PlotView::ShowCursor() {
  if (pansWith_ != Qt::NoButton)
    setCursor(Qt::ClosedHandCursor);
  else
    setCursor(mayPan_ ? QCursor(Qt::OpenHandCursor) : cursor_);
}

void PlotView::LetPan(bool pan) {
  if (std::exchange(mayPan_, pan) != pan) ShowCursor();
}

bool PlotView::BeginPan(const QMouseEvent& event) {
  const Qt::MouseButton button = event.button();
  if (button != Qt::MiddleButton && !(mayPan_ && button == Qt::LeftButton)) return false;
  if (event.buttons() != button) return false;  // another one drags something
  pansWith_ = button;
  pannedTo_ = event.scenePosition();
  ShowCursor();
  return true;
}

void PlotView::Pan(const QMouseEvent& event) {
  if (!event.buttons().testFlag(pansWith_)) return EndPan();
  const QPoint by = (event.scenePosition() - pannedTo_).toPoint();
  pannedTo_ += by;
  if (!by.isNull()) emit Panned(by.x(), by.y());
}

void PlotView::EndPan() {
  pansWith_ = Qt::NoButton;
  ShowCursor();
  ReadPointer();
}

PlotView::Position PlotView::PositionAt(QPointF place) const {
  const double zoom = view_.Zoom;
  // A screen's way outside is a long one on a picture seen from afar.
  constexpr int kOutside = 1000;
  const auto pixelAt = [zoom](double at, int length) {
    const int pixel = PixelAt(zoom, at);
    return zoom < 1 ? std::clamp(pixel, -kOutside, length + kOutside) : pixel;
  };
  const int column = pixelAt(place.x(), image_.Width()), row = pixelAt(place.y(), image_.Height());
  if (!parts_ || zoom <= 1 || !image_.Contains(column, row))
    return {static_cast<float>(column), static_cast<float>(row)};
  // Whole numbers are the pixels' centres.
  const auto within = [zoom](double at, int length) {
    return static_cast<float>(std::clamp(at / zoom - 0.5, 0.0, length - 1.0));
  };
  return {within(place.x(), image_.Width()), within(place.y(), image_.Height())};
}

void PlotView::TellMove(const Position& position, int button, int shift) {
  emit Moved(button, shift, position.X, position.Y);
}

bool PlotView::Shows(QPointF place) const {
  const QPoint pixel(static_cast<int>(std::floor(place.x())),
                     static_cast<int>(std::floor(place.y())));
  return window()->childAt(mapTo(window(), pixel)) == this;
}

void PlotView::ReadPointer() {
  const QPointF place = PointerPlace(this);
  if (QRectF(rect()).contains(place))
    TellMove(PositionAt(place), ButtonsOf(QGuiApplication::mouseButtons()), 0);
}

int PlotView::WayTo(double place, int pixel) const {
  const double zoom = view_.Zoom;
  int middle = static_cast<int>(std::floor((pixel + 0.5) * zoom));
  if (PixelAt(zoom, middle) < pixel) ++middle;
  return middle - static_cast<int>(std::floor(place));
}

int PlotView::WayBy(double place, int pixels) const {
  const bool eachIsSeen = view_.Zoom >= 1 && !(parts_ && view_.Zoom > 1);
  return pixels == 0 || !eachIsSeen ? pixels : WayTo(place, PixelAt(view_.Zoom, place) + pixels);
}

bool PlotView::MovePointer(int dx, int dy) {
  const QPointF place = PointerPlace(this);
  return MovePointerBy(this, WayBy(place.x(), dx), WayBy(place.y(), dy));
}

bool PlotView::PointAt(int x, int y) {
  setFocus(Qt::ShortcutFocusReason);
  const QPointF place = PointerPlace(this);
  return MovePointerBy(this, WayTo(place.x(), x), WayTo(place.y(), y));
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  if (pansWith_ != Qt::NoButton) return Pan(*event);
  const QPointF place =
      std::exchange(entered_, false) ? EnteredPlace(this, event) : PlaceOf(this, event);
  TellMove(PositionAt(place), ButtonsOf(event->buttons()), ShiftState(event->modifiers()));
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  if (pansWith_ != Qt::NoButton || BeginPan(*event)) return;
  const Position position = PositionAt(PlaceOf(this, event));
  const int button = ButtonsOf(event->button()), shift = ShiftState(event->modifiers());
  // A press acts on what the move before it has read, with the axes as they are now.
  TellMove(position, ButtonsOf(event->buttons() & ~event->button()), shift);
  if (event->button() == Qt::LeftButton) {
    leftPressedHere_ = true;
    secondPress_ = event->type() == QEvent::MouseButtonDblClick;
  }
  heldOutside_.start(kScrollInterval, this);
  emit Pressed(button, shift, position.X, position.Y);
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  if (pansWith_ != Qt::NoButton) {
    if (event->button() == pansWith_) EndPan();
    return;
  }
  const QPointF place = PlaceOf(this, event);
  const Position position = PositionAt(place);
  emit Released(ButtonsOf(event->button()), ShiftState(event->modifiers()), position.X, position.Y);
  if (event->button() != Qt::LeftButton) return;
  if (std::exchange(leftPressedHere_, false) && Shows(place)) emit Clicked(secondPress_);
}

void PlotView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != heldOutside_.timerId()) return QWidget::timerEvent(event);
  const int buttons = ButtonsOf(QGuiApplication::mouseButtons());
  if (buttons == 0) return heldOutside_.stop();
  const QPointF place = PointerPlace(this);
  if (!QRegion(visibleRegion()).contains(place.toPoint())) TellMove(PositionAt(place), buttons, 0);
}

void PlotView::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);  // two quick clicks are two clicks
}

void PlotView::enterEvent(QEnterEvent* event) {
  entered_ = true;
  const Position position = PositionAt(EnteredPlace(this, event));
  emit Entered(position.X, position.Y);
}

void PlotView::leaveEvent(QEvent*) {
  emit Left();
}

}  // namespace graphize
