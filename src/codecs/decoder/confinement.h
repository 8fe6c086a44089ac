#pragma once

namespace graphize {

/// Takes from this process whatever decoding does not need, for good: other files, other programs,
/// the network, other processes, and more than `seconds` of processor time. What it needs of files
/// is open or loaded before; it can still receive open files. What the system refuses is left out;
/// gives the layers that hold (DecodeLayer).
unsigned Confine(int seconds);

}  // namespace graphize
