#include "settings/scanner_source.h"

#include <charconv>
#include <string_view>

namespace graphize {

namespace {

constexpr const char* kSection = "Scanner";
constexpr const char* kName = "Source";
constexpr const char* kLabel = "Label";

bool MustBeCoded(char c) {
  return static_cast<unsigned char>(c) <= ' ' || c == '%' || c == ';' || c == '#' || c == '\x7f';
}

std::string ReadText(const SettingsFile& file, const char* key) {
  const std::string_view value = ReadValue(file, kSection, key).value_or("");
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    unsigned char code = 0;
    const char* digits = value.data() + i + 1;
    const bool isCode = value[i] == '%' && i + 2 < value.size() &&
                        std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
    text += isCode ? static_cast<char>(code) : value[i];
    if (isCode) i += 2;
  }
  return text;
}

void WriteText(SettingsFile& file, const char* key, std::string_view text) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string value;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (MustBeCoded(c))
      value += {'%', kDigits[code >> 4], kDigits[code & 15]};
    else
      value += c;
  }
  WriteValue(file, kSection, key, value);
}

}  // namespace

ScannerSource ReadScannerSource(const SettingsFile& file) {
  return {ReadText(file, kName), ReadText(file, kLabel)};
}

void WriteScannerSource(SettingsFile& file, const ScannerSource& source) {
  WriteText(file, kName, source.Name);
  WriteText(file, kLabel, source.Label);
}

}  // namespace graphize
