#pragma once

namespace graphize::accuracy {

/// Traces plots with crossings, frames, labels, light colours and dashes, holds the points against
/// the picture and prints as a table how many wrong traces are flagged, and how many good ones. How
/// many of the two targets are missed.
int PrintInkTable();

}  // namespace graphize::accuracy
