#pragma once

namespace graphize::accuracy {

/// Of the plots of docs/accuracy.md: seeds that the check was never tuned by.
inline constexpr unsigned kInkSeed = 30000;

/// Traces and reads plots with crossings, frames, labels, light colours and dashes, drawn from
/// `seed` on, holds the points against the picture and prints as tables how many wrong ones are
/// flagged, and how many good ones. How many targets are missed.
int PrintInkTables(unsigned seed);

}  // namespace graphize::accuracy
