#pragma once

#include <string>

namespace graphize {

/// The window frmAbout.
struct AboutForm {
  std::string Title;
  std::string Version;
  std::string Libraries;  // names and versions; the window knows its own library
  std::string Decoding;   // what the system does not allow for safe decoding; else empty
};

}  // namespace graphize
