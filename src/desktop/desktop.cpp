#include "desktop/desktop.h"

namespace graphize {

void Tell(const Desktop& desktop, const std::string& text, MessageIcon icon) {
  desktop.ShowMessage({.Text = text, .Icon = icon});
}

bool AskYesNo(const Desktop& desktop, const std::string& text) {
  return desktop.ShowMessage(
             {.Text = text, .Icon = MessageIcon::Question, .Buttons = MessageButtons::YesNo}) ==
         Answer::Yes;
}

}  // namespace graphize
