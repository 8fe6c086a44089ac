#pragma once

#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>

namespace graphize {

/// Scrolls up and down alone, and grows where a frame that was hidden takes more than was known.
class SidePanel : public QScrollArea {
 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool taken = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest && isVisible()) {
      const int room = verticalScrollBar()->sizeHint().width();
      const int needed = widget()->minimumSizeHint().width() + room;
      if (needed > width()) setFixedWidth(needed);
    }
    return taken;
  }
};

}  // namespace graphize
