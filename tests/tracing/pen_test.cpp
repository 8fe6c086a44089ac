#include "tracing/pen.h"

#include <gtest/gtest.h>

#include "base/run_time_error.h"
#include "support/ascii_picture.h"

namespace graphize {
namespace {

using test::MakePlotImage;
using test::Show;
using Rows = std::vector<std::string>;

struct Stroke {
  const char* Name;
  Rows Before;
  PenTool Tool;
  int BlockSize;
  std::vector<std::pair<float, float>> Path;  // press, then drags
  Rows AtPress, After;
};

TEST(Pen, DrawsAndErasesAlongItsPathAsOneStepOfUndo) {
  const Rows black(5, "########"), white(5, "........");
  const Stroke strokes[] = {
      {"erase without a drag, size 0",
       black,
       PenTool::Erase,
       0,
       {{2, 2}},
       black,
       {"########", "#...####", "#...####", "#...####", "########"}},
      {"press position rounded half to even",
       black,
       PenTool::Erase,
       0,
       {{2.5f, 1.5f}},
       black,
       {"########", "#...####", "#...####", "#...####", "########"}},
      {"size 1", black, PenTool::Erase, 1, {{4, 2}}, black, Rows(5, "##.....#")},
      {"erase along the way",
       black,
       PenTool::Erase,
       0,
       {{1, 1}, {5, 1}, {5, 3}},
       black,
       {".......#", ".......#", ".......#", "####...#", "####...#"}},
      {"draw a dot",
       white,
       PenTool::Draw,
       3,
       {{1, 1}},
       {"###.....", "###.....", "###.....", "........", "........"},
       {"###.....", "###.....", "###.....", "........", "........"}},
      {"draw a connected line",
       white,
       PenTool::Draw,
       1,
       {{0, 0}, {3, 3}, {7, 3}},
       {"#.......", "........", "........", "........", "........"},
       {"#.......", ".#......", "..#.....", "...#####", "........"}},
      {"over the border",
       white,
       PenTool::Draw,
       0,
       {{6, 4}, {30, 4}, {30, -20}, {6, -20}, {6, 0}},
       {"........", "........", "........", "........", "......#."},
       {"......#.", "........", "........", "........", "......##"}},
  };
  for (const Stroke& stroke : strokes) {
    PlotImage image = MakePlotImage(stroke.Before);
    Pen pen;
    PressPen(pen, image, stroke.Tool, stroke.Path[0].first, stroke.Path[0].second,
             stroke.BlockSize);
    EXPECT_EQ(Show(image), stroke.AtPress) << stroke.Name;
    for (std::size_t i = 1; i < stroke.Path.size(); ++i)
      DragPen(pen, image, stroke.Path[i].first, stroke.Path[i].second);
    ReleasePen(pen, image);
    EXPECT_EQ(Show(image), stroke.After) << stroke.Name;
    ClearMarks(image);
    EXPECT_EQ(Show(image), stroke.After) << stroke.Name;
    UndoEdit(image);
    EXPECT_EQ(Show(image), stroke.Before) << stroke.Name;
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
}  // namespace graphize
