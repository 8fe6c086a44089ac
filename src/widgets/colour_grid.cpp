#include "widgets/colour_grid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "base/palette.h"

namespace graphize {

namespace {

constexpr int kColumns = 8, kRows = 2;

}  // namespace

ColourGrid::ColourGrid(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ColourGrid::sizeHint() const {
  return {kColumns * 36, kRows * 36};
}

QRectF ColourGrid::Field(int index) const {
  const double width = 1.0 * this->width() / kColumns, height = 1.0 * this->height() / kRows;
  const int column = index % kColumns, row = index / kColumns;
  return {column * width, row * height, width, height};
}

void ColourGrid::Render(int chosen) {
  if (chosen_ == chosen) return;
  chosen_ = chosen;
  update();
}

void ColourGrid::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (int index = 0; index < kColumns * kRows; ++index) {
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(QColor::fromRgb(PixelOfColour(PaletteColour(index))));
    painter.drawRect(Field(index).adjusted(4, 4, -4, -4).toRect());
    if (index != chosen_) continue;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText), 2));
    painter.drawRect(Field(index).adjusted(1, 1, -1, -1));
  }
}

void ColourGrid::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  for (int index = 0; index < kColumns * kRows; ++index)
    if (Field(index).contains(event->position())) return emit Chosen(index);
}

void ColourGrid::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Left    ? -1
                   : event->key() == Qt::Key_Right ? 1
                   : event->key() == Qt::Key_Up    ? -kColumns
                   : event->key() == Qt::Key_Down  ? kColumns
                                                   : 0;
  if (step == 0) return QWidget::keyPressEvent(event);
  const int next = chosen_ + step;
  if (next >= 0 && next < kColumns * kRows) emit Chosen(next);
}

void ColourGrid::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void ColourGrid::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace graphize
