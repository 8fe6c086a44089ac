#include "settings/settings_file.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"

namespace graphize {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::size_t kSizeLimit = 1 << 20;

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && LowerCase(a) == LowerCase(b);
}

std::string_view WithoutMark(std::string_view line) {
  return line.starts_with(kByteOrderMark) ? line.substr(kByteOrderMark.size()) : line;
}

/// The name in "[name]".
std::optional<std::string_view> SectionOf(std::string_view line) {
  const std::string_view text = Trim(WithoutMark(line));
  if (!text.starts_with('[')) return std::nullopt;
  return Trim(text.substr(1, text.find(']') - 1));
}

/// The value in "key = value ; remark". An empty one stands right behind the '='.
std::string_view ValueIn(std::string_view line) {
  const std::string_view rest = line.substr(line.find('=') + 1);
  std::size_t end = 0;
  while (end < rest.size()) {
    const bool remark = rest[end] == ';' || rest[end] == '#';
    if (remark && (end == 0 || kBlanks.find(rest[end - 1]) != std::string_view::npos)) break;
    ++end;
  }
  return Trim(rest.substr(0, end));
}

struct Place {
  std::optional<std::size_t> Key;      // the key's line
  std::optional<std::size_t> Section;  // the last line in use of the first section of that name
};

Place Find(const SettingsFile& file, std::string_view section, std::string_view key) {
  Place place;
  bool inSection = false, inFirst = false;
  for (std::size_t i = 0; i < file.Lines.size(); ++i) {
    const std::string_view line = WithoutMark(file.Lines[i]);
    if (const auto name = SectionOf(line)) {
      inSection = SameName(*name, section);
      inFirst = inSection && !place.Section;
    }
    if (inFirst && !Trim(line).empty()) place.Section = i;
    const std::size_t equals = line.find('=');
    if (!inSection || SectionOf(line) || equals == std::string_view::npos) continue;
    if (!SameName(Trim(line.substr(0, equals)), key)) continue;
    place.Key = i;
    return place;
  }
  return place;
}

std::string_view LineEnd(const SettingsFile& file) {
  return !file.Lines.empty() && file.Lines.front().ends_with("\r\n") ? "\r\n" : "\n";
}

void InsertLine(SettingsFile& file, std::size_t at, const std::string& text) {
  const std::string_view end = LineEnd(file);
  if (at > 0 && !file.Lines[at - 1].ends_with('\n')) file.Lines[at - 1] += end;
  file.Lines.insert(file.Lines.begin() + static_cast<std::ptrdiff_t>(at), text + std::string(end));
}

}  // namespace

SettingsFile ReadSettingsFile(const std::filesystem::path& path) {
  SettingsFile file;
  std::string text;
  const std::error_code failure = ReadWholeFile(path, kSizeLimit, text);
  if (failure == std::errc::no_such_file_or_directory || failure == std::errc::not_a_directory)
    return file;
  const bool isText = text.find('\0') == std::string::npos;
  if (failure || !isText) {
    file.ReadError = Tr("The settings file %1 cannot be read: %2", path.string(),
                        failure ? failure.message() : Tr("it is not plain text"));
    return file;
  }
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    file.Lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return file;
}

std::optional<std::string_view> ReadValue(const SettingsFile& file, std::string_view section,
                                          std::string_view key) {
  const Place place = Find(file, section, key);
  if (!place.Key) return std::nullopt;
  return ValueIn(file.Lines[*place.Key]);
}

std::int64_t ReadInt(const SettingsFile& file, std::string_view section, std::string_view key,
                     std::int64_t defaultValue) {
  const std::optional<std::string_view> value = ReadValue(file, section, key);
  if (!value) return defaultValue;
  std::string_view digits = *value;
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
  std::int64_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc::result_out_of_range) return number;
  using Limits = std::numeric_limits<std::int64_t>;
  return digits.starts_with('-') ? Limits::min() : Limits::max();
}

void WriteValue(SettingsFile& file, std::string_view section, std::string_view key,
                std::string_view value) {
  const Place place = Find(file, section, key);
  if (place.Key) {
    std::string& line = file.Lines[*place.Key];
    const std::string_view old = ValueIn(line);
    const auto at = static_cast<std::size_t>(old.data() - line.data());
    // A remark right behind the '=' would become a part of the value.
    const char* blank = at < line.size() && (line[at] == ';' || line[at] == '#') ? " " : "";
    line.replace(at, old.size(), std::string(value) + blank);
    return;
  }
  const std::string newLine = std::string(key) + "=" + std::string(value);
  if (place.Section) return InsertLine(file, *place.Section + 1, newLine);
  if (!file.Lines.empty() && !Trim(WithoutMark(file.Lines.back())).empty())
    InsertLine(file, file.Lines.size(), "");
  InsertLine(file, file.Lines.size(), "[" + std::string(section) + "]");
  InsertLine(file, file.Lines.size(), newLine);
}

void SaveSettingsFile(const std::filesystem::path& path, const SettingsFile& file) {
  if (!file.ReadError.empty()) throw RunTimeError(file.ReadError);
  std::string text;
  for (const std::string& line : file.Lines) text += line;
  std::error_code failure;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), failure);
  if (!failure) failure = ReplaceWholeFile(path, text);
  if (failure) {
    throw RunTimeError(
        Tr("The settings file %1 cannot be written: %2", path.string(), failure.message()));
  }
}

}  // namespace graphize
