#pragma once

#include <QLabel>
#include <QResizeEvent>
#include <algorithm>

namespace graphize {

/// A text of several lines that is given the height which its width takes, also where a scroll area
/// asks for the least.
class WrappedLabel : public QLabel {
 public:
  explicit WrappedLabel(QWidget* parent = nullptr) : QLabel(parent) { setWordWrap(true); }

  QSize minimumSizeHint() const override {
    const QSize least = QLabel::minimumSizeHint();
    return {least.width(), std::max(least.height(), heightForWidth(width()))};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
  }
};

}  // namespace graphize
