#include "desktop/desktop.h"

#include <algorithm>
#include <vector>

#include "base/translation.h"

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
    if (types.empty())
      types = ending;
    else if (&ending == &endings.back())
      types = Tr("%1 or %2", types, ending);
    else
      types.append(", ").append(ending);
  }
  return Tr("The name must end in one of the types %1.", types);
}

void Tell(const Desktop& desktop, const std::string& text, MessageIcon icon) {
  desktop.ShowMessage({.Text = text, .Icon = icon});
}

void Tell(const Desktop& desktop, const char* english, MessageIcon icon) {
  Tell(desktop, Tr(english), icon);
}

bool AskYesNo(const Desktop& desktop, const std::string& text) {
  return desktop.ShowMessage(
             {.Text = text, .Icon = MessageIcon::Question, .Buttons = MessageButtons::YesNo}) ==
         Answer::Yes;
}

bool AskYesNo(const Desktop& desktop, const char* english) {
  return AskYesNo(desktop, Tr(english));
}

}  // namespace graphize
