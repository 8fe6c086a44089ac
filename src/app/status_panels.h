#pragma once

#include "desktop/status_bar.h"

class QLabel;
class QStatusBar;

namespace graphize {

/// The status bar's keyed panels, the number of points among them, and the progress bar that covers
/// the panel "status" and repeats its text.
class StatusPanels {
 public:
  explicit StatusPanels(QStatusBar* bar);
  void Render(const StatusBar& status, int points);

 private:
  class Progress;

  QLabel* status_;
  QLabel* points_;
  QLabel* sizeX_;
  QLabel* sizeY_;
  Progress* progress_;
};

}  // namespace graphize
