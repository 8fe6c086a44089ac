#pragma once

#include <string>
#include <string_view>

#include "settings/settings_file.h"

namespace graphize {

/// The name of the scanner that the user has chosen; empty when none was. Names hold blanks, and
/// what the file takes for a remark: such characters stand in it as % and two hexadecimal digits.
std::string ReadScannerSource(const SettingsFile& file);
void WriteScannerSource(SettingsFile& file, std::string_view name);

}  // namespace graphize
