#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "settings/settings_file.h"

namespace graphize {

inline constexpr const char* kOptionsSection = "Options";
inline constexpr const char* kFormatSection = "Data Format";
inline constexpr const char* kSnapsSection = "Snaps";
inline constexpr const char* kWindowSection = "Window Position";

/// The number of a key if it is from `least` to `most`; else `defaultValue`, with a note.
std::int64_t ReadNumber(const SettingsFile& file, const char* section, const char* key,
                        std::int64_t defaultValue, std::int64_t least, std::int64_t most,
                        std::vector<std::string>& notes);

/// The same for all that the type holds.
template <typename Integer>
Integer ReadNumber(const SettingsFile& file, const char* section, const char* key,
                   Integer defaultValue, std::vector<std::string>& notes) {
  using Limits = std::numeric_limits<Integer>;
  return static_cast<Integer>(
      ReadNumber(file, section, key, defaultValue, Limits::min(), Limits::max(), notes));
}

void WriteNumber(SettingsFile& file, const char* section, const char* key, std::int64_t number);

}  // namespace graphize
