#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// The texts with `separator` between them.
inline std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) joined += separator;
    joined += texts[i];
  }
  return joined;
}

}  // namespace graphize
