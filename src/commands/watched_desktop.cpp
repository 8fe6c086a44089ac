#include "commands/watched_desktop.h"

#include <algorithm>
#include <utility>

namespace graphize {

WatchedDesktop::WatchedDesktop(const Desktop& desktop, Interruptions before) : callbacks_(desktop) {
  if (before.IsEmpty()) {
    callbacks_.EscapeHeld = [this, held = desktop.EscapeHeld] {
      ++asked_;
      const bool now = held();
      if (now != (went_.Escape.size() % 2 == 1)) went_.Escape.push_back(asked_);
      return now;
    };
    callbacks_.ShowMessage = [this, show = desktop.ShowMessage](const Message& message) {
      went_.Told = true;
      return show(message);
    };
    return;
  }
  went_ = std::move(before);
  callbacks_.EscapeHeld = [this] {
    ++asked_;
    const auto passed = std::upper_bound(went_.Escape.begin(), went_.Escape.end(), asked_);
    return (passed - went_.Escape.begin()) % 2 == 1;
  };
  if (went_.Told || went_.Failed)
    callbacks_.ShowMessage = [](const Message&) { return Answer::Ok; };
}

}  // namespace graphize
