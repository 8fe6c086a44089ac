#include "finding_axes/label_text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "base/numbers.h"
#include "base/translation.h"

namespace graphize {

namespace {

bool IsDigits(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view WithoutSign(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  return text;
}

/// Groups of three behind one to three digits of which the first is no 0.
bool IsGrouped(std::string_view text, char separator) {
  std::size_t at = text.find(separator);
  if (at == text.npos || at == 0 || at > 3 || text.front() == '0' || !IsDigits(text.substr(0, at)))
    return false;
  for (; at != text.npos; at = text.find(separator, at + 1)) {
    const std::string_view group = text.substr(at + 1, 3);
    if (group.size() != 3 || !IsDigits(group)) return false;
    if (at + 4 < text.size() && text[at + 4] != separator) return false;
  }
  return true;
}

double ValueOf(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  if (text.starts_with('+')) text.erase(0, 1);
  return LeadingNumber(text);
}

/// What digits with points or commas mean.
std::vector<double> PlainMeanings(const std::string& text) {
  const std::string_view number = WithoutSign(text);
  const auto marks =
      std::count_if(number.begin(), number.end(), [](char c) { return c == '.' || c == ','; });
  std::vector<double> values;
  if (marks == 0) {
    if (IsDigits(number)) values.push_back(ValueOf(text));
    return values;
  }
  if (marks == 1) {
    const std::size_t at = number.find_first_of(".,");
    if (IsDigits(number.substr(at + 1)) && (at == 0 || IsDigits(number.substr(0, at))))
      values.push_back(ValueOf(text));
  }
  for (const char separator : {',', '.'}) {
    if (!IsGrouped(number, separator)) continue;
    std::string joined = text;
    std::erase(joined, separator);
    values.push_back(ValueOf(joined));
  }
  return values;
}

std::optional<int> WholeExponent(const std::string& text) {
  const std::string_view digits = WithoutSign(text);
  if (!IsDigits(digits) || digits.size() > 2) return std::nullopt;
  return static_cast<int>(ValueOf(text));
}

}  // namespace

std::vector<double> MeaningsOf(const std::string& text, const std::string& exponent) {
  if (!exponent.empty()) {
    const auto power = WholeExponent(exponent);
    if (!power || !text.ends_with("10")) return {};
    const std::string before = text.substr(0, text.size() - 2);
    std::vector<double> values;
    if (before.empty() || before == "+" || before == "-") {
      values.push_back(before == "-" ? -1 : 1);
    } else if (before.ends_with('x')) {
      values = PlainMeanings(before.substr(0, before.size() - 1));
    }
    for (double& value : values)
      value = LeadingNumber(ShortestText(value) + "e" + std::to_string(*power));
    return values;
  }
  const std::size_t e = text.find('e');
  if (e == text.npos) return PlainMeanings(text);
  const auto power = WholeExponent(text.substr(e + 1));
  if (!power) return {};
  std::vector<double> values = PlainMeanings(text.substr(0, e));
  for (double& value : values)
    value = LeadingNumber(ShortestText(value) + "e" + std::to_string(*power));
  return values;
}

std::string ShownLabel(const std::string& text, const std::string& exponent) {
  return exponent.empty() ? text : text + "^" + exponent;
}

const char* TextDoubt(const std::string& text) {
  const std::string_view number = WithoutSign(text);
  if (number.size() > 1 && number[0] == '0' && number[1] >= '0' && number[1] <= '9')
    return Marked("a number begins with 0 as if its decimal point were lost");
  if (text.starts_with('-') && ValueOf(text) == 0 && text.find_first_of("123456789") == text.npos)
    return Marked("a sign stands before 0");
  return nullptr;
}

}  // namespace graphize
