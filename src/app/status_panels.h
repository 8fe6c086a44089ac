#pragma once

#include "desktop/status_bar.h"

class QLabel;
class QStatusBar;

namespace graphize {

class ElidedLabel;

/// The status bar's keyed panels, the hint and the number of points among them, and the progress
/// bar that covers the panels "status" and "hint" and repeats what the first says.
class StatusPanels {
 public:
  explicit StatusPanels(QStatusBar* bar);
  /// The hint is shown unless it is elsewhere in the window.
  void Render(const StatusBar& status, int points, bool hintElsewhere);

 private:
  class Progress;

  ElidedLabel* status_;
  ElidedLabel* hint_;
  QLabel* points_;
  QLabel* sizeX_;
  QLabel* sizeY_;
  Progress* progress_;
};

}  // namespace graphize
