#include "workspace/step_arguments.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/tokens.h"

namespace graphize {

StepArguments::StepArguments(std::vector<std::string> words) : words_(std::move(words)) {}

std::string StepArguments::Word() {
  if (next_ < words_.size()) return words_[next_++];
  Fail("something is missing at the end");
  return {};
}

int StepArguments::Choice(std::initializer_list<const char*> names) {
  const std::string word = Word();
  const auto* found = std::find(names.begin(), names.end(), word);
  if (found != names.end()) return static_cast<int>(found - names.begin());
  Fail("\"" + word + "\" is not known here");
  return 0;
}

std::string StepArguments::Number() {
  const std::string word = Word();
  if (!WholeNumberText(word)) Fail("\"" + word + "\" is no number");
  return word;
}

int StepArguments::Integer(int least, int most) {
  const std::string word = Word();
  if (const auto number = IntegerText(word, least, most)) return *number;
  Fail("\"" + word + "\" is no whole number from " + std::to_string(least) + " to " +
       std::to_string(most));
  return least;
}

bool StepArguments::IsNext(std::string_view word) const {
  return next_ < words_.size() && words_[next_] == word;
}

bool StepArguments::Has(std::string_view word) {
  const bool has = IsNext(word);
  if (has) ++next_;
  return has;
}

void StepArguments::Fail(const std::string& problem) {
  if (problem_.empty()) problem_ = problem;
}

bool StepArguments::Good() {
  if (!AtEnd()) Fail("\"" + words_[next_] + "\" is too much");
  return problem_.empty();
}

ReplayedDesktop::ReplayedDesktop(const Desktop& desktop, StepArguments& arguments)
    : callbacks_(desktop) {
  if (arguments.Has("stop")) {
    while (!arguments.AtEnd() && !arguments.IsNext("told"))
      changes_.push_back(arguments.Integer(1, std::numeric_limits<int>::max()));
    callbacks_.EscapeHeld = [this] {
      ++asked_;
      const auto passed = std::upper_bound(changes_.begin(), changes_.end(), asked_);
      return (passed - changes_.begin()) % 2 == 1;
    };
  }
  if (arguments.Has("told")) callbacks_.ShowMessage = [](const Message&) { return Answer::Ok; };
}

}  // namespace graphize
