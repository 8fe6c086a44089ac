#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "raster/plot_image.h"

namespace graphize {

enum class PenTool {
  Draw,   // left button: a connected black line as wide as the block size
  Erase,  // right button: white squares, block size + 1 pixels to every side
};

/// The draw/erase pen while a button is held.
struct Pen {
  bool Down = false;
  PenTool Tool = PenTool::Draw;
  std::int16_t PressX = 0, PressY = 0;                     // where the press began
  std::int16_t LastX = 0, LastY = 0;                       // where the drag has come
  std::int32_t BlockSize = 0;                              // the slider's value at the press
  std::vector<std::pair<std::int16_t, std::int16_t>> Way;  // from the press to where it has come
  bool Begun = false;  // has changed the picture since the press
};

/// Press, drag and release on the picture (row downward, rounded half to even). They change the
/// base picture and clear its marks; all from a press to its release is one step for UndoEdit.
/// Drawing begins with the press; erasing with the drag or, without one, with the release. A drag
/// or release without a press changes nothing.
///
/// Positions beyond 16 bits are the run-time error "Overflow".
void PressPen(Pen& pen, PlotImage& image, PenTool tool, float x, float y, std::int32_t blockSize);
void DragPen(Pen& pen, PlotImage& image, float x, float y);
void ReleasePen(Pen& pen, PlotImage& image);

}  // namespace graphize
