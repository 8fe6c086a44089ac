#include "commands/image_tools_commands.h"
#include "commands/do.h"

#include <gtest/gtest.h>

#include <tuple>

#include "commands/extraction_commands.h"
#include "commands/forms.h"
#include "commands/run_command.h"
#include "commands/shown_picture.h"
#include "raster/black_white.h"
#include "support/picture_bytes.h"
#include "support/scripted_desktop.h"

namespace graphize {
namespace {

using test::PixelsOf;
using Texts = std::vector<std::string>;

constexpr const char* kRedefine = "Redefine the axis before graphizing";

class ImageToolsCommands : public ::testing::Test {
 protected:
  ImageToolsCommands() {
    desktop.OnPump = [this] { SeeStatus(); };
  }

  /// Opens the window over a picture of two colours, or of many.
  void Open(int width, int height, bool manyColours = false) {
    Raster picture = Raster::Filled(width, height, kWhitePixel);
    for (int y = 0; y < height; ++y) picture.Row(y)[y % width] = kBlackPixel;
    if (manyColours)
      for (std::uint32_t i = 0; i < 300; ++i) picture.Pixels()[i] = 0xff405000u + i;
    LoadImage(ws, desktop, std::move(picture), "plot.bmp");
    ShowImageTools(ws);
  }

  void Process(PictureTool tool, int amount) {
    ChooseTool(ws.imageTools, tool);
    SetAmount(ws.imageTools, amount);
    statuses.clear();
    ws.status.Status.clear();  // what stood there before would be seen by a pump of slow work
    EXPECT_EQ(RunCommand(ws, desktop, [this] { Do(ws, desktop, StepOfForm(ws.imageTools)); }),
              CommandEnd::Done);
    EXPECT_FALSE(ws.imageTools.Busy || ws.status.ProgressVisible || ws.window.Hourglass);
    SeeStatus();
  }

  void SeeStatus() {
    const std::string& text = ws.status.Status;
    if (!text.empty() && (statuses.empty() || statuses.back() != text)) statuses.push_back(text);
  }

  void Close() {
    CloseForm(ws, desktop);
    EXPECT_EQ(ws.form, Form::None);
    EXPECT_FALSE(CanUndoImageTool(ws));
  }

