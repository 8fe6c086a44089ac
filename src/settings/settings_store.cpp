#include "settings/settings_store.h"

#include "settings/stored_number.h"

namespace graphize {

namespace {

bool ReadSwitch(const SettingsFile& file, const char* section, const char* key, bool otherwise) {
  return ReadInt(file, section, key, otherwise ? 1 : 0) != 0;
}

/// An option that a file has only once it has been another than its default.
void WriteWhereSet(SettingsFile& file, const char* key, int number, int byDefault) {
  if (number != byDefault || ReadInt(file, kOptionsSection, key, byDefault) != byDefault)
    WriteNumber(file, kOptionsSection, key, number);
}

}  // namespace

void ReadSettings(const SettingsFile& file, Settings& settings, std::vector<std::string>& notes) {
  if (!file.ReadError.empty()) notes.push_back(file.ReadError);
  const Settings defaults;
  settings.Zoom = ReadNumber(file, kOptionsSection, "Zoom", defaults.Zoom, notes);
  settings.RefreshList = static_cast<std::int16_t>(
      -ReadNumber(file, kOptionsSection, "RefreshList", 0, -INT16_MAX, -INT16_MIN, notes));
  settings.XJump = ReadNumber(file, kOptionsSection, "XJump", defaults.XJump, notes);
  settings.YJump = ReadNumber(file, kOptionsSection, "YJump", defaults.YJump, notes);
  settings.TraceColor = ReadNumber(file, kOptionsSection, "TraceColor", defaults.TraceColor, notes);
  settings.BlockColor = ReadNumber(file, kOptionsSection, "BlockColor", defaults.BlockColor, notes);
  settings.Trace = ReadNumber(file, kOptionsSection, "Trace", defaults.Trace, notes);
  settings.CursorType = ReadNumber(file, kOptionsSection, "CursorType", defaults.CursorType, notes);
  settings.SubPixelClicks =
      ReadSwitch(file, kOptionsSection, "SubPixelClicks", defaults.SubPixelClicks);
  settings.Threshold = static_cast<std::int16_t>(
      ReadNumber(file, kOptionsSection, "Threshold", defaults.Threshold, 1, 255, notes));
  settings.NextLine = ReadNumber(file, kOptionsSection, "NextLine", defaults.NextLine, notes);
  settings.DecimalPoint = ReadSwitch(file, kFormatSection, "DecimalPoint", defaults.DecimalPoint);
  settings.XDigits = ReadNumber(file, kFormatSection, "XDigits", defaults.XDigits, notes);
  settings.XDecimals = ReadNumber(file, kFormatSection, "XDecimals", defaults.XDecimals, notes);
  settings.XExp = ReadSwitch(file, kFormatSection, "XExp", defaults.XExp);
  settings.YDigits = ReadNumber(file, kFormatSection, "YDigits", defaults.YDigits, notes);
  settings.YDecimals = ReadNumber(file, kFormatSection, "YDecimals", defaults.YDecimals, notes);
  settings.YExp = ReadSwitch(file, kFormatSection, "YExp", defaults.YExp);
  settings.Delimiter = ReadNumber(file, kFormatSection, "Delimiter", defaults.Delimiter, notes);
  settings.SnapMode = ReadNumber(file, kSnapsSection, "SnapMode", defaults.SnapMode, notes);
  settings.SnapDistance =
      ReadNumber(file, kSnapsSection, "SnapDistance", defaults.SnapDistance, notes);
}

bool ReadLastPoint(const SettingsFile& file) {
  return ReadInt(file, kOptionsSection, "LastPoint", 1) > 0;
}

void WriteSettings(SettingsFile& file, const Settings& settings, bool lastPoint, bool overlay,
                   const WindowPlacement& placement) {
  WriteNumber(file, kOptionsSection, "Zoom", settings.Zoom);
  WriteNumber(file, kOptionsSection, "RefreshList", settings.RefreshList);
  WriteNumber(file, kOptionsSection, "XJump", settings.XJump);
  WriteNumber(file, kOptionsSection, "YJump", settings.YJump);
  WriteNumber(file, kOptionsSection, "TraceColor", settings.TraceColor);
  WriteNumber(file, kOptionsSection, "BlockColor", settings.BlockColor);
  WriteNumber(file, kOptionsSection, "Trace", settings.Trace);
  WriteNumber(file, kOptionsSection, "LastPoint", lastPoint);
  WriteNumber(file, kOptionsSection, "OverlayData", overlay);
  WriteNumber(file, kOptionsSection, "CursorType", settings.CursorType);
  // Files of those who do not use it stay as they are.
  if (settings.SubPixelClicks != ReadSwitch(file, kOptionsSection, "SubPixelClicks", false))
    WriteNumber(file, kOptionsSection, "SubPixelClicks", settings.SubPixelClicks);
  const Settings defaults;
  WriteWhereSet(file, "Threshold", settings.Threshold, defaults.Threshold);
  WriteWhereSet(file, "NextLine", settings.NextLine, defaults.NextLine);
  WriteNumber(file, kFormatSection, "DecimalPoint", settings.DecimalPoint);
  WriteNumber(file, kFormatSection, "XDigits", settings.XDigits);
  WriteNumber(file, kFormatSection, "XDecimals", settings.XDecimals);
  WriteNumber(file, kFormatSection, "XExp", settings.XExp);
  WriteNumber(file, kFormatSection, "YDigits", settings.YDigits);
  WriteNumber(file, kFormatSection, "YDecimals", settings.YDecimals);
  WriteNumber(file, kFormatSection, "YExp", settings.YExp);
  WriteNumber(file, kFormatSection, "Delimiter", settings.Delimiter);
  WritePlacement(file, placement);
  WriteNumber(file, kSnapsSection, "SnapMode", settings.SnapMode);
  WriteNumber(file, kSnapsSection, "SnapDistance", settings.SnapDistance);
}

void ResetSettings(Settings& settings) {
  const Settings old = settings;
  settings = {};
  settings.SnapMode = old.SnapMode;
  settings.SnapDistance = old.SnapDistance;
}

}  // namespace graphize
