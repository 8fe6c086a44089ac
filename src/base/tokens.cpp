#include "base/tokens.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace graphize {

std::optional<std::vector<std::string>> Tokenize(std::string_view line) {
  std::vector<std::string> words;
  std::size_t i = 0;
  while (i < line.size()) {
    if (line[i] == ' ' || line[i] == '\t') {
      ++i;
      continue;
    }
    std::string& word = words.emplace_back();
    if (line[i] != '"') {
      for (; i < line.size() && line[i] != ' ' && line[i] != '\t'; ++i) word += line[i];
      continue;
    }
    for (++i; i < line.size() && line[i] != '"'; ++i) {
      const bool escaped = line[i] == '\\' && i + 1 < line.size();
      if (escaped) ++i;
      word += escaped && line[i] == 'n' ? '\n' : line[i];
    }
    if (i == line.size()) return std::nullopt;
    ++i;  // the closing quote
  }
  return words;
}

std::string Quote(std::string_view text) {
  if (!text.empty() && text.find_first_of(" \t\r\n\"\\#") == std::string_view::npos)
    return std::string(text);
  std::string word = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '\n') word += '\\';
    word += c == '\n' ? 'n' : c;
  }
  return word + '"';
}

std::optional<double> WholeNumberText(std::string_view text) {
  double number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size() || !std::isfinite(number))
    return std::nullopt;
  return number;
}

std::optional<int> IntegerText(std::string_view text, int least, int most) {
  int number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size() || number < least || number > most)
    return std::nullopt;
  return number;
}

bool NumbersInOrder(std::string_view a, std::string_view b) {
  const std::string_view first = a, second = b;
  while (!a.empty() && !b.empty()) {
    const auto takeDigits = [](std::string_view& text) {
      const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
      std::string_view digits = text.substr(0, end);
      text.remove_prefix(end);
      digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
      return digits;
    };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (!isDigit(a.front()) || !isDigit(b.front())) {
      if (a.front() != b.front()) return a.front() < b.front();
      a.remove_prefix(1);
      b.remove_prefix(1);
      continue;
    }
    const std::string_view one = takeDigits(a), other = takeDigits(b);
    if (one.size() != other.size()) return one.size() < other.size();
    if (one != other) return one < other;
  }
  if (a.empty() != b.empty()) return a.empty();
  return first < second;
}

}  // namespace graphize
