#pragma once

#include <thread>

namespace graphize {

/// Reads the system's fonts on a thread of its own: the first text of the window would wait for
/// them otherwise. The thread ends by itself; keep it until the program ends.
std::jthread ReadFonts();

}  // namespace graphize
