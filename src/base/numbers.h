#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace graphize {

/// RunTimeError "Overflow".
[[noreturn]] void ThrowOverflow();

/// Whether `value` rounded half to even is an `Integer`: of the halves at the ends of its range the
/// lower one is.
template <typename Integer>
bool FitsRounded(double value) {
  return value >= static_cast<double>(std::numeric_limits<Integer>::min()) - 0.5 &&
         value < static_cast<double>(std::numeric_limits<Integer>::max()) + 0.5;
}

/// What ToInt16 and ToInt32 do, here because inner loops call them.
template <typename Integer>
Integer RoundedHalfToEven(double value) {
  if (!FitsRounded<Integer>(value)) ThrowOverflow();
  // From 2^52 on there are no fractions: the sum is rounded, in the default mode half to even.
  constexpr double kNoFractions = 0x1.8p52;
  return static_cast<Integer>(value + kNoFractions - kNoFractions);
}

/// `value` rounded half to even. Throws RunTimeError "Overflow" when the result does not fit, which
/// includes infinities and not-a-number.
inline std::int16_t ToInt16(double value) {
  return RoundedHalfToEven<std::int16_t>(value);
}
inline std::int32_t ToInt32(double value) {
  return RoundedHalfToEven<std::int32_t>(value);
}

/// `value` in single precision; RunTimeError "Overflow" when it is too large for it.
float ToSingle(double value);

/// The number that `text` starts with, after blanks: digits, one decimal point, an exponent;
/// nothing when there is none. "1e3" is 1000, "  -2.5 m" is -2.5. One comma is a decimal comma
/// where there is no point: "0,5" is 0.5. The Unicode minus is a minus. A number too large is an
/// infinity.
std::optional<double> FindLeadingNumber(std::string_view text);
/// The same with 0 for text without a number.
double LeadingNumber(std::string_view text);

/// A number that a person has typed.
struct TypedNumber {
  double Value = 0;  // LeadingNumber
  /// Whether the text says this number and nothing else. "1,000" does not: it may mean a thousand.
  bool IsPlain = false;
};
TypedNumber ReadTyped(std::string_view text);

/// The shortest decimal form that reads back as the same value: "5", "0.1", "-2.5e-07".
std::string ShortestText(float value);
std::string ShortestText(double value);

/// The decimal number of ShortestText in double precision: 0.1 and not 0.10000000149. Its own
/// ShortestText is the same text. What is not finite stays as it is.
double DecimalValue(float value);

/// The text with ASCII capitals made small; other bytes stay as they are.
std::string LowerCase(std::string_view text);

/// The text without blanks at its end.
std::string TrimRight(std::string_view text);

}  // namespace graphize
