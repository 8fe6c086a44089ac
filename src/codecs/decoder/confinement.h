#pragma once

#include "codecs/decode_protocol.h"

namespace graphize {

/// Takes from this process whatever decoding does not need, for good: other files, other programs,
/// the network, other processes, and more than `seconds` of processor time. What it needs of files
/// is open or loaded before. The file `channel`, by which it is ended, stays open. What the system
/// refuses is left out; gives the layers that hold (DecodeLayer). Only those of `wanted` are tried.
unsigned Confine(int channel, int seconds, unsigned wanted = kAllLayers);

}  // namespace graphize
