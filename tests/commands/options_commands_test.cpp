// The settings window: what its controls and buttons do to the settings and to the program.

#include "commands/options_commands.h"

#include <gtest/gtest.h>

#include "commands/forms.h"
#include "commands/start_and_close.h"
#include "commands/toolbar.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

class Options : public ::testing::Test {
 protected:
  Options() {
    ws.settingsPath = folder.Path() / "graphize.ini";
    ws.window.ScreenWidth = 1280;
    ws.window.ScreenHeight = 1024;
    StartUp(ws, desktop);
    Toolbar_ButtonClick(ws, desktop, "setup");
  }

  void Decimals(int step) {
    StepPlaces(ws.settings, 1, step);
    FormatChanged(ws);
  }
  bool FileHas(const std::string& line) {
    return test::BytesOf(ws.settingsPath).find(line) != std::string::npos;
  }

  test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  Workspace ws;
};

TEST_F(Options, TheExampleFollowsTheFormatAtOnce) {
  EXPECT_EQ(ws.options.Example, "1.24567E+01  5.49876E+01");
  Decimals(1);
  EXPECT_EQ(ws.options.Example, "1.245670E+01  5.49876E+01");
  ws.settings.YExp = false;
  ws.settings.DecimalPoint = false;
  ws.settings.Delimiter = 1;  // the same sign twice is allowed
  FormatChanged(ws);
  EXPECT_EQ(ws.options.Example, "1,245670E+01,54,98760");
  EXPECT_EQ(ws.formats.Delimiter, ",") << "the list follows, too";
}

TEST_F(Options, CancelPutsBackWhatActedAtOnceAndDropsTheRest) {
  Decimals(1);
  ws.settings.XExp = false;
  ws.settings.CursorType = 3;
  ChooseColour(ws.options, ws.settings, 9);
  ws.options.XJump = 70;
  ws.options.Trace = 2;
  CloseForm(ws, desktop);
  EXPECT_EQ(ws.form, Form::None);
  EXPECT_EQ(ws.formats.X, "0.00000E+00");
  EXPECT_EQ(ws.settings.CursorType, 0);
  EXPECT_EQ(ws.settings.TraceColor, 14);
  EXPECT_EQ(ws.settings.XJump, 50);
  EXPECT_EQ(ws.settings.Trace, 0);
}

TEST_F(Options, ApplyTakesEveryTabOverAndCancelKeepsTheHeldGroups) {
  ws.tracer.Xrange = "9";
  ws.options.Trace = 2;
  ws.options.SnapMode = 3;
  ws.options.SnapDistance = "25";
  ws.options.YJump = 70;
  ws.options.RefreshList = true;
  ws.options.ZoomWindow = false;
  Decimals(1);
  ApplyOptions(ws);
  EXPECT_EQ(ws.form, Form::Options);
  EXPECT_EQ(ws.settings.Trace, 2);
  EXPECT_EQ(ws.tracer.Center.Caption, "Y-Down");
  EXPECT_EQ(ws.tracer.Xrange, "2");
  EXPECT_EQ(ws.settings.SnapMode, 3);
  EXPECT_EQ(ws.settings.SnapDistance, 25);
  EXPECT_EQ(ws.settings.YJump, 70);
  EXPECT_NE(ws.settings.RefreshList, 0);
  EXPECT_EQ(ws.settings.Zoom, 0);

  ws.tracer.Xrange = "9";
  ApplyOptions(ws);
  EXPECT_EQ(ws.tracer.Xrange, "9") << "the trace type is the same";

  CloseForm(ws, desktop);
  EXPECT_EQ(ws.settings.YJump, 70);
  EXPECT_EQ(ws.settings.XDecimals, 5) << "as it was when the window opened";
}

