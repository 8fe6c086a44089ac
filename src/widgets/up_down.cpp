#include "widgets/up_down.h"

#include <QToolButton>
#include <QVBoxLayout>

namespace graphize {

UpDown::UpDown(const QString& what, QWidget* parent) : QWidget(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  for (const int step : {1, -1}) {
    auto* button = new QToolButton;
    button->setArrowType(step > 0 ? Qt::UpArrow : Qt::DownArrow);
    button->setAutoRepeat(true);
    button->setObjectName(step > 0 ? QStringLiteral("Up") : QStringLiteral("Down"));
    button->setAccessibleName((step > 0 ? tr("%1, one more") : tr("%1, one less")).arg(what));
    button->setFixedSize(18, 13);
    column->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, step] { emit Stepped(step); });
  }
}

}  // namespace graphize
