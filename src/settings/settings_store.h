#pragma once

#include <string>
#include <vector>

#include "settings/settings.h"
#include "settings/settings_file.h"
#include "settings/window_placement.h"

namespace graphize {

inline constexpr const char* kSettingsFileName = "graphize.ini";

/// Fills the record from the file; a missing key gives its default. A number that its member cannot
/// hold gives the default, too, with a note in plain words, as does a file that cannot be read.
/// RefreshList is held negated: 1 in the file is -1 here and -1 is 1; both are on.
void ReadSettings(const SettingsFile& file, Settings& settings, std::vector<std::string>& notes);

/// Whether the last captured point is to be highlighted: on unless the file says 0 or less.
bool ReadLastPoint(const SettingsFile& file);

/// Writes every key. RefreshList is written as it is held; on and off as 1 and 0.
void WriteSettings(SettingsFile& file, const Settings& settings, bool lastPoint, bool overlay,
                   const WindowPlacement& placement);

/// The defaults, but for the two snap options, which keep their values.
void ResetSettings(Settings& settings);

}  // namespace graphize
