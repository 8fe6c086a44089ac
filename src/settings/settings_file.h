#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// A file of "[section]" and "key=value" lines, kept as the text it is, so that whatever a person
/// wrote by hand survives: comments, unknown keys, order, blanks, line ends, a byte-order mark.
///
/// - Names of sections and keys are matched without regard to ASCII letter case and the blanks
///   around them. Of lines with the same section and key the first one counts.
/// - A value ends before a remark: ';' or '#' after a blank.
struct SettingsFile {
  std::vector<std::string> Lines;  // each with its line end as found; the last may have none
  std::string ReadError;  // in plain words; not empty when there is a file that cannot be read
};

/// The file's text. An absent file is an empty one; one that cannot be read, is no plain text or is
/// larger than a mebibyte is empty, too, with ReadError saying so.
SettingsFile ReadSettingsFile(const std::filesystem::path& path);

/// The value's text without blanks around it; nothing when there is no such key.
std::optional<std::string_view> ReadValue(const SettingsFile& file, std::string_view section,
                                          std::string_view key);

/// The signed decimal integer that the value starts with; 0 when it starts with none. A missing key
/// gives `defaultValue`; a number beyond 64 bits gives the nearest one inside them.
std::int64_t ReadInt(const SettingsFile& file, std::string_view section, std::string_view key,
                     std::int64_t defaultValue);

/// Changes the value where it stands, or adds the key at the end of its section, or the section at
/// the end of the file. `value` is one line without blanks or ';' and '#'.
void WriteValue(SettingsFile& file, std::string_view section, std::string_view key,
                std::string_view value);

/// Writes the file as a whole or not at all, and makes its folder. RunTimeError with the reason
/// when that fails, and when the file there could not be read before: what it holds is not lost.
void SaveSettingsFile(const std::filesystem::path& path, const SettingsFile& file);

}  // namespace graphize
