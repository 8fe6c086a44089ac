#include "widgets/up_down.h"

#include <QKeyEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace graphize {

UpDown::UpDown(const QString& what, QWidget* parent) : QWidget(parent) {
  setAccessibleName(what);
  setFocusPolicy(Qt::StrongFocus);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(1, 1, 1, 1);
  column->setSpacing(0);
  for (const int step : {1, -1}) {
    auto* button = new QToolButton;
    button->setArrowType(step > 0 ? Qt::UpArrow : Qt::DownArrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setObjectName(step > 0 ? QStringLiteral("Up") : QStringLiteral("Down"));
    button->setAccessibleName((step > 0 ? tr("%1, one more") : tr("%1, one less")).arg(what));
    button->setFixedSize(18, 13);
    column->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, step] { emit Stepped(step); });
  }
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void UpDown::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      return emit Stepped(1);
    case Qt::Key_Down:
      return emit Stepped(-1);
    case Qt::Key_PageUp:
      return emit Stepped(10);
    case Qt::Key_PageDown:
      return emit Stepped(-10);
    default:
      QWidget::keyPressEvent(event);
  }
}

void UpDown::wheelEvent(QWheelEvent* event) {
  turned_ += event->angleDelta().y();
  for (; turned_ >= QWheelEvent::DefaultDeltasPerStep; turned_ -= QWheelEvent::DefaultDeltasPerStep)
    emit Stepped(1);
  for (; turned_ <= -QWheelEvent::DefaultDeltasPerStep;
       turned_ += QWheelEvent::DefaultDeltasPerStep)
    emit Stepped(-1);
  event->accept();
}

void UpDown::paintEvent(QPaintEvent*) {
  if (!hasFocus()) return;
  QStylePainter painter(this);
  QStyleOptionFocusRect option;
  option.initFrom(this);
  painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

}  // namespace graphize
