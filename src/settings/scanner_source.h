#pragma once

#include <string>

#include "settings/settings_file.h"

namespace graphize {

/// The scanner that the user has chosen; both are empty when none was. Blanks, and what the file
/// takes for a remark, stand in it as % and two hexadecimal digits.
struct ScannerSource {
  std::string Name;   // for the library
  std::string Label;  // for people; may be empty

  bool operator==(const ScannerSource&) const = default;
};
ScannerSource ReadScannerSource(const SettingsFile& file);
void WriteScannerSource(SettingsFile& file, const ScannerSource& source);

}  // namespace graphize
