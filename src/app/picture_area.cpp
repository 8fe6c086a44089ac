#include "app/picture_area.h"

#include <QPainter>
#include <QWheelEvent>

#include "widgets/pointer.h"

namespace graphize {

PictureArea::PictureArea(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("PictureArea"));
  setMinimumSize(200, 150);
}

void PictureArea::ShowHint(bool shown) {
  if (hint_ == shown) return;
  hint_ = shown;
  update();
}

void PictureArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid));
  if (!hint_) return;
  painter.setPen(palette().color(QPalette::ButtonText));
  painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                   tr("Open a picture of a graph (Ctrl+O), paste one (Ctrl+V),\n"
                      "or drop a file here."));
}

void PictureArea::resizeEvent(QResizeEvent*) {
  emit Resized(width(), height());
}

void PictureArea::wheelEvent(QWheelEvent* event) {
  constexpr int kNotch = 120;
  event->accept();
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    turned_ += event->angleDelta().y();
    const int steps = turned_ / kNotch;
    turned_ %= kNotch;
    if (steps != 0) emit Zoomed(steps, PlaceOf(this, event));
    return;
  }
  turned_ = 0;
  // A notch of an ordinary wheel is 60 pixels.
  QPoint by = event->pixelDelta().isNull() ? event->angleDelta() / 2 : event->pixelDelta();
  if (event->modifiers().testFlag(Qt::ShiftModifier)) by = by.transposed();
  emit Wheeled(-by.x(), -by.y());
}

}  // namespace graphize
