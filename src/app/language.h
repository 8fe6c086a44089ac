#pragma once

#include <filesystem>

namespace graphize {

/// Makes the window speak the language that the settings file asks for, by its catalogue in the
/// folder `translations`. Without one it speaks English. To be called between the application's
/// making and the window's.
void SpeakLanguage(const std::filesystem::path& settings,
                   const std::filesystem::path& translations);

}  // namespace graphize
