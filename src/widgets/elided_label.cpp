#include "widgets/elided_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include "widgets/show.h"
#include "widgets/tool_tip.h"

namespace graphize {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  // A long text must not widen the window.
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  setTextFormat(Qt::PlainText);
}

void ElidedLabel::ShowText(const std::string& text) {
  if (this->text() == ToQString(text)) return;
  Show(this, text);
  setToolTip(ToolTipOf(this->text().trimmed()));
}

QRect ElidedLabel::Room() const {
  return contentsRect().adjusted(2, 0, -2, 0);
}

QString ElidedLabel::Shown() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, Room().width());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && Shown() == text()) {
    event->ignore();
    return true;
  }
  return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);  // NOLINT(bugprone-parent-virtual-call): not the label's whole text
  QPainter painter(this);
  style()->drawItemText(&painter, Room(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        Shown(), foregroundRole());
}

}  // namespace graphize
