#pragma once

#include <functional>

namespace graphize {

/// Called now and then by long work: false means stop.
using KeepGoing = std::function<bool()>;

}  // namespace graphize
