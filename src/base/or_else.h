#pragma once

namespace graphize {

/// Runs `work`; where it throws, `back` makes good what came before it, and the error goes on.
template <class Work, class Back>
void OrElse(const Work& work, const Back& back) {
  try {
    work();
  } catch (...) {
    back();
    throw;
  }
}

}  // namespace graphize
