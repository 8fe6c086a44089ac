#include "settings/stored_number.h"

namespace graphize {

std::int64_t ReadNumber(const SettingsFile& file, const char* section, const char* key,
                        std::int64_t defaultValue, std::int64_t least, std::int64_t most,
                        std::vector<std::string>& notes) {
  const std::int64_t number = ReadInt(file, section, key, defaultValue);
  if (number >= least && number <= most) return number;
  notes.push_back("\"" + std::string(key) + "\" in [" + section + "] is not between " +
                  std::to_string(least) + " and " + std::to_string(most) + "; " +
                  std::to_string(defaultValue) + " is used instead.");
  return defaultValue;
}

void WriteNumber(SettingsFile& file, const char* section, const char* key, std::int64_t number) {
  WriteValue(file, section, key, std::to_string(number));
}

}  // namespace graphize
