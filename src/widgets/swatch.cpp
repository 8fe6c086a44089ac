#include "widgets/swatch.h"

#include <QPainter>
#include <QWidget>

namespace graphize {

QPixmap Swatch(const QWidget& on, std::uint32_t pixel, int side) {
  const qreal ratio = on.devicePixelRatioF();
  QPixmap pixmap(QSize(side, side) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  QPainter painter(&pixmap);
  painter.fillRect(0, 0, side, side, on.palette().color(QPalette::WindowText));
  painter.fillRect(1, 1, side - 2, side - 2, QColor::fromRgb(pixel));
  return pixmap;
}

}  // namespace graphize
