#include "settings/stored_number.h"

#include "base/translation.h"

namespace graphize {

std::int64_t ReadNumber(const SettingsFile& file, const char* section, const char* key,
                        std::int64_t defaultValue, std::int64_t least, std::int64_t most,
                        std::vector<std::string>& notes) {
  const std::int64_t number = ReadInt(file, section, key, defaultValue);
  if (number >= least && number <= most) return number;
  notes.push_back(Tr("\"%1\" in [%2] is not between %3 and %4; %5 is used instead.", key, section,
                     least, most, defaultValue));
  return defaultValue;
}

void WriteNumber(SettingsFile& file, const char* section, const char* key, std::int64_t number) {
  WriteValue(file, section, key, std::to_string(number));
}

}  // namespace graphize
