#pragma once

#include "desktop/status_bar.h"

class QLabel;
class QStatusBar;

namespace graphize {

/// The status bar's keyed panels, the hint and the number of points among them, and the progress
/// bar that covers the panels "status" and "hint" and repeats what the first says.
class StatusPanels {
 public:
  explicit StatusPanels(QStatusBar* bar);
  void Render(const StatusBar& status, int points);

 private:
  class Progress;
  class Hint;

  QLabel* status_;
  Hint* hint_;
  QLabel* points_;
  QLabel* sizeX_;
  QLabel* sizeY_;
  Progress* progress_;
};

}  // namespace graphize
