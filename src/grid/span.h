#pragma once

namespace graphize {

/// Whole numbers First..Last, both included; empty when First > Last.
struct Span {
  int First = 0, Last = -1;

  int Length() const { return Last - First + 1; }
  bool IsEmpty() const { return First > Last; }
  bool Contains(int i) const { return i >= First && i <= Last; }
};

}  // namespace graphize
