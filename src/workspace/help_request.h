#pragma once

#include <filesystem>
#include <string>

namespace graphize {

/// What the help window is asked for.
struct HelpRequest {
  std::filesystem::path File;  // "Graphize.hlp"
  bool Asked = false;          // the window is to come up, once
  std::string Text;            // then: the file's
  std::string Chapter;         // an anchor in it; empty: where it was left
};

}  // namespace graphize
