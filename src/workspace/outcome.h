#pragma once

#include <optional>
#include <string>
#include <utility>

#include "base/translation.h"

namespace graphize {

/// What came of a step.
struct Outcome {
  enum class How {
    Done,
    Nothing,  // there was nothing to do: no curve, no line, the user said no
    Refused,  // it cannot be done as things are; nothing has changed
    Stopped,  // by Escape; what was done by then stays
    Failed,   // a run-time error ended it; what was done by then stays
  };
  How Is = How::Done;
  std::string Reason;          // of all but Done, in plain words
  int Points = 0;              // that were captured
  std::optional<float> Area;   // of an integration
  std::string Remark;          // what else there is to tell of a reading, in plain words
  bool HiddenByMarks = false;  // marks of an earlier trace cover a part of the traced curve

  bool IsDone() const { return Is == How::Done || Is == How::Stopped; }
};

inline Outcome Refused(std::string reason) {
  return {.Is = Outcome::How::Refused, .Reason = std::move(reason)};
}
/// Translates the reason.
inline Outcome Refused(const char* english) {
  return Refused(Tr(english));
}
inline Outcome Nothing(std::string reason = {}) {
  return {.Is = Outcome::How::Nothing, .Reason = std::move(reason)};
}
inline Outcome Nothing(const char* english) {
  return Nothing(Tr(english));
}

}  // namespace graphize
