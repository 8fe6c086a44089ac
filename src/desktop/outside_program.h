#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// A program that may be installed beside this one.
struct OutsideProgram {
  std::string Desktop;  // the one it belongs to, as XDG_CURRENT_DESKTOP names it; empty: to none
  std::string Name;     // looked for in PATH
  std::vector<std::string> Arguments;
};

/// The programs in the order to try them: those of the desktop that runs come first. `current` is
/// its names, the most particular one first, as in "Budgie:GNOME"; case does not matter.
std::vector<OutsideProgram> InOrderFor(std::string_view current,
                                       const std::vector<OutsideProgram>& programs);

}  // namespace graphize
