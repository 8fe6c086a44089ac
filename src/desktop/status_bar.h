#pragma once

#include <string>

namespace graphize {

/// The panels of the status bar by their keys, and the progress bar over the panel "status".
struct StatusBar {
  std::string Status;   // one blank when idle
  std::string Hint;     // what the mode's clicks do, or what "status" said before it was cleared
  std::string Passing;  // what "status" may say and nobody reads again: it is no hint
  std::string SizeX;    // "W=640"
  std::string SizeY;    // "H=480"
  bool ProgressVisible = false;
  int ProgressValue = 0;  // 0..100
};

}  // namespace graphize
