#include "base/translation.h"

namespace graphize {

namespace {

Translator chosen = nullptr;

std::string Translated(const char* english, long long count) {
  return chosen != nullptr ? chosen(english, count) : std::string();
}

}  // namespace

void SetTranslator(Translator translator) {
  chosen = translator;
}

Translator ChosenTranslator() {
  return chosen;
}

std::string Tr(const char* english) {
  std::string text = Translated(english, -1);
  return text.empty() ? english : text;
}

std::string TrCount(const char* one, const char* several, long long count) {
  std::string text = Translated(one, count);
  if (text.empty()) text = count == 1 ? one : several;
  return Fill(text, {std::to_string(count)});
}

std::string Fill(const std::string& text, std::span<const std::string> values) {
  std::string filled;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t index =
        text[i] == '%' && i + 1 < text.size() ? static_cast<std::size_t>(text[i + 1] - '1') : 9;
    if (index >= values.size()) {
      filled += text[i];
      continue;
    }
    filled += values[index];
    ++i;
  }
  return filled;
}

}  // namespace graphize
