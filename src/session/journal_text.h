#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "session/history.h"
#include "workspace/workspace.h"

namespace graphize {

/// The curves that a journal has told in full: those that are not active never change.
using ToldCurves = std::vector<std::pair<std::weak_ptr<const PointStore>, int>>;

/// What of the document is to be told.
struct JournalEntry {
  int Number = 0;         // of the event in its journal, from 1
  std::int64_t Time = 0;  // seconds since 1970
  bool Whole = false;     // all of it, whatever the delta says
};
std::string EventText(Workspace& ws, const DocumentDelta& delta, const JournalEntry& entry,
                      ToldCurves& told);
/// The event of a session that the user has ended.
std::string ClosedEvent(const JournalEntry& entry);

}  // namespace graphize
