#include "widgets/elided_label.h"

#include <QPainter>
#include <QStyle>

#include "widgets/show.h"

namespace graphize {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  // A long text must not widen the window.
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  setTextFormat(Qt::PlainText);
}

void ElidedLabel::ShowText(const std::string& text) {
  Show(this, text);
  setToolTip(this->text().trimmed());
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);  // NOLINT(bugprone-parent-virtual-call): not the label's whole text
  QPainter painter(this);
  const QRect room = contentsRect().adjusted(2, 0, -2, 0);
  style()->drawItemText(&painter, room, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        fontMetrics().elidedText(text(), Qt::ElideRight, room.width()),
                        foregroundRole());
}

}  // namespace graphize
