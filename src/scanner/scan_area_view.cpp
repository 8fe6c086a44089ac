#include "scanner/scan_area_view.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace graphize {

ScanAreaView::ScanAreaView(QWidget* parent) : QWidget(parent) {
  setMinimumSize(ScanAreaView::sizeHint());
}

QSize ScanAreaView::sizeHint() const {
  return {220, 300};
}

QRectF ScanAreaView::Glass() const {
  const QRectF space = QRectF(rect()).adjusted(1, 1, -1, -1);
  QSizeF size(whole_.Width, whole_.Height);
  size.scale(space.size(), Qt::KeepAspectRatio);
  return {space.left() + (space.width() - size.width()) / 2, space.top(), size.width(),
          size.height()};
}

QRectF ScanAreaView::OnWidget(const PageArea& area) const {
  const QRectF glass = Glass();
  const double scale = glass.width() / whole_.Width;
  return {glass.left() + (area.Left - whole_.Left) * scale,
          glass.top() + (area.Top - whole_.Top) * scale, area.Width * scale, area.Height * scale};
}

PageArea ScanAreaView::OnGlass(const QRectF& rectangle) const {
  const QRectF glass = Glass();
  const double scale = whole_.Width / glass.width();
  return {whole_.Left + (rectangle.left() - glass.left()) * scale,
          whole_.Top + (rectangle.top() - glass.top()) * scale, rectangle.width() * scale,
          rectangle.height() * scale};
}

void ScanAreaView::ReadPreview(const Raster& preview) {
  const QImage image(reinterpret_cast<const uchar*>(preview.Pixels()), preview.Width(),
                     preview.Height(), preview.Width() * 4, QImage::Format_RGB32);
  const QSize size = (Glass().size() * devicePixelRatioF()).toSize();
  preview_ =
      QPixmap::fromImage(image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void ScanAreaView::Render(const ScanForm& form) {
  mayDrag_ = HasArea(form.Can) && form.Doing == ScanForm::Work::None;
  const PageArea whole = HasArea(form.Can) ? WholeArea(form.Can) : whole_;
  if (whole_ != whole || area_ != form.Can.Now.Area || previewNumber_ != form.PreviewNumber)
    update();
  whole_ = whole;
  area_ = form.Can.Now.Area;
  setCursor(mayDrag_ ? Qt::CrossCursor : Qt::ArrowCursor);
  if (previewNumber_ == form.PreviewNumber) return;
  previewNumber_ = form.PreviewNumber;
  ReadPreview(form.Preview);
}

void ScanAreaView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF glass = Glass();
  painter.fillRect(glass, Qt::white);
  if (!preview_.isNull()) painter.drawPixmap(glass, preview_, QRectF(preview_.rect()));
  QRectF chosen = dragging_ ? QRectF(pressed_, dragged_).normalized() : OnWidget(area_);
  if (area_.Width > 0 || dragging_) {
    chosen = chosen.intersected(glass);
    QPainterPath outside, inside;
    outside.addRect(glass);
    inside.addRect(chosen);
    painter.fillPath(outside.subtracted(inside), QColor(0, 0, 0, 90));
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(chosen);
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(glass);
}

void ScanAreaView::mousePressEvent(QMouseEvent* event) {
  if (!mayDrag_ || event->button() != Qt::LeftButton) return;
  pressed_ = dragged_ = event->position();
}

void ScanAreaView::mouseMoveEvent(QMouseEvent* event) {
  if (!mayDrag_ || !event->buttons().testFlag(Qt::LeftButton)) return;
  const QRectF glass = Glass();
  const auto into = [&glass](QPointF point) {
    return QPointF(std::clamp(point.x(), glass.left(), glass.right()),
                   std::clamp(point.y(), glass.top(), glass.bottom()));
  };
  if ((event->position() - pressed_).manhattanLength() >= QApplication::startDragDistance())
    dragging_ = true;
  if (!dragging_) return;
  pressed_ = into(pressed_);
  dragged_ = into(event->position());
  update();
}

void ScanAreaView::mouseReleaseEvent(QMouseEvent* event) {
  if (!dragging_ || event->button() != Qt::LeftButton) return;
  dragging_ = false;
  update();
  const QRectF chosen = QRectF(pressed_, dragged_).normalized();
  if (!chosen.isEmpty()) emit AreaDragged(OnGlass(chosen));
}

}  // namespace graphize
