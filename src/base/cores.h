#pragma once

namespace graphize {

/// How many cores this thread may use, at least 1: a container, or whoever shares out a large
/// machine, may have bound the program to a few of those that there are.
int CoreCount();

}  // namespace graphize
