#pragma once

#include <string>
#include <string_view>

#include "settings/settings.h"

namespace graphize {

/// How points become text: derived from the settings whenever these change.
struct NumberFormats {
  std::string X = "0.00000E+00";  // pattern of every X value (base/number_pattern.h)
  std::string Y = "0.00000E+00";
  std::string Delimiter = "\t";  // between X and Y
};

/// Digits are 1 to kMaxPlaces, decimals 0 to kMaxPlaces. A single-precision value has no more than
/// 39 digits before the point; larger numbers come from a damaged settings file only.
inline constexpr int kMaxPlaces = 100;

/// Derives patterns and delimiter. A `Delimiter` outside 0..3 leaves the delimiter as it was. A
/// count of places out of range is a RunTimeError that names the setting; nothing is changed then.
void BuildFormats(const Settings& settings, NumberFormats& formats);

/// `value` by `pattern`, with '.' as the decimal separator or, without decimalPoint, ','.
std::string FormatValue(float value, std::string_view pattern, bool decimalPoint);

}  // namespace graphize
