#include "base/cores.h"

#include <sched.h>

#include <algorithm>
#include <thread>

namespace graphize {

int CoreCount() {
  cpu_set_t cores;
  if (sched_getaffinity(0, sizeof cores, &cores) == 0) return CPU_COUNT(&cores);
  // More than a set can tell.
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

}  // namespace graphize
