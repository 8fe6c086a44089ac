#include "base/number_pattern.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/numbers.h"

namespace graphize {

namespace {

/// A pattern taken apart: how many digits must and may stand at each place.
struct Places {
  int Integer = 0;       // '#' and '0' before the point
  int IntegerMust = 0;   // the places from the first '0' on
  int Fraction = 0;      // '0' and '#' after the point
  int FractionMust = 0;  // the places up to the last '0'
  bool Point = false;
  bool Exponent = false;
  int ExponentMust = 0;  // digits of the exponent that always print
};

Places TakeApart(std::string_view pattern) {
  Places places;
  std::size_t at = 0;
  for (; at < pattern.size() && (pattern[at] == '#' || pattern[at] == '0'); ++at) {
    ++places.Integer;
    if (pattern[at] == '0' || places.IntegerMust > 0) ++places.IntegerMust;
  }
  if (at < pattern.size() && pattern[at] == '.') {
    places.Point = true;
    for (++at; at < pattern.size() && (pattern[at] == '#' || pattern[at] == '0'); ++at) {
      ++places.Fraction;
      if (pattern[at] == '0') places.FractionMust = places.Fraction;
    }
  }
  if (at + 1 < pattern.size() && pattern[at] == 'E' && pattern[at + 1] == '+') {
    places.Exponent = true;
    bool must = false;
    for (at += 2; at < pattern.size() && (pattern[at] == '#' || pattern[at] == '0'); ++at) {
      must = must || pattern[at] == '0';
      if (must) ++places.ExponentMust;
    }
  }
  return places;
}

/// With `decimals` digits behind the point, exact, halves to even. A pattern may have any number.
std::string TextOf(double value, std::chars_format notation, int decimals) {
  constexpr std::size_t kBefore = 330;  // the digits before the point, sign and exponent
  std::string text(kBefore + static_cast<std::size_t>(decimals), '\0');
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, notation, decimals);
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

/// Puts the digits of a fixed text ("12.50") into the places: pads or drops leading zeros, drops
/// trailing zeros that need not stand.
std::string IntoPlaces(const std::string& text, const Places& places) {
  const std::size_t point = text.find('.');
  std::string integer = text.substr(0, point);
  std::string fraction = point == std::string::npos ? "" : text.substr(point + 1);
  integer.erase(0, integer.find_first_not_of('0'));
  if (static_cast<int>(integer.size()) < places.IntegerMust)
    integer.insert(0, static_cast<std::size_t>(places.IntegerMust) - integer.size(), '0');
  while (static_cast<int>(fraction.size()) > places.FractionMust && fraction.back() == '0')
    fraction.pop_back();
  return places.Point ? integer + "." + fraction : integer;
}

std::string WithExponent(double magnitude, const Places& places) {
  // The mantissa fills the integer places; a pattern without any still shows one digit.
  const int integerDigits = std::max(places.Integer, 1);
  int exponent = 0;
  std::string digits;
  const int wanted = integerDigits + places.Fraction;
  if (magnitude > 0) {
    const std::string text = TextOf(magnitude, std::chars_format::scientific, wanted - 1);
    const std::size_t e = text.find('e');
    std::from_chars(text.data() + e + (text[e + 1] == '+' ? 2 : 1), text.data() + text.size(),
                    exponent);
    for (const char c : text.substr(0, e))
      if (c != '.') digits += c;
    exponent -= integerDigits - 1;
  } else {
    digits.assign(static_cast<std::size_t>(wanted), '0');
  }
  digits.insert(static_cast<std::size_t>(integerDigits), ".");
  std::string exponentText = std::to_string(std::abs(exponent));
  if (exponent == 0) exponentText.clear();
  if (static_cast<int>(exponentText.size()) < std::max(places.ExponentMust, 1))
    exponentText.insert(
        0, static_cast<std::size_t>(std::max(places.ExponentMust, 1)) - exponentText.size(), '0');
  return IntoPlaces(digits, places) + "E" + (exponent < 0 ? "-" : "+") + exponentText;
}

}  // namespace

std::string FormatNumber(float value, std::string_view pattern) {
  if (std::isnan(value)) return "NaN";
  const bool negative = std::signbit(value);
  if (std::isinf(value)) return negative ? "-Inf" : "Inf";
  const Places places = TakeApart(pattern);
  const double magnitude = std::fabs(static_cast<double>(value));
  std::string text =
      places.Exponent
          ? WithExponent(magnitude, places)
          : IntoPlaces(TextOf(magnitude, std::chars_format::fixed, places.Fraction), places);
  return (negative && value != 0 ? "-" : "") + text;
}

int MissingPlaces(float value, std::string_view pattern, double step) {
  if (!std::isfinite(value)) return 0;
  const Places places = TakeApart(pattern);
  int exponent = 0;
  if (places.Exponent) {
    if (value == 0) return 0;  // is exact, and its neighbours have exponents of their own
    exponent = static_cast<int>(std::floor(std::log10(std::fabs(static_cast<double>(value))))) -
               (std::max(places.Integer, 1) - 1);
  }
  // A step of 0.01 in single precision is not quite 0.01.
  constexpr double kRounding = 1e-4;
  const double missing = exponent - places.Fraction - std::log10(step);
  return std::max(static_cast<int>(std::ceil(missing - kRounding)), 0);
}

std::string RoundedText(double value, double parts) {
  const double rounded = std::round(value * parts) / parts;
  return ShortestText(rounded == 0 ? 0.0 : rounded);
}

}  // namespace graphize
