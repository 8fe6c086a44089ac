#pragma once

#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace graphize {

/// A desktop without a window: what operations tell is kept for the end of the run. Questions have
/// no one to answer them, so they are problems, too; Escape is never held.
class Console {
 public:
  Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  const Desktop& Callbacks() const { return callbacks_; }

  std::vector<std::string> Notes;     // information, one line each
  std::vector<std::string> Problems;  // all else

 private:
  Desktop callbacks_;
};

/// A message of several lines as one, without other control characters.
std::string OneLine(const std::string& text);

}  // namespace graphize
