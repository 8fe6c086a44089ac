#include "settings/scanner_source.h"

#include <charconv>

namespace graphize {

namespace {

constexpr const char* kSection = "Scanner";
constexpr const char* kKey = "Source";

bool MustBeCoded(char c) {
  return static_cast<unsigned char>(c) <= ' ' || c == '%' || c == ';' || c == '#' || c == '\x7f';
}

}  // namespace

std::string ReadScannerSource(const SettingsFile& file) {
  const std::string_view value = ReadValue(file, kSection, kKey).value_or("");
  std::string name;
  for (std::size_t i = 0; i < value.size(); ++i) {
    unsigned char code = 0;
    const char* digits = value.data() + i + 1;
    const bool isCode = value[i] == '%' && i + 2 < value.size() &&
                        std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
    name += isCode ? static_cast<char>(code) : value[i];
    if (isCode) i += 2;
  }
  return name;
}

void WriteScannerSource(SettingsFile& file, std::string_view name) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string value;
  for (const char c : name) {
    const auto code = static_cast<unsigned char>(c);
    if (MustBeCoded(c))
      value += {'%', kDigits[code >> 4], kDigits[code & 15]};
    else
      value += c;
  }
  WriteValue(file, kSection, kKey, value);
}

}  // namespace graphize
