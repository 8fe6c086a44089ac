#include "base/tokens.h"

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

}  // namespace graphize
