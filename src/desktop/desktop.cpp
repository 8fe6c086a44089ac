#include "desktop/desktop.h"

#include <algorithm>
#include <vector>

namespace graphize {

namespace {

/// The endings of "Name|*.a;*.b|Name|*.c|": "a", "b", "c".
std::vector<std::string> EndingsOf(const std::string& filters) {
  std::vector<std::string> endings;
  for (std::size_t star = filters.find("*."); star != std::string::npos;
       star = filters.find("*.", star + 1)) {
    const std::size_t start = star + 2;
    const std::string ending = filters.substr(start, filters.find_first_of(");|", start) - start);
    if (std::ranges::find(endings, ending) == endings.end()) endings.push_back(ending);
  }
  return endings;
}

char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string Refusal(const FileQuestion& question, const std::filesystem::path& answer) {
  if (!question.OnlyFilterTypes) return {};
  std::string own = answer.extension().string();
  std::ranges::transform(own, own.begin(), Small);
  std::string types;
  const std::vector<std::string> endings = EndingsOf(question.Filters);
  for (const std::string& ending : endings) {
    if (own == "." + ending) return {};
    types += (types.empty() ? "" : &ending == &endings.back() ? " or " : ", ") + ending;
  }
  return "The name must end in one of the types " + types + ".";
}

void Tell(const Desktop& desktop, const std::string& text, MessageIcon icon) {
  desktop.ShowMessage({.Text = text, .Icon = icon});
}

bool AskYesNo(const Desktop& desktop, const std::string& text) {
  return desktop.ShowMessage(
             {.Text = text, .Icon = MessageIcon::Question, .Buttons = MessageButtons::YesNo}) ==
         Answer::Yes;
}

}  // namespace graphize
