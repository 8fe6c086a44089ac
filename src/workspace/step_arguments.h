#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/desktop.h"

namespace graphize {

/// The words of a step behind its name, taken one by one. What is missing or makes no sense is
/// remembered, and a value in range comes instead; the step is not done then.
class StepArguments {
 public:
  explicit StepArguments(std::vector<std::string> words);

  std::string Word();
  /// One of `names`, as its index.
  int Choice(std::initializer_list<const char*> names);
  /// A number, the whole word.
  std::string Number();
  int Integer(int least, int most);

  bool IsNext(std::string_view word) const;
  /// Takes the word, when it is the next one.
  bool Has(std::string_view word);
  bool AtEnd() const { return next_ >= words_.size(); }

  void Fail(const std::string& problem);
  /// Whether all that was asked for was there, and nothing more.
  bool Good();
  /// The first thing that was wrong; empty when nothing was.
  const std::string& Problem() const { return problem_; }

 private:
  std::vector<std::string> words_;
  std::size_t next_ = 0;
  std::string problem_;
};

/// A desktop on which an operation goes the way that a StepWatch saw: Escape is held and let go at
/// the same questions, and what the user was told then is not told again. Takes the words that it
/// needs from the arguments.
class ReplayedDesktop {
 public:
  ReplayedDesktop(const Desktop& desktop, StepArguments& arguments);
  ReplayedDesktop(const ReplayedDesktop&) = delete;
  ReplayedDesktop& operator=(const ReplayedDesktop&) = delete;
  operator const Desktop&() const { return callbacks_; }  // NOLINT: reads as the desktop it is

 private:
  Desktop callbacks_;
  std::vector<int> changes_;  // numbers of questions: held, let go, held ...
  int asked_ = 0;
};

}  // namespace graphize
