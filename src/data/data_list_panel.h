#pragma once

#include <QGroupBox>
#include <array>

#include "capture/point_store.h"
#include "data/number_format.h"

class QLabel;
class QLineEdit;
class QScrollBar;

namespace graphize {

/// "Graphized Data": five lines of the point list, its scroll bar and the count.
class DataListPanel : public QGroupBox {
  Q_OBJECT
 public:
  explicit DataListPanel(QWidget* parent = nullptr);
  void Render(const PointStore& store, const NumberFormats& formats, bool decimalPoint);

 signals:
  void LinePressed(int line, bool shift);
  void Scrolled(int value);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;

  std::array<QLineEdit*, kPageLines> lines_;
  QScrollBar* scroll_;
  QLabel* count_;
};

}  // namespace graphize
