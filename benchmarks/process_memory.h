#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

namespace graphize {

/// A line of /proc/self/status in bytes, such as "VmRSS:".
inline double StatusBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(key)) return 1024.0 * std::atof(line.c_str() + key.size());
  return 0;
}

/// "VmHWM:" counts from here.
inline void ResetPeakMemory() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

}  // namespace graphize
