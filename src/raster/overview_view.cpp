#include "raster/overview_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>

#include "raster/picture_scaling.h"
#include "raster/plot_view.h"
#include "widgets/show.h"

namespace graphize {

namespace {

constexpr int kLongSide = 118;  // logical pixels
constexpr int kBorder = 3;

}  // namespace

OverviewView::OverviewView(const PlotImage& image, Pyramid& levels, QWidget* parent)
    : QFrame(parent), image_(image), levels_(levels) {
  Named(this, "Overview", tr("Overview of the picture"));
  setToolTip(tr("The whole picture; click or drag to see another part of it"));
  setFrameStyle(QFrame::Panel | QFrame::Raised);
  setCursor(Qt::PointingHandCursor);
  hide();
}

double OverviewView::Scale() const {
  return static_cast<double>(kLongSide) / std::max({image_.Width(), image_.Height(), 1});
}

void OverviewView::Render(const Viewport& view, bool pictureChanged) {
  const bool shown = image_.IsPresent() && IsCutOff(view);
  const auto side = [&](int length) {
    return std::max(static_cast<int>(std::ceil(length * Scale())), 1) + 2 * kBorder;
  };
  stale_ = stale_ || pictureChanged;
  if (const QSize size(side(image_.Width()), side(image_.Height()));
      shown && size != this->size()) {
    small_ = {};
    stale_ = true;
    setFixedSize(size);
  }
  const bool moved = view_.X != view.X || view_.Y != view.Y || view_.Zoom != view.Zoom ||
                     view_.Width != view.Width || view_.Height != view.Height;
  view_ = view;
  if (shown && stale_ && !making_.isActive()) making_.start(0, this);
  if (shown == isHidden()) setVisible(shown);
  if (shown && (moved || pictureChanged)) update();
}

void OverviewView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != making_.timerId()) return QFrame::timerEvent(event);
  if (!image_.IsPresent() || isHidden()) return making_.stop();
  const double scale = Scale() * devicePixelRatioF();
  if (levels_.MakeSome(image_.Pixels, LevelFor(scale))) return;
  making_.stop();
  MakeSmall();
}

void OverviewView::MakeSmall() {
  const double ratio = devicePixelRatioF();
  const QSize size = (this->size() - QSize(2 * kBorder, 2 * kBorder)) * ratio;
  Raster small(size.width(), size.height());
  PaintScaled(small, 0, 0, image_.Pixels, levels_, {Scale() * ratio, 0, 0});
  small_ = AsImage(small).copy();
  small_.setDevicePixelRatio(ratio);
  stale_ = false;
  update();
}

QRectF OverviewView::Seen() const {
  const double scale = Scale() / view_.Zoom;
  const QRectF seen(kBorder + view_.X * scale, kBorder + view_.Y * scale, view_.Width * scale,
                    view_.Height * scale);
  return seen & QRectF(rect()).adjusted(kBorder, kBorder, -kBorder, -kBorder);
}

void OverviewView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window));
  if (!small_.isNull()) painter.drawImage(kBorder, kBorder, small_);
  // Seen on ink and on paper: a light frame within a dark one.
  const QRectF seen = Seen();
  painter.setPen(QPen(Qt::white, 3));
  painter.drawRect(seen.adjusted(1, 1, -1, -1));
  painter.setPen(QPen(QColor(200, 0, 0), 1));
  painter.drawRect(seen.adjusted(1, 1, -1, -1));
  QFrame::paintEvent(event);
}

void OverviewView::Ask(QPointF at) {
  const double scale = Scale();
  emit Asked((at.x() - kBorder) / scale, (at.y() - kBorder) / scale);
}

void OverviewView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPointF at = event->position();
  grabbed_ = Seen().contains(at) ? at - Seen().center() : QPointF();
  if (grabbed_.isNull()) Ask(at);
}

void OverviewView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) Ask(event->position() - grabbed_);
}

void OverviewView::enterEvent(QEnterEvent* event) {
  QFrame::enterEvent(event);
  emit Entered();
}

void OverviewView::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) update();
}

}  // namespace graphize
