#include "settings/language.h"

#include "settings/stored_number.h"

namespace graphize {

namespace {

constexpr const char* kKey = "Language";

}  // namespace

std::string ReadLanguage(const SettingsFile& file) {
  const auto wanted = ReadValue(file, kOptionsSection, kKey);
  for (const Language& language : kLanguages)
    if (wanted == language.Code) return language.Code;
  return kLanguages[0].Code;
}

void WriteLanguage(SettingsFile& file, const std::string& code) {
  WriteValue(file, kOptionsSection, kKey, code);
}

}  // namespace graphize
