#include "tracing/pen.h"

#include "base/numbers.h"
#include "raster/line_walk.h"

namespace graphize {

namespace {

void Stamp(const Pen& pen, PlotImage& image, int x, int y) {
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
  BeginEdit(image);
  if (tool == PenTool::Draw) Stamp(pen, image, column, row);
}

void DragPen(Pen& pen, PlotImage& image, float x, float y) {
  if (!pen.Down) return;
  const std::int16_t column = ToInt16(x), row = ToInt16(y);
  ClearMarks(image);  // a command by key may have drawn some meanwhile
  WalkLine(pen.LastX, pen.LastY, column, row, [&](int i, int j) { Stamp(pen, image, i, j); });
  pen.LastX = column;
  pen.LastY = row;
  pen.Way.emplace_back(column, row);
}

void ReleasePen(Pen& pen, PlotImage& image) {
  if (!pen.Down) return;
  pen.Down = false;
  ClearMarks(image);
  Stamp(pen, image, pen.PressX, pen.PressY);
}

}  // namespace graphize
