#pragma once

#include <cstdint>

#include "desktop/desktop.h"
#include "workspace/step.h"

namespace graphize {

/// The desktop of an operation that can be stopped. It notes at which of the operation's questions
/// Escape came to be held or let go, and whether the user was told something; given how the
/// operation went before, it answers the same questions the same way and does not tell again.
class WatchedDesktop {
 public:
  WatchedDesktop(const Desktop& desktop, Interruptions before);
  WatchedDesktop(const WatchedDesktop&) = delete;
  WatchedDesktop& operator=(const WatchedDesktop&) = delete;

  /// To be handed to the operation.
  const Desktop& Callbacks() const { return callbacks_; }
  /// How it went; Failed is not known here.
  const Interruptions& Went() const { return went_; }

 private:
  Desktop callbacks_;
  Interruptions went_;
  std::int64_t asked_ = 0;
};

}  // namespace graphize
