#pragma once

#include <future>
#include <system_error>

namespace graphize {

/// Runs `work` on a thread beside. Where the system gives none (a limit of processes), it waits for
/// whoever asks for its result and runs there; until then wait_for gives `deferred`.
template <class Work>
auto StartBeside(const Work& work) {
  try {
    return std::async(std::launch::async, work);
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, work);
  }
}

}  // namespace graphize
