#pragma once

#include <system_error>
#include <thread>
#include <utility>

namespace graphize {

/// Destroys what holds much memory, or a process with it, on a thread beside: the system takes a
/// tenth of a second to take back a gigabyte, and somebody has pressed Escape.
template <class... Owners>
void FreeBeside(Owners... owners) {
  try {
    std::thread([... owned = std::move(owners)] {}).detach();
  } catch (const std::system_error&) {
    // No thread to be had: it has been destroyed here.
  }
}

}  // namespace graphize
