#pragma once

#include <cstdint>

#include "tracing/extraction_context.h"

namespace graphize {

/// The rubber band of a scan, in picture pixels; (Left, Top) is where the drag began.
struct ScanRectangle {
  bool Active = false;  // the scan flag: drawn, and growing with the mouse
  std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
};

/// Press, move and release of the right button; positions are rounded half to even. A move without
/// a press changes nothing. The release is true when the rectangle is to be scanned, which one
/// dragged upward or to the left is not.
void StartScanRectangle(ScanRectangle& rectangle, float x, float y);
void MoveScanCorner(ScanRectangle& rectangle, float x, float y);
bool ReleaseScanRectangle(ScanRectangle& rectangle);

/// Marks the black pixels inside the rectangle, without its outermost two pixels, on a grid of
/// every X increment-th column and Y increment-th row, and captures them column by column from top
/// to bottom. An increment below 1 is taken as 1, and its box is corrected.
///
/// Escape ends the search, what was found by then, in the first columns, is captured; Escape anew,
/// or a full store, ends the capturing. The status panel then says how many were captured, and when
/// nothing was found; else it is as before. Increments and positions beyond 16 bits are the
/// run-time error "Overflow".
void Scan(const ExtractionContext& context, const ScanRectangle& rectangle);

}  // namespace graphize