  test::ScriptedDesktop desktop;
  Workspace ws;
  Texts statuses;  // as they were shown
};

TEST_F(ImageToolsCommands, TheWindowNeedsAPicture) {
  EXPECT_FALSE(CanShowImageTools(ws));
  Open(20, 10);
  EXPECT_TRUE(CanShowImageTools(ws));
  EXPECT_EQ(ws.form, Form::ImageTools);
  EXPECT_FALSE(CanUndoImageTool(ws));
  Close();
}

TEST_F(ImageToolsCommands, EachStepIsTold) {
  using enum PictureTool;
  const std::tuple<PictureTool, const char*, const char*> cases[] = {
      {Blur, "Bluring image...", "Bluring completed"},
      {EdgeDetect, "Detecting Edges...", "Detect Edges completed"},
      {Negate, "Negating...", "Negate completed"},
      {Sharpen, "Sharpening Image...", "Sharpening completed"},
      {Soften, "Softening Image...", "Softening completed"},
      {Resize, "Resizing Image...", "Resize completed"},
      {Stretch, "Stretching Image...", ""},
      {Rotate, "Rotating Image...", "Rotate completed"},
  };
  for (const auto& [tool, doing, done] : cases)
    for (bool manyColours : {false, true}) {
      Open(40, 30, manyColours);
      Process(tool, 120);
      Texts expected = {doing};
      if (*done) expected.push_back(done);
      // These two keep a palette by themselves.
      if (!manyColours && tool != Resize && tool != Stretch)
        expected = {"Increasing color depth...", doing, "Reducing color depth...", done};
      EXPECT_EQ(statuses, expected);
    }
}

TEST_F(ImageToolsCommands, ANewSizeIsShownAndTheAxesAreWarnedOf) {
  ws.blockers.Count = 1;
  ws.blockers.Blockers[1] = {10, 5, 3};
  Open(40, 30);
  ws.view = {.X = 3, .Y = 2, .Width = 30, .Height = 20};
  ResetScrBars(ws.view, 40, 30);
  const Colour blocker = GetPixel(ws.plot, 10, 5);
  EXPECT_NE(blocker, kWhite);
  const auto before = PixelsOf(ws.plot.Pixels);

  // Without axes nothing is said.
  Process(PictureTool::Resize, 150);
  EXPECT_EQ(ws.status.SizeX, "W=60");
  EXPECT_EQ(ws.status.SizeY, "H=45");
  EXPECT_EQ(ws.window.Caption, "Graphize - plot.bmp (60x45)");
  EXPECT_EQ(ws.view.MaximumX, 30);
  EXPECT_EQ(ws.view.X, 3);
  EXPECT_EQ(GetPixel(ws.plot, 15, 8), blocker) << "blockers go along";

  ASSERT_TRUE(CanUndoImageTool(ws));
  Do(ws, desktop, UndoImageToolStep{});
  EXPECT_EQ(ws.status.Status, "Undo completed");
  EXPECT_EQ(ws.status.SizeX, "W=40");
  EXPECT_EQ(ws.window.Caption, "Graphize - plot.bmp (40x30)");
  EXPECT_EQ(PixelsOf(ws.plot.Pixels), before);
  EXPECT_FALSE(CanUndoImageTool(ws));
  Do(ws, desktop, UndoImageToolStep{});
  EXPECT_EQ(PixelsOf(ws.plot.Pixels), before);

  ws.calibration.Defined[0] = true;
  Close();  // the size is what it was

  ShowImageTools(ws);
  desktop.ExpectMessage(kRedefine);
  Process(PictureTool::Resize, 50);
  EXPECT_EQ(desktop.Messages.back().Icon, MessageIcon::Exclamation);
  EXPECT_EQ(desktop.Messages.back().Caption, "Graphize");
  Process(PictureTool::Stretch, 150);
  EXPECT_EQ(ws.status.Status, "Stretching Image...");
  EXPECT_EQ(ws.status.SizeX, "W=30");
  desktop.ExpectMessage(kRedefine);
  Process(PictureTool::Rotate, -90);
  EXPECT_EQ(ws.status.SizeX, "W=23");
  EXPECT_TRUE(ws.calibration.Defined[0]) << "the user is only warned";
  desktop.ExpectMessage("Image Size Changed, You have to redefine the axis before you graphize ");
  Close();
  EXPECT_EQ(desktop.Messages.back().Icon, MessageIcon::Information);

  ShowImageTools(ws);
  ChooseTool(ws.imageTools, PictureTool::Rotate);
  EXPECT_EQ(ws.imageTools.Amount, -90);
}

TEST_F(ImageToolsCommands, OnlyTheLastProcessingIsUndone) {
  Open(40, 30);
  DrawDot(ws.plot, 20, 10, 5, PaletteColour(4));  // a mark is no part of the picture
  Process(PictureTool::Negate, 0);
  EXPECT_EQ(GetPixel(ws.plot, 20, 10), kBlack);
  EXPECT_FALSE(CanUndoErase(ws));
  const auto negative = PixelsOf(ws.plot.Pixels);
  Process(PictureTool::Blur, 0);
  Do(ws, desktop, UndoImageToolStep{});
  EXPECT_EQ(PixelsOf(ws.plot.Pixels), negative);
  EXPECT_FALSE(CanUndoImageTool(ws));
}

TEST_F(ImageToolsCommands, WhatIsTooSmallIsToldAndTheStepsGoOn) {
  Open(1, 1);
  for (const auto& [tool, amount, end] : {std::tuple{PictureTool::Blur, 0, "Bluring completed"},
                                          {PictureTool::EdgeDetect, 5, "Detect Edges completed"},
                                          {PictureTool::Sharpen, 5, "Sharpening completed"},
                                          {PictureTool::Soften, 5, "Softening completed"},
                                          {PictureTool::Resize, 0, "Resize completed"}}) {
    desktop.ExpectMessage("Image too small !");
    Process(tool, amount);
    EXPECT_EQ(desktop.Messages.back().Caption, "Graphize Error");
    EXPECT_EQ(desktop.Messages.back().Icon, MessageIcon::Information);
    EXPECT_EQ(ws.status.Status, end);
    EXPECT_EQ(PixelsOf(ws.plot.Pixels), std::vector<std::uint32_t>{kBlackPixel});
    EXPECT_TRUE(CanUndoImageTool(ws));
  }
  Process(PictureTool::Negate, 0);
  EXPECT_EQ(GetPixel(ws.plot, 0, 0), kWhite);
}

TEST_F(ImageToolsCommands, RefusedAndStoppedToolsChangeNothing) {
  Open(12000, 300);
  Process(PictureTool::Negate, 0);
  DrawDot(ws.plot, 200, 100, 9, PaletteColour(4));
  const auto before = PixelsOf(ws.plot.Pixels);
  const std::size_t marks = ws.plot.Marks.size();
  const auto expectNothingChanged = [&] {
    EXPECT_TRUE(PixelsOf(ws.plot.Pixels) == before);
    EXPECT_EQ(ws.plot.Marks.size(), marks);
    EXPECT_EQ(ws.plot.Width(), 12000);
    ASSERT_TRUE(ws.imageTools.UndoCopy);
    EXPECT_EQ(ws.imageTools.UndoCopy->Row(0)[0], kBlackPixel) << "the undo copy of before";
  };
  ws.status.Status = " ";
  desktop.ExpectMessage("The picture would be too large: 36000 x 900 pixels");
  Process(PictureTool::Resize, 300);
  expectNothingChanged();

  desktop.EscapeAfter = 0;
  Process(PictureTool::Rotate, 45);  // 75 million pixels
  expectNothingChanged();
  EXPECT_EQ(ws.status.Status, "Stopped: the picture is as it was");
}

TEST_F(ImageToolsCommands, AStoppedReductionToBlackAndWhiteChangesNothing) {
  Open(12000, 3000, true);
  KeepEvents(ws.plot);  // as the history has it
  DrawDot(ws.plot, 200, 100, 9, PaletteColour(4));
  const auto before = PixelsOf(ws.plot.Pixels);
  desktop.EscapeAfter = 0;
  for (const auto kind : {InkThreshold::Kind::Fixed, InkThreshold::Kind::Local}) {
    EXPECT_EQ(Do(ws, desktop, BlackWhiteStep{{.Is = kind}}).Is, Outcome::How::Nothing);
    EXPECT_TRUE(PixelsOf(ws.plot.Pixels) == before);
    EXPECT_FALSE(ws.status.ProgressVisible);
  }
}

TEST_F(ImageToolsCommands, TwoColoursStayTwoThatTracersFollow) {
  Raster picture = Raster::Filled(60, 40, kWhitePixel);
  for (int x = 5; x < 55; ++x)
    for (int y = 18; y < 21; ++y) picture.Row(y)[x] = kBlackPixel;
  LoadImage(ws, desktop, std::move(picture), "line");
  for (const PictureTool tool : {PictureTool::Rotate, PictureTool::Soften, PictureTool::Blur}) {
    Process(tool, 7);
    EXPECT_TRUE(IsBlackAndWhite(ws.plot.Pixels));
    EXPECT_GT(std::ranges::count(PixelsOf(ws.plot.Pixels), kBlackPixel), 80);
  }
}

}  // namespace
}  // namespace graphize
