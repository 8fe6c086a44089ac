#include "widgets/number_label.h"

#include <QFocusEvent>

namespace graphize {

NumberLabel::NumberLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::IBeamCursor);
  // The longest number: what stands beside it never moves.
  setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-0.00000000E+00")));
}

void NumberLabel::focusInEvent(QFocusEvent* event) {
  QLabel::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
    setSelection(0, static_cast<int>(text().size()));
}

}  // namespace graphize
