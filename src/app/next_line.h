#pragma once

#include <QWidget>
#include <array>

#include "workspace/next_step.h"

class QGridLayout;
class QLabel;

namespace graphize {

class ElidedLabel;

/// The line above the picture: the way from a picture to a data file, where on it one is, and what
/// is to be done there.
class NextLine : public QWidget {
  Q_OBJECT
 public:
  explicit NextLine(QWidget* parent = nullptr);
  void Render(const NextStep& next, bool shown);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The hint stands behind the way, or below it where the window is narrow.
  void MakeRoom();

  std::array<QLabel*, kWay.size()> stations_{};
  std::array<QLabel*, kWay.size() - 1> arrows_{};
  ElidedLabel* hint_;
  QGridLayout* grid_;
  bool isBelow_ = false;
  int present_ = -1;
};

}  // namespace graphize
