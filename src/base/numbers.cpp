#include "base/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/run_time_error.h"

namespace graphize {

namespace {

constexpr const char* kBlanks = " \t\r\n";

template <typename Real>
std::string Shortest(Real value) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end);
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The text with its decimal comma and its Unicode minus signs in ASCII.
std::string WithPoint(std::string_view text) {
  constexpr std::string_view kMinus = "\u2212";
  std::string result(text);
  for (std::size_t at = 0; (at = result.find(kMinus, at)) != std::string::npos;)
    result.replace(at, kMinus.size(), "-");
  if (std::ranges::count(result, ',') == 1 && result.find('.') == std::string::npos)
    std::ranges::replace(result, ',', '.');
  return result;
}

/// "1,000" or "-20,500": one to three digits, the first not 0, a comma and three digits.
bool MayGroupThousands(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return false;
  const auto digits = [](std::string_view part) {
    std::size_t count = 0;
    while (count < part.size() && IsDigit(part[count])) ++count;
    return count;
  };
  const std::size_t start = std::min(text.find_first_of("0123456789"), comma);
  const std::size_t before = comma - start;
  return before >= 1 && before <= 3 && text[start] != '0' && digits(text.substr(start)) == before &&
         digits(text.substr(comma + 1)) == 3;
}

struct LeadingPart {
  double Value;
  std::size_t End;  // behind it in the text
};

std::optional<LeadingPart> FindLeadingPart(std::string_view all) {
  const std::size_t at = all.find_first_not_of(kBlanks);
  if (at == std::string_view::npos) return std::nullopt;
  std::string_view text = all.substr(at);
  const bool negative = text.front() == '-';
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  // from_chars also reads "inf" and "nan", which are words here.
  const bool digitFirst = !text.empty() && IsDigit(text[0]);
  const bool pointFirst = text.size() > 1 && text[0] == '.' && IsDigit(text[1]);
  if (!digitFirst && !pointFirst) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Out of range is both "too large" and "too small": the exponent's sign tells.
    const std::string_view read(text.data(), static_cast<std::size_t>(end - text.data()));
    const std::size_t exponent = read.find_first_of("eE");
    const bool tiny = exponent != std::string_view::npos
                          ? read.substr(exponent + 1).starts_with('-')
                          : read.starts_with("0") || pointFirst;
    value = tiny ? 0 : std::numeric_limits<double>::infinity();
  }
  return LeadingPart{negative ? -value : value, static_cast<std::size_t>(end - all.data())};
}

}  // namespace

void ThrowOverflow() {
  throw RunTimeError("Overflow");
}

float ToSingle(double value) {
  const auto single = static_cast<float>(value);
  if (std::isinf(single)) throw RunTimeError("Overflow");
  return single;
}

std::optional<double> FindLeadingNumber(std::string_view text) {
  const std::optional<LeadingPart> part = FindLeadingPart(WithPoint(text));
  return part ? std::optional(part->Value) : std::nullopt;
}

double LeadingNumber(std::string_view text) {
  return FindLeadingNumber(text).value_or(0);
}

TypedNumber ReadTyped(std::string_view text) {
  const std::string pointed = WithPoint(text);
  const std::optional<LeadingPart> part = FindLeadingPart(pointed);
  if (!part) return {};
  const bool rest = pointed.find_first_not_of(kBlanks, part->End) != std::string::npos;
  return {part->Value, !rest && !MayGroupThousands(text)};
}

std::string ShortestText(float value) {
  return Shortest(value);
}

std::string ShortestText(double value) {
  return Shortest(value);
}

double DecimalValue(float value) {
  if (!std::isfinite(value)) return value;
  char buffer[32];
  double decimal = 0;
  std::from_chars(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr, decimal);
  return decimal;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

std::string TrimRight(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return std::string(text.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

}  // namespace graphize
