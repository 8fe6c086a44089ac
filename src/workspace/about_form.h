#pragma once

#include <string>

namespace graphize {

/// The window frmAbout.
struct AboutForm {
  std::string Title;
  std::string Version;
  std::string Libraries;  // names and versions; the window knows its own library
};

}  // namespace graphize
