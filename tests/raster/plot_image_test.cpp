#include "raster/plot_image.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/ascii_picture.h"

namespace graphize::test {
namespace {

using Rows = std::vector<std::string>;

TEST(PlotImage, ReadsOutsideAreNoColourAndWritesOutsideChangeNothing) {
  PlotImage image = MakePlotImage({"#.", ".#"});
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}, {1 << 30, 0}}) {
    EXPECT_EQ(GetPixel(image, x, y), kNoColour);
    EXPECT_FALSE(IsBlack(image, x, y));
    SetPixel(image, x, y, kBlack);
  }
  EXPECT_EQ(GetPixel(PlotImage{}, 0, 0), kNoColour);
  EXPECT_EQ(Show(image), (Rows{"#.", ".#"}));
  EXPECT_TRUE(image.Dirty.IsEmpty());
}

TEST(PlotImage, OnlyExactlyZeroIsBlack) {
  PlotImage image = MakePlotImage({"."});
  SetPixel(image, 0, 0, 0x000001);
  EXPECT_FALSE(IsBlack(image, 0, 0));
  SetPixel(image, 0, 0, MakeColour(1, 2, 3));
  EXPECT_EQ(GetPixel(image, 0, 0), 1 + 256 * 2 + 65536 * 3);
  EXPECT_EQ(image.Pixels.Row(0)[0], 0xff010203u);
}

TEST(PlotImage, ClearMarksRestoresOverlappingMarks) {
  const Rows before = {"#....", ".#...", "..#..", "...#.", "....#"};
  PlotImage image = MakePlotImage(before);
  DrawBox(image, 0, 0, 4, 4, kWhite, true);
  DrawDot(image, 2, 2, 4, MakeColour(128, 0, 0));
  DrawLine(image, -3, -3, 7, 7, kBlack);
  DrawBox(image, 1, 1, 3, 3, kBlack, false);
  EXPECT_NE(Show(image), before);
  image.Dirty = {};
  ClearMarks(image);
  EXPECT_EQ(Show(image), before);
  EXPECT_FALSE(image.Dirty.IsEmpty());
  EXPECT_TRUE(image.Marks.empty());
}

TEST(PlotImage, NewMarksOfTheRightColumnsCanBeTakenBack) {
  PlotImage image = MakePlotImage({"####", "####"});
  SetPixel(image, 3, 0, MakeColour(1, 0, 0));
  const std::size_t before = image.Marks.size();
  DrawBox(image, 0, 0, 3, 0, MakeColour(2, 0, 0), true);
  image.Dirty = {};
  TakeBackMarks(image, before, 2);
  EXPECT_EQ(GetPixel(image, 1, 0), MakeColour(2, 0, 0));
  EXPECT_EQ(GetPixel(image, 2, 0), kBlack);
  EXPECT_EQ(GetPixel(image, 3, 0), MakeColour(1, 0, 0));
  EXPECT_EQ(std::pair(image.Dirty.Left, image.Dirty.Right), std::pair(2, 3));
  ClearMarks(image);
  EXPECT_EQ(Show(image), (std::vector<std::string>{"####", "####"}));
}

TEST(PlotImage, EditsBecomeTheBasePictureAndTheLastOneCanBeUndone) {
  const Rows before = {"###", "###"};
  PlotImage image = MakePlotImage(before);
  BeginEdit(image);
  EditPixel(image, 0, 0, kWhite);
  BeginEdit(image);
  EditPixel(image, 1, 0, kWhite);
  EditPixel(image, 1, 0, kBlack);
  EditPixel(image, 2, 1, kWhite);
  SetPixel(image, 0, 1, MakeColour(0, 0, 128));
  ClearMarks(image);
  EXPECT_EQ(Show(image), (Rows{".##", "##."}));
  UndoEdit(image);
  EXPECT_EQ(Show(image), (Rows{".##", "###"}));
  UndoEdit(image);
  EXPECT_EQ(Show(image), (Rows{".##", "###"}));
}

TEST(PlotImage, ShapesHaveTheirCornersAndWidths) {
  using Image = PlotImage&;
  const std::pair<void (*)(PlotImage&), const char*> cases[] = {
      {[](Image i) { DrawBox(i, 4, 3, 1, 1, kBlack, false); },
       "...... .####. .#..#. .####. ......"},
      {[](Image i) { DrawDot(i, 2, 2, 1, kBlack); }, "...... ...... ..#... ...... ......"},
      {[](Image i) { DrawDot(i, 2, 2, 3, kBlack); }, "...... .###.. .###.. .###.. ......"},
      {[](Image i) { DrawDot(i, 2, 2, 4, kBlack); }, ".##... ####.. ####.. .##... ......"},
      {[](Image i) { DrawLine(i, 1, 0, 2, 3, kBlack); }, ".#.... .#.... ..#... ..#... ......"}};
  for (const auto& [draw, expected] : cases) {
    PlotImage image = MakePlotImage(Rows(5, "......"));
    draw(image);
    EXPECT_EQ(Show(image), RowsOf(expected));
  }
}

TEST(PlotImage, WhatHappenedIsTakenBackAndDoneAgain) {
  PlotImage image = MakePlotImage(Rows(200, std::string(200, '.')));
  for (int i = 0; i < 100; ++i) SetPixel(image, i, i, kBlack);
  KeepEvents(image);
  const auto look = [&] { return std::tuple(Show(image), image.Marks, image.LastEdit); };
  const auto before = look();
  TakeBackMarks(image, 50, 70);  // some that were there before
  BeginEdit(image);
  EditBox(image, 0, 0, 199, 99, MakeColour(200, 0, 0));
  EditBox(image, 10, 5, 160, 150, kBlack);
  BeginEdit(image);
  for (int i = 0; i < 200; ++i) EditPixel(image, 199 - i, i, static_cast<Colour>(7919 * i));
  UndoEdit(image);
  EditPixel(image, 3, 3, kBlack);
  DrawDot(image, 100, 100, 30, kBlack);
  SetPicture(image, test::Draw({"#."}));
  SetPixel(image, 1, 0, kBlack);
  const auto after = look();
  std::vector<RasterEvent> events = TakeEvents(image);
  std::size_t bytes = 0;
  for (const RasterEvent& event : events) bytes += event.Bytes();
  EXPECT_LT(bytes, 64 * 1024u) << "a large log is packed";
  for (int times = 0; times < 2; ++times) {
    for (auto event = events.rbegin(); event != events.rend(); ++event) TakeBack(image, *event);
    EXPECT_EQ(Show(image), std::get<0>(before));
    ClearMarks(image);
    EXPECT_EQ(Show(image), Rows(200, std::string(200, '.')));
    std::vector<RasterEvent> cleared = TakeEvents(image);
    TakeBack(image, cleared.front());
    EXPECT_EQ(image.LastEdit, std::get<2>(before));
    for (RasterEvent& event : events) DoAgain(image, event);
    EXPECT_EQ(look(), after);
  }
}

TEST(PlotImage, ANewPictureDropsMarksAndUndo) {
  PlotImage image = MakePlotImage({"##"});
  SetPixel(image, 0, 0, kWhite);
  BeginEdit(image);
  EditPixel(image, 1, 0, kWhite);
  SetPicture(image, Draw({"#", "#", "#"}));
  EXPECT_EQ(image.Width(), 1);
  EXPECT_EQ(image.Height(), 3);
  ClearMarks(image);
  UndoEdit(image);
  EXPECT_EQ(Show(image), (Rows{"#", "#", "#"}));
  EXPECT_FALSE(image.HasUndo);
}

}  // namespace
}  // namespace graphize::test