TEST_F(Options, SaveWritesWhatIsShownAndLoadReadsIt) {
  ws.options.XJump = 70;
  Decimals(2);
  ws.options.RefreshList = true;
  SaveOptions(ws, desktop);
  EXPECT_TRUE(FileHas("XJump=70"));
  EXPECT_TRUE(FileHas("XDecimals=7"));
  EXPECT_TRUE(FileHas("RefreshList=1"));
  EXPECT_EQ(ws.settings.RefreshList, -1) << "read back: still on";
  SaveOptions(ws, desktop);
  EXPECT_TRUE(FileHas("RefreshList=-1"));

  ws.options.XJump = 99;
  DefaultOptions(ws);
  EXPECT_EQ(ws.options.XJump, 50);
  EXPECT_EQ(ws.options.Example, "1.24567E+01  5.49876E+01");
  LoadOptions(ws, desktop);
  EXPECT_EQ(ws.options.XJump, 70);
  EXPECT_EQ(ws.options.Example, "1.2456700E+01  5.49876E+01");
}

TEST_F(Options, AFileThatCannotBeWrittenLeavesTheSettings) {
  std::filesystem::create_directory(ws.settingsPath);  // not even root writes there
  ws.options.XJump = 70;
  SaveOptions(ws, desktop);
  EXPECT_EQ(ws.settings.XJump, 70);
  EXPECT_EQ(ws.options.XJump, 70);
  EXPECT_FALSE(ws.status.Status.empty());
}

TEST_F(Options, NumbersStayInTheirRange) {
  Settings& settings = ws.settings;
  for (int i = 0; i < 4; ++i) StepPlaces(settings, i, -100);
  EXPECT_EQ(PlacesOf(settings, 0), 1);
  EXPECT_EQ(PlacesOf(settings, 3), 0);
  FormatChanged(ws);
  EXPECT_EQ(ws.options.Example, "1.E+01  5.E+01");
  StepPlaces(settings, 2, 100);
  EXPECT_EQ(settings.YDigits, kMostPlaces);
  StepXJump(ws.options, -100);
  EXPECT_EQ(ws.options.XJump, 1);

  for (const char* text : {"-1", "2x", "101", "1000", " 5", "1e2"}) {
    TypeSnapDistance(ws.options, text);
    EXPECT_EQ(ws.options.SnapDistance, "10") << text;
  }
  TypeSnapDistance(ws.options, "");
  ApplyOptions(ws);
  EXPECT_EQ(settings.SnapDistance, 10) << "an empty box says nothing";
  EXPECT_EQ(ws.options.SnapDistance, "10");
}

TEST_F(Options, WhatNobodyTouchedStaysAsItWasRead) {
  ws.settings.XDecimals = 40;
  ws.settings.SnapDistance = 500;
  ws.settings.XJump = 5000;
  ws.settings.Zoom = 5;
  ws.settings.Delimiter = 7;
  const Settings read = ws.settings;
  ShowOptions(ws);
  AcceptOptions(ws);
  EXPECT_EQ(ws.settings.XDecimals, read.XDecimals);
  EXPECT_EQ(ws.settings.SnapDistance, read.SnapDistance);
  EXPECT_EQ(ws.settings.XJump, read.XJump);
  EXPECT_EQ(ws.settings.Zoom, read.Zoom);
  EXPECT_EQ(ws.settings.Delimiter, read.Delimiter);
  ShowOptions(ws);
  StepSnapDistance(ws.options, -1);
  EXPECT_EQ(ws.options.SnapDistance, std::to_string(kLargestSnapDistance)) << "back into its range";
}

TEST_F(Options, BlockersTakeTheirNewColour) {
  ws.plot.Pixels = Raster::Filled(20, 20, kWhitePixel);
  PaintBlocker(ws.blockers, ws.plot, ws.commands, ws.settings, 10, 10, 4);
  ws.options.Colour = OptionsForm::ColourOf::Block;
  ChooseColour(ws.options, ws.settings, 9);
  ColoursChanged(ws);
  EXPECT_EQ(GetPixel(ws.plot, 10, 10), PaletteColour(9));
  DefaultColours(ws.settings);
  ColoursChanged(ws);
  EXPECT_EQ(GetPixel(ws.plot, 10, 10), PaletteColour(4));
}

}  // namespace
}  // namespace graphize
