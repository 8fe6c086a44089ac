#include "tracing/pen.h"

#include <gtest/gtest.h>

#include <span>

#include "base/run_time_error.h"
#include "support/ascii_picture.h"

namespace graphize::test {
namespace {

using Rows = std::vector<std::string>;

TEST(Pen, DrawsAndErasesAlongItsPathAsOneStepOfUndo) {
  struct Stroke {
    PenTool Tool;
    int BlockSize;
    std::vector<std::pair<float, float>> Path;  // press, then drags
    std::string AtPress, After;
  };
  const std::string black = "######## ######## ######## ######## ########";
  const std::string square = "######## #...#### #...#### #...#### ########";
  const Stroke strokes[] = {
      // Without a drag, size 0; then by a press that is rounded half to even.
      {PenTool::Erase, 0, {{2, 2}}, black, square},
      {PenTool::Erase, 0, {{2.5f, 1.5f}}, black, square},
      {PenTool::Erase, 1, {{4, 2}}, black, "##.....# ##.....# ##.....# ##.....# ##.....#"},
      {PenTool::Erase,
       0,
       {{1, 1}, {5, 1}, {5, 3}},
       black,
       ".......# .......# .......# ####...# ####...#"},
      {PenTool::Draw,
       3,
       {{1, 1}},
       "###..... ###..... ###..... ........ ........",
       "###..... ###..... ###..... ........ ........"},
      {PenTool::Draw,
       1,
       {{0, 0}, {3, 3}, {7, 3}},
       "#....... ........ ........ ........ ........",
       "#....... .#...... ..#..... ...##### ........"},
      // Over the border.
      {PenTool::Draw,
       0,
       {{6, 4}, {30, 4}, {30, -20}, {6, -20}, {6, 0}},
       "........ ........ ........ ........ ......#.",
       "......#. ........ ........ ........ ......##"},
  };
  for (const Stroke& stroke : strokes) {
    SCOPED_TRACE(stroke.After);
    const Rows before(5, stroke.Tool == PenTool::Erase ? "########" : "........");
    PlotImage image = MakePlotImage(before);
    Pen pen;
    const auto& [x, y] = stroke.Path[0];
    PressPen(pen, image, stroke.Tool, x, y, stroke.BlockSize);
    EXPECT_EQ(Show(image), RowsOf(stroke.AtPress));
    for (const auto& [toX, toY] : std::span(stroke.Path).subspan(1)) DragPen(pen, image, toX, toY);
    ReleasePen(pen, image);
    EXPECT_EQ(Show(image), RowsOf(stroke.After));
    ClearMarks(image);
    EXPECT_EQ(Show(image), RowsOf(stroke.After));
    UndoEdit(image);
    EXPECT_EQ(Show(image), before);
  }
}

TEST(Pen, WithoutAPressNothingHappens) {
  PlotImage image = MakePlotImage({"##"});
  Pen pen;
  DragPen(pen, image, 0, 0);
  ReleasePen(pen, image);
  EXPECT_FALSE(image.HasUndo);
  PressPen(pen, image, PenTool::Erase, 9, 0, 0);
  ReleasePen(pen, image);
  DragPen(pen, image, 0, 0);
  ReleasePen(pen, image);
  EXPECT_EQ(Show(image), Rows{"##"});
  EXPECT_THROW(PressPen(pen, image, PenTool::Draw, 40000, 0, 0), RunTimeError);
  EXPECT_FALSE(pen.Down);
}

TEST(Pen, MarksMadeDuringAPressDoNotSpoilThePicture) {
  for (const bool drags : {false, true}) {
    PlotImage image = MakePlotImage({"####", "####", "####"});
    Pen pen;
    SetPixel(image, 3, 0, kWhite);
    PressPen(pen, image, PenTool::Erase, 0, 1, 0);
    SetPixel(image, 1, 1, MakeColour(128, 0, 0));
    if (drags) DragPen(pen, image, 0, 1);
    ReleasePen(pen, image);
    ClearMarks(image);
    EXPECT_EQ(Show(image), Rows(3, "..##")) << drags;
    UndoEdit(image);
    EXPECT_EQ(Show(image), Rows(3, "####")) << drags;
  }
}

TEST(Pen, TheNextPressIsTheNextStep) {
  PlotImage image = MakePlotImage({"......"});
  Pen pen;
  for (const float x : {0.0f, 5.0f}) {
    PressPen(pen, image, PenTool::Draw, x, 0, 1);
    ReleasePen(pen, image);
  }
  UndoEdit(image);
  UndoEdit(image);
  EXPECT_EQ(Show(image), Rows{"#....."});
}

}  // namespace
}  // namespace graphize::test
