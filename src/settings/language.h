#pragma once

#include <string>

#include "settings/settings_file.h"

namespace graphize {

/// A language of the window.
struct Language {
  const char* Code;  // as its catalogue is named
  const char* Name;  // in itself
};
inline constexpr Language kLanguages[] = {{"en", "English"}, {"de", "Deutsch"}};

/// The code of the language that the file asks for; of English where there is no such language.
std::string ReadLanguage(const SettingsFile& file);
void WriteLanguage(SettingsFile& file, const std::string& code);

}  // namespace graphize
