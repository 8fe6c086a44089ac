#include "data/number_format.h"

#include <utility>

#include "base/number_pattern.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

void CheckPlaces(const char* setting, int places, int least) {
  if (places >= least && places <= kMaxPlaces) return;
  throw RunTimeError(
      Tr("The setting %1 is %2; it must be from %3 to %4.", setting, places, least, kMaxPlaces));
}

std::string Pattern(int digits, int decimals, bool exponent) {
  std::string pattern(static_cast<std::size_t>(digits - 1), '#');
  pattern += "0.";
  pattern.append(static_cast<std::size_t>(decimals), '0');
  if (exponent) pattern += "E+00";
  return pattern;
}

}  // namespace

void BuildFormats(const Settings& settings, NumberFormats& formats) {
  CheckPlaces("XDigits", settings.XDigits, 1);
  CheckPlaces("XDecimals", settings.XDecimals, 0);
  CheckPlaces("YDigits", settings.YDigits, 1);
  CheckPlaces("YDecimals", settings.YDecimals, 0);

  static constexpr const char* kDelimiters[] = {"\t", ",", " ", ";"};
  NumberFormats built;
  built.X = Pattern(settings.XDigits, settings.XDecimals, settings.XExp);
  built.Y = Pattern(settings.YDigits, settings.YDecimals, settings.YExp);
  const int delimiter = settings.Delimiter;
  built.Delimiter = delimiter >= 0 && delimiter <= 3 ? kDelimiters[delimiter] : formats.Delimiter;
  formats = std::move(built);
}

std::string FormatValue(float value, std::string_view pattern, bool decimalPoint) {
  std::string text = FormatNumber(value, pattern);
  if (decimalPoint) return text;  // the rendered separator is always a point
  if (const std::size_t point = text.find('.'); point != std::string::npos) text[point] = ',';
  return text;
}

}  // namespace graphize
