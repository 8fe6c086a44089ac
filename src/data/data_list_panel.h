#pragma once

#include <QGroupBox>
#include <array>

#include "capture/point_store.h"
#include "data/number_format.h"

class QLabel;
class QScrollBar;

namespace graphize {

/// "Graphized Data": five lines of the point list, its scroll bar and the count.
class DataListPanel : public QGroupBox {
  Q_OBJECT
 public:
  /// `above` stands over the list, `below` under it.
  DataListPanel(QWidget* above, QWidget* below, QWidget* parent = nullptr);
  void Render(const PointStore& store, const NumberFormats& formats, bool decimalPoint);

 signals:
  void LinePressed(int line, bool shift);
  /// A key on a line: rows to move the selection by, 0 to select the line.
  void LineStepped(int line, int by, bool extend);
  void Scrolled(int value);

 protected:
  void wheelEvent(QWheelEvent* event) override;

 private:
  class Line;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool TakeKey(int line, const QKeyEvent& key);
  void RenderFocus(const ListPage& page);

  std::array<Line*, kPageLines> lines_;
  QScrollBar* scroll_;
  QLabel* count_;
};

}  // namespace graphize
