#include "tracing/pen.h"

#include <utility>

#include "base/numbers.h"
#include "raster/line_walk.h"

namespace graphize {

namespace {

void Stamp(Pen& pen, PlotImage& image, int x, int y) {
  // A press that erases nothing is no edit: the undo of the one before it stays.
  if (!std::exchange(pen.Begun, true)) BeginEdit(image);
  if (pen.Tool == PenTool::Draw) {
    EditDot(image, x, y, pen.BlockSize, kBlack);
    return;
  }
  const int h = pen.BlockSize + 1;
  EditBox(image, x - h, y - h, x + h, y + h, kWhite);
}

}  // namespace

void PressPen(Pen& pen, PlotImage& image, PenTool tool, float x, float y, std::int32_t blockSize) {
  const std::int16_t column = ToInt16(x), row = ToInt16(y);
  pen = {true, tool, column, row, column, row, blockSize, {{column, row}}};
  if (tool == PenTool::Draw) Stamp(pen, image, column, row);
}

void DragPen(Pen& pen, PlotImage& image, float x, float y) {
  if (!pen.Down) return;
  const std::int16_t column = ToInt16(x), row = ToInt16(y);
  if (pen.Begun) ClearMarks(image);  // a command by key may have drawn some meanwhile
  WalkLine(pen.LastX, pen.LastY, column, row, [&](int i, int j) { Stamp(pen, image, i, j); });
  pen.LastX = column;
  pen.LastY = row;
  pen.Way.emplace_back(column, row);
}

void ReleasePen(Pen& pen, PlotImage& image) {
  if (!pen.Down) return;
  pen.Down = false;
  if (pen.Begun) ClearMarks(image);
  Stamp(pen, image, pen.PressX, pen.PressY);
}

}  // namespace graphize
