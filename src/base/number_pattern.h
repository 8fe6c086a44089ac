#pragma once

#include <string>
#include <string_view>

namespace graphize {

/// The patterns of the read-outs and dialogs.
inline constexpr std::string_view kReadingPattern = "#.00000E+###";
inline constexpr std::string_view kPercentPattern = "###.##";
inline constexpr std::string_view kCountPattern = "###0";

/// `value` as text by a spreadsheet-style pattern: an optional run of '#' and '0' for the integer
/// digits, optionally '.' and a run of '0' and '#' for the fraction, optionally "E+" and a run of
/// '0' and '#' for the exponent.
///
/// - '0' always prints a digit; '#' prints nothing for a leading (or, in the fraction, trailing)
///   zero. More integer digits than places are all printed.
/// - With an exponent the mantissa fills the pattern's integer places ("##0.0E+0" is not an
///   engineering notation: 1234 prints as 123.4E+1) and the exponent always has its sign.
/// - Rounding is of the value's exact decimal expansion, halves to even.
/// - The separator is always '.', also at the end of a pattern without fraction digits.
/// - Infinities and not-a-number print as "Inf", "-Inf" and "NaN".
std::string FormatNumber(float value, std::string_view pattern);

/// How many fraction places more `pattern` needs so that the last digit it prints of `value` is
/// worth no more than `step` > 0; 0 when it needs none.
int MissingPlaces(float value, std::string_view pattern, double step);

/// The shortest text of `value` rounded to the nearest of `parts` > 0 of a unit: of 1000 to
/// thousandths, halves away from 0. There is no "-0".
std::string RoundedText(double value, double parts);

}  // namespace graphize
