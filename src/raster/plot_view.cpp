#include "raster/plot_view.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

#include "raster/curve_marks.h"
#include "widgets/keys.h"
#include "widgets/plot_cursor.h"
#include "widgets/pointer.h"

namespace graphize {

namespace {

constexpr int kScrollInterval = 40;  // milliseconds

int ButtonsOf(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? 1 : 0) | (buttons.testFlag(Qt::RightButton) ? 2 : 0) |
         (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

QColor ToQColor(Colour colour) {
  return QColor::fromRgb(PixelOfColour(colour));
}

/// One pixel wide; both ends belong to it.
QRect Stroke(int left, int top, int right, int bottom) {
  return {QPoint(left, top), QPoint(right, bottom)};
}

/// First all edges, then the strokes: no edge covers a neighbour.
void PaintStrokes(QPainter& painter, const QList<QRect>& strokes, Colour colour) {
  const QColor inside = ToQColor(colour), edge = ToQColor(EdgeColour(colour));
  for (const QRect& stroke : strokes)
    painter.fillRect(stroke.adjusted(-kMarkEdge, -kMarkEdge, kMarkEdge, kMarkEdge), edge);
  for (const QRect& stroke : strokes) painter.fillRect(stroke, inside);
}

/// Small crosses.
void PaintDots(QPainter& painter, const std::vector<PlotOverlay::Point>& points, Colour colour) {
  if (points.empty()) return;
  QList<QRect> strokes;
  strokes.reserve(static_cast<qsizetype>(2 * points.size()));
  for (const auto& [x, y] : points) {
    strokes << Stroke(x - kDataPointReach, y, x + kDataPointReach, y)
            << Stroke(x, y - kDataPointReach, x, y + kDataPointReach);
  }
  PaintStrokes(painter, strokes, colour);
}

/// A cross that leaves its pixel and the ink around it free.
void PaintCross(QPainter& painter, const PlotOverlay::Point& at, int reach, Colour colour) {
  constexpr int kGap = 2 + kMarkEdge;
  const auto [x, y] = at;
  PaintStrokes(painter,
               {Stroke(x - reach, y, x - kGap, y), Stroke(x + kGap, y, x + reach, y),
                Stroke(x, y - reach, x, y - kGap), Stroke(x, y + kGap, x, y + reach)},
               colour);
}

/// A frame around a point, and its corners alone.
void PaintFrame(QPainter& painter, const PlotOverlay::Point& at, int reach, int corner,
                Colour colour) {
  const auto [x, y] = at;
  QList<QRect> strokes;
  for (const int side : {-reach, reach})
    for (const auto& [from, to] : {std::pair(-reach, -reach + corner), {reach - corner, reach}})
      strokes << Stroke(x + side, y + from, x + side, y + to)
              << Stroke(x + from, y + side, x + to, y + side);
  PaintStrokes(painter, strokes, colour);
}

/// The points of the list: where they are, which are selected, and which lies under the pointer.
void PaintEditedPoints(QPainter& painter, const PlotOverlay& overlay) {
  constexpr int kSelectedReach = 4;
  PaintDots(painter, overlay.EditPoints, overlay.EditColour);
  for (const PlotOverlay::Point& point : overlay.Selected)
    PaintFrame(painter, point, kSelectedReach, kSelectedReach, overlay.SelectedColour);
  if (overlay.Near) PaintFrame(painter, *overlay.Near, kEditMarkReach, 2, overlay.SelectedColour);
}

/// The pixels of the rubber band's outline: its four sides.
QRegion OutlineOf(const PlotOverlay::Rectangle& band) {
  const QRect outer(QPoint(band.Left, band.Top), QPoint(band.Right, band.Bottom));
  return QRegion(outer).subtracted(outer.adjusted(1, 1, -1, -1));
}

/// Black and white by turns, so that it shows on ink and on paper.
void PaintRubberBand(QPainter& painter, const QRegion& visible,
                     const PlotOverlay::Rectangle& band) {
  for (const QRect& side : OutlineOf(band) & visible) {
    painter.fillRect(side, Qt::white);
    painter.fillRect(side, QBrush(Qt::black, Qt::Dense4Pattern));
  }
}

}  // namespace

QImage AsImage(const Raster& raster) {
  return QImage(reinterpret_cast<const uchar*>(raster.Pixels()), raster.Width(), raster.Height(),
                qsizetype{4} * raster.Width(), QImage::Format_RGB32);
}

PlotView::PlotView(const PlotImage& image, OverlayIn overlayIn, QWidget* parent)
    : QWidget(parent), image_(image), overlayIn_(std::move(overlayIn)) {
  setObjectName(QStringLiteral("Plot"));
  setAccessibleName(tr("Picture of the graph"));
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);  // keys meant for the picture do not go on to a value box
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(PlotCursor(0, devicePixelRatioF()));
  resize(0, 0);
}

void PlotView::Render(const DirtyArea& dirty,
                      const std::optional<PlotOverlay::Rectangle>& rubberBand) {
  const QSize size(image_.Width(), image_.Height());
  if (this->size() != size) {
    resize(size);
    setVisible(!size.isEmpty());
  }
  if (!dirty.IsEmpty())
    update(QRect(QPoint(dirty.Left, dirty.Top), QPoint(dirty.Right, dirty.Bottom)));
  if (rubberBand_ == rubberBand) return;
  // Its old and new outline alone: what lies inside may be a whole page.
  if (rubberBand_) update(OutlineOf(*rubberBand_));
  if (rubberBand) update(OutlineOf(*rubberBand));
  rubberBand_ = rubberBand;
}

void PlotView::PaintWithCurves(QPainter& painter, const QRect& area,
                               const PlotOverlay& overlay) const {
  Raster part(area.width(), area.height());
  for (int y = 0; y < area.height(); ++y)
    std::copy_n(image_.Pixels.Row(area.top() + y) + area.left(), area.width(), part.Row(y));
  for (const PlotOverlay::Marks& marks : overlay.Curves)
    PaintMarks(part, area.left(), area.top(), marks);
  painter.drawImage(area.topLeft(), AsImage(part));
}

void PlotView::paintEvent(QPaintEvent* event) {
  if (!image_.IsPresent()) return;
  QPainter painter(this);
  const QImage picture = AsImage(image_.Pixels);
  const QRect area = event->rect() & picture.rect();
  const PlotOverlay overlay = overlayIn_({area.left(), area.top(), area.right(), area.bottom()});
  if (overlay.Curves.empty())
    for (const QRect& part : event->region() & area) painter.drawImage(part, picture, part);
  else
    PaintWithCurves(painter, area, overlay);
  PaintDots(painter, overlay.DataPoints, overlay.DataColour);
  PaintEditedPoints(painter, overlay);
  if (overlay.LastPoint)
    PaintCross(painter, *overlay.LastPoint, kLastPointReach, overlay.LastColour);
  for (const PlotOverlay::Point& point : overlay.AxisPoints)
    PaintCross(painter, point, kAxisPointReach, overlay.AxisColour);
  if (rubberBand_) PaintRubberBand(painter, event->region(), *rubberBand_);
}

void PlotView::TellMove(QPoint position, int button, int shift) {
  emit Moved(button, shift, static_cast<float>(position.x()), static_cast<float>(position.y()));
}

bool PlotView::ShowsPixel(QPoint position) const {
  return window()->childAt(mapTo(window(), position)) == this;
}

void PlotView::ReadPointer() {
  const QPoint position = PointerPixel(this);
  if (rect().contains(position)) TellMove(position, ButtonsOf(QGuiApplication::mouseButtons()), 0);
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint pixel =
      std::exchange(entered_, false) ? EnteredPixel(this, event) : PixelOf(this, event);
  TellMove(pixel, ButtonsOf(event->buttons()), ShiftState(event->modifiers()));
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  const QPoint position = PixelOf(this, event);
  const int button = ButtonsOf(event->button()), shift = ShiftState(event->modifiers());
  // A press acts on what the move before it has read, with the axes as they are now.
  TellMove(position, ButtonsOf(event->buttons() & ~event->button()), shift);
  if (event->button() == Qt::LeftButton) {
    leftPressedHere_ = true;
    secondPress_ = event->type() == QEvent::MouseButtonDblClick;
  }
  heldOutside_.start(kScrollInterval, this);
  emit Pressed(button, shift, static_cast<float>(position.x()), static_cast<float>(position.y()));
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint position = PixelOf(this, event);
  emit Released(ButtonsOf(event->button()), ShiftState(event->modifiers()),
                static_cast<float>(position.x()), static_cast<float>(position.y()));
  if (event->button() != Qt::LeftButton) return;
  if (std::exchange(leftPressedHere_, false) && ShowsPixel(position)) emit Clicked(secondPress_);
}

void PlotView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != heldOutside_.timerId()) return QWidget::timerEvent(event);
  const int buttons = ButtonsOf(QGuiApplication::mouseButtons());
  if (buttons == 0) return heldOutside_.stop();
  const QPoint position = PointerPixel(this);
  if (!visibleRegion().contains(position)) TellMove(position, buttons, 0);
}

void PlotView::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);  // two quick clicks are two clicks
}

void PlotView::enterEvent(QEnterEvent* event) {
  entered_ = true;
  const QPoint position = EnteredPixel(this, event);
  emit Entered(static_cast<float>(position.x()), static_cast<float>(position.y()));
}

void PlotView::leaveEvent(QEvent*) {
  emit Left();
}

}  // namespace graphize
