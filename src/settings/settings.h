#pragma once

#include <cstdint>

namespace graphize {

/// All options. Filled from the settings file or with these defaults; every other part only reads.
struct Settings {
  std::int16_t Zoom = 1;         // 1 shows the zoom window
  std::int16_t RefreshList = 0;  // any non-zero number: redraw the list after every point
  std::int16_t XJump = 50;       // pixels
  std::int16_t YJump = 50;       // pixels
  std::int32_t TraceColor = 14;  // palette index
  std::int32_t BlockColor = 4;   // palette index
  std::int16_t Trace = 0;        // 0 edges, 1 smooth, 2 scan
  std::int16_t CursorType = 0;   // 0 the default cursor, k the k-th cursor picture

  bool DecimalPoint = true;  // false: comma
  std::int16_t XDigits = 1;  // integer places, at least 1
  std::int16_t XDecimals = 5;
  bool XExp = true;
  std::int16_t YDigits = 1;
  std::int16_t YDecimals = 5;
  bool YExp = true;
  std::int16_t Delimiter = 0;  // 0 TAB, 1 comma, 2 space, 3 semicolon

  bool SubPixelClicks = false;   // above 1:1 clicks tell positions within pixels
  std::int16_t Threshold = 128;  // 1 to 255; the reduction makes black what is darker
  std::int16_t NextLine = 1;     // 1 shows what comes next above the picture

  std::int16_t SnapMode = 0;       // 0 none, 1 to X, 2 to Y, 3 centre
  std::int16_t SnapDistance = 10;  // pixels
};

}  // namespace graphize
