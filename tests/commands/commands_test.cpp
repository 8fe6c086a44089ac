// Commands on the whole workspace, with a scripted desktop instead of a window.

#include "workspace/workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/black_white_commands.h"
#include "commands/capture_commands.h"
#include "commands/do.h"
#include "commands/export_points.h"
#include "commands/extraction_commands.h"
#include "commands/forms.h"
#include "commands/ink_check_commands.h"
#include "commands/overlay.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/run_command.h"
#include "commands/save_points.h"
#include "commands/start_and_close.h"
#include "commands/toolbar.h"
#include "commands/view_commands.h"
#include "raster/black_white.h"
#include "support/ascii_picture.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"
#include "workspace/next_step.h"
#include "workspace/picture_part.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

constexpr const char* kBlackAndWhite = "Do you want to reduce colors to BW ?";
constexpr const char* kReset = "Clear data and reset axis definisions ?";

class WorkspaceTest : public ::testing::Test {
 protected:
  WorkspaceTest() {
    ws.settingsPath = folder.Path() / "graphize.ini";
    ws.window.ScreenWidth = 1280;
    ws.window.ScreenHeight = 1024;
    StartUp(ws, desktop);
  }

  std::filesystem::path Picture(const char* name, int width = 60, int height = 50,
                                std::uint32_t pixel = kWhitePixel) {
    SavePicture(folder.Path() / name, 3, 0, Raster::Filled(width, height, pixel));
    return folder.Path() / name;
  }

  void Click(float x, float y) {
    Plot_MouseMove(ws, desktop, 0, 0, x, y);
    Plot_MouseDown(ws, desktop, kLeftButton, 0, x, y);
    Plot_MouseUp(ws, desktop, kLeftButton, 0, x, y);
    Plot_Click(ws, desktop);
  }

  void Calibrate() {
    Toolbar_ButtonClick(ws, desktop, "axisdef");
    ws.axisPanel.Rows[0].XText = ws.axisPanel.Rows[0].YText = "0";
    Click(5, 45);
    ws.axisPanel.Rows[1].XText = "40";
    Click(45, 45);
    ws.axisPanel.Rows[2].YText = "40";
    Click(5, 5);
    ASSERT_TRUE(ws.calibration.IsComplete());
  }

  void OpenAndCalibrate() {
    OpenPicture(ws, desktop, Picture("plot.bmp"));
    Calibrate();
    Toolbar_ButtonClick(ws, desktop, "graphize");
  }

  test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  Workspace ws;
};

TEST_F(WorkspaceTest, OpeningShowsThePictureAndEnablesItsButtons) {
  EXPECT_FALSE(CanPress(ws, "refresh") || CanReload(ws));
  desktop.ExpectFile(Picture("Plot1.bmp"));
  Toolbar_ButtonClick(ws, desktop, "open");
  EXPECT_EQ(ws.window.Caption, "Graphize - plot1.bmp (60x50)");
  EXPECT_EQ(ws.status.SizeX + ws.status.SizeY, "W=60H=50");
  EXPECT_EQ(ws.status.Status, " ");
  for (const char* key : {"refresh", "axisdef", "blocktest", "drawerase"})
    EXPECT_TRUE(CanPress(ws, key)) << key;
  EXPECT_FALSE(CanPress(ws, "graphize") || CanPress(ws, "gridbuster"));
  EXPECT_TRUE(CanReload(ws));
  EXPECT_EQ(desktop.FileQuestions[0].Title, "Open Image File");

  desktop.ExpectFile({});
  Toolbar_ButtonClick(ws, desktop, "open");
  EXPECT_TRUE(ws.plot.IsPresent()) << "cancelled";
}

TEST_F(WorkspaceTest, AFileThatCannotBeReadLosesNothing) {
  OpenAndCalibrate();
  Click(20, 20);
  std::ofstream(folder.Path() / "bad.bmp") << "BM";
  const std::string caption = ws.window.Caption;
  for (const char* name : {"bad.bmp", "absent.tif"}) {
    desktop.ExpectMessage(kReset, Answer::No);
    desktop.ExpectMessage(name);
    OpenPicture(ws, desktop, folder.Path() / name);
    EXPECT_EQ(ws.window.Caption, caption);
    EXPECT_EQ(ws.plot.Width(), 60);
    EXPECT_EQ(ws.store.CaptureCount, 1);
    EXPECT_TRUE(ws.calibration.IsComplete());
    EXPECT_FALSE(ws.window.Hourglass || ws.status.ProgressVisible);
  }
}

TEST_F(WorkspaceTest, ADamagedPictureIsShownOnlyWhenWanted) {
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  SavePicture(folder.Path() / "cut.jpg", kJpgFormat, 75, Raster::Filled(400, 300, kWhitePixel));
  std::filesystem::resize_file(folder.Path() / "cut.jpg", 900);
  for (const auto& [answer, width] : {std::pair{Answer::No, 60}, {Answer::Yes, 400}}) {
    desktop.ExpectMessage("\"cut.jpg\"", answer);
    if (answer == Answer::Yes) desktop.ExpectMessage(kBlackAndWhite, Answer::No);
    OpenPicture(ws, desktop, folder.Path() / "cut.jpg");
    EXPECT_EQ(ws.plot.Width(), width);
  }
  EXPECT_TRUE(desktop.Messages[0].DefaultIsNo);
}

TEST_F(WorkspaceTest, OfAPictureThatIsTooLongAPartIsAskedFor) {
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  Raster strip = Raster::Filled(33000, 20, kWhitePixel);
  for (int x = 0; x < strip.Width(); ++x) strip.Row(9)[x] = strip.Row(10)[x] = kBlackPixel;
  SavePicture(folder.Path() / "strip.bmp", 3, 0, strip);
  const auto open = [&](std::initializer_list<const char*> answers) {
    for (const char* answer : answers) desktop.ExpectPrompt(answer);
    OpenPicture(ws, desktop, folder.Path() / "strip.bmp");
    return ws.plot.Width();
  };
  EXPECT_EQ(open({""}), 60) << "cancelled";
  EXPECT_EQ(ws.status.Status, " ");
  EXPECT_EQ(open({"Half"}), 16500);
  EXPECT_THAT(desktop.Prompts.back().Choices,
              testing::ElementsAre("half", "quarter", "0,0,32767,20"));
  desktop.ExpectMessage("does not lie on the picture");
  EXPECT_EQ(open({"5,5,40000,3", "31000,0,2000,20"}), 2000);
  EXPECT_TRUE(IsBlack(ws.plot, 1999, 10));
  EXPECT_FALSE(PartFault("quarter", 40000, 1).empty()) << "nothing is left";
  // The recipe says which part it was, and a reload takes the same.
  const auto& step = std::get<OpenStep>(ws.recipe.Steps.back());
  EXPECT_EQ(TextOf(step), "open 1 part 31000,0,2000,20");
  Do(ws, desktop, ReloadStep{.Part = step.Part});
  EXPECT_EQ(ws.plot.Width(), 2000);
}

TEST_F(WorkspaceTest, TheReductionIsPreviewedBeforeItIsDone) {
  Raster shades = Raster::Filled(300, 200, kWhitePixel);
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 250; ++x) shades.Row(y)[x] = 0xff000000u + 0x010101u * x;
  SavePicture(folder.Path() / "shades.bmp", 3, 0, shades);
  ws.settings.Threshold = 40;
  desktop.ExpectMessage(kBlackAndWhite, Answer::Yes);
  OpenPicture(ws, desktop, folder.Path() / "shades.bmp");
  EXPECT_TRUE(IsBlack(ws.plot, 39, 5) && !IsBlack(ws.plot, 40, 5)) << "as the settings say";
  EXPECT_EQ(TextOf(ws.recipe.Steps.back()), "open 1 black-and-white threshold 40");
  ShowBlackWhite(ws);
  EXPECT_FALSE(ws.blackWhite.CanReduce);
  CloseForm(ws, desktop);

  desktop.ExpectMessage(kBlackAndWhite, Answer::No);
  Do(ws, desktop, ReloadStep{.Ask = true});
  ResizeView(ws, 300, 200);
  ShowBlackWhite(ws);
  const BlackWhiteForm& form = ws.blackWhite;
  EXPECT_EQ(form.Threshold, 40);
  EXPECT_EQ(form.Histogram[100], 200);
  MoveThreshold(ws, 90);
  EXPECT_TRUE(IsBlackPixel(form.Preview.Row(9)[89]) && !IsBlackPixel(form.Preview.Row(9)[90]));
  EXPECT_EQ(GetPixel(ws.plot, 60, 5), MakeColour(60, 60, 60)) << "the picture itself stays";
  const int changes = form.Changes;
  ChooseLocalThreshold(ws, true);
  EXPECT_GT(form.Changes, changes);
  EXPECT_TRUE(IsBlackAndWhite(form.Preview));
  ChooseLocalThreshold(ws, false);
  ReduceAsPreviewed(ws, desktop);
  EXPECT_EQ(ws.form, Form::None);
  EXPECT_EQ(ws.settings.Threshold, 90);
  EXPECT_TRUE(IsBlack(ws.plot, 89, 5) && !IsBlack(ws.plot, 90, 5));
}

TEST_F(WorkspaceTest, APictureThatStaysAfterAResetCanBeWorkedOn) {
  OpenAndCalibrate();
  desktop.ExpectMessage(kReset, Answer::Yes);
  desktop.ExpectFile({});
  Toolbar_ButtonClick(ws, desktop, "open");
  EXPECT_TRUE(CanPress(ws, "axisdef") && CanPress(ws, "refresh") && CanReload(ws));
  EXPECT_FALSE(ws.calibration.AnyDefined() || CanPress(ws, "graphize"));
  EXPECT_EQ(ws.readOut.XPOS, "");
}

TEST_F(WorkspaceTest, ADragBeyondTheEdgeTakesTheViewWithIt) {
  OpenAndCalibrate();
  ws.settings.Trace = 2;
  ws.settings.XJump = 6;
  ResizeView(ws, 20, 20);
  ScrollTo(ws.view, 10, 10);
  Plot_MouseMove(ws, desktop, 0, 0, 55, 45);
  EXPECT_EQ(ws.view.X, 10) << "no drag";
  Plot_MouseDown(ws, desktop, kRightButton, 0, 12, 12);
  Plot_MouseMove(ws, desktop, kRightButton, 0, 29, 29);
  EXPECT_EQ(ws.view.X, 10) << "still inside";
  Plot_MouseMove(ws, desktop, kRightButton, 0, 55, 32);
  EXPECT_EQ(ws.view.X, 16) << "one jump at most";
  EXPECT_EQ(ws.view.Y, 13) << "not further than the pointer";
  Plot_MouseMove(ws, desktop, kRightButton, 0, 3, -40);
  EXPECT_EQ(ws.view.X, 10);
  EXPECT_EQ(ws.view.Y, 0);
  EXPECT_EQ(ws.scanRectangle.Bottom, -40);
}

TEST_F(WorkspaceTest, ADragWhoseReleaseIsLostEnds) {
  OpenAndCalibrate();
  ws.settings.Trace = 2;
  const auto startBand = [&] {
    Plot_MouseDown(ws, desktop, kRightButton, 0, 10, 10);
    Plot_MouseMove(ws, desktop, kRightButton, 0, 30, 30);
    EXPECT_TRUE(ws.scanRectangle.Active);
  };
  startBand();
  Plot_MouseMove(ws, desktop, 0, 0, 40, 40);
  EXPECT_FALSE(ws.scanRectangle.Active || ws.mouse.SuppressNextClick);
  startBand();
  Toolbar_ButtonClick(ws, desktop, "drawerase");
  EXPECT_FALSE(ws.scanRectangle.Active);
  Plot_MouseDown(ws, desktop, kLeftButton, 0, 10, 10);
  Plot_MouseMove(ws, desktop, 0, 0, 50, 10);
  EXPECT_FALSE(ws.pen.Down || IsBlack(ws.plot, 45, 10));
}

TEST_F(WorkspaceTest, APressThatFailsCapturesNothing) {
  OpenPicture(ws, desktop, Picture("black.bmp", 300, 300, kBlackPixel));
  Calibrate();
  Toolbar_ButtonClick(ws, desktop, "graphize");
  ws.settings.SnapMode = 3;
  ws.settings.SnapDistance = 120;  // more ink than 16 bits count
  Plot_MouseMove(ws, desktop, 0, 0, 150, 150);
  EXPECT_THROW(Plot_MouseDown(ws, desktop, kLeftButton, 0, 150, 150), RunTimeError);
  Plot_Click(ws, desktop);
  EXPECT_EQ(ws.store.CaptureCount, 0);
  ws.settings.SnapDistance = 2;
  Click(150, 150);
  EXPECT_EQ(ws.store.CaptureCount, 1);
}

TEST_F(WorkspaceTest, OpeningAgainAsksAboutTheAxes) {
  OpenAndCalibrate();
  Click(20, 20);
  desktop.ExpectMessage(kReset, Answer::No);
  OpenPicture(ws, desktop, Picture("wide.bmp", 90, 40));
  EXPECT_EQ(ws.mode, Mode::None);
  EXPECT_EQ(ws.store.CaptureCount, 1);
  EXPECT_TRUE(CanPress(ws, "graphize")) << "the old axes apply";

  desktop.ExpectMessage(kReset, Answer::Yes);
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  EXPECT_EQ(ws.store.CaptureCount, 0);
  EXPECT_FALSE(ws.calibration.AnyDefined() || CanPress(ws, "graphize"));
  EXPECT_TRUE(CanPress(ws, "axisdef"));
  EXPECT_FALSE(ws.readOut.ShowError);
}

TEST_F(WorkspaceTest, OtherColoursAreOfferedToBeReduced) {
  const auto grey = Picture("grey.bmp", 20, 20, 0xff404040u);
  desktop.ExpectMessage(kBlackAndWhite, Answer::No);
  OpenPicture(ws, desktop, grey);
  EXPECT_EQ(GetPixel(ws.plot, 3, 3), MakeColour(0x40, 0x40, 0x40));
  desktop.ExpectMessage(kBlackAndWhite, Answer::Yes);
  Do(ws, desktop, ReloadStep{.Ask = true});
  EXPECT_TRUE(IsBlack(ws.plot, 3, 3));
  EXPECT_EQ(desktop.Messages[0].Text,
            "Image is not Black & White !\r\nAuto-Trace works best on BW images\r\n\r\nDo you want "
            "to reduce colors to BW ?");
}

TEST_F(WorkspaceTest, OfSeveralFilesTheFirstOpensAndTheRestAreTold) {
  std::filesystem::create_directory(folder / "plots");
  desktop.ExpectMessage("\"plots\" is a folder");
  OpenFiles(ws, desktop, {folder / "plots/"});
  EXPECT_FALSE(ws.plot.IsPresent());
  desktop.ExpectMessage("\"c.png\" and 3 more.");
  std::vector<std::filesystem::path> many(14, "c.png");
  many[0] = Picture("plot.bmp");
  OpenFiles(ws, desktop, many);
  desktop.ClipboardFiles = {"https://host/far.png", folder / "plots", Picture("b.bmp"),
                            Picture("a.bmp"), folder / "c.bmp"};
  OpenEditMenu(ws, desktop);
  EXPECT_TRUE(ws.commands.Paste);
  desktop.ExpectMessage("Not opened: \"a.bmp\", \"c.bmp\".");
  PasteImage(ws, desktop);
  EXPECT_EQ(ws.picture.ChosenPath, folder / "b.bmp");
  EXPECT_THAT(
      desktop.Messages.back().Text,
      testing::AllOf(testing::HasSubstr("\"https://host/far.png\" is not a file of this computer"),
                     testing::HasSubstr("\"plots\" is a folder")));
}

TEST_F(WorkspaceTest, PasteTakesTheClipboardsPicture) {
  desktop.ExpectMessage("No Bitmap in Clipboard");
  PasteImage(ws, desktop);
  EXPECT_FALSE(ws.plot.IsPresent());
  desktop.Clipboard = Raster::Filled(60, 50, kWhitePixel);
  PasteImage(ws, desktop);
  EXPECT_EQ(ws.window.Caption, "Graphize - Pasted Plot (60x50)");
  EXPECT_FALSE(CanReload(ws));
  Do(ws, desktop, ReloadStep{.Ask = true});

  desktop.ExpectFile(folder.Path() / "Mine.TIF");
  SaveImageAs(ws, desktop);
  EXPECT_EQ(desktop.FileQuestions[0].FileName, "untitled.tif");
  EXPECT_EQ(desktop.FileQuestions[0].FilterIndex, 1);
  EXPECT_EQ(Refusal(desktop.FileQuestions[0], "Mine.v2.PNG"), "");
  for (const char* name : {"Mine", "mine.webp", "tif", "mine.tif.xyz"})
    EXPECT_EQ(Refusal(desktop.FileQuestions[0], name),
              "The name must end in one of the types tif, tga, bmp, gif, dib, pcx, jpg or png.");
  EXPECT_EQ(ws.status.Status, "Image was successfully saved");
  EXPECT_EQ(LoadPicture(folder.Path() / "Mine.TIF")->Picture.Width(), 60);

  Calibrate();
  desktop.ExpectMessage("Reset Axis Definisions ?", Answer::No);
  PasteImage(ws, desktop);
  EXPECT_TRUE(ws.calibration.IsComplete());
  Toolbar_ButtonClick(ws, desktop, "graphize");
  Click(3, 3);
  desktop.ExpectPrompt("");
  desktop.ExpectFile({});
  EXPECT_FALSE(SavePoints(ws, desktop));
  EXPECT_EQ(desktop.FileQuestions.back().FileName, "untitled.dat");
}

TEST_F(WorkspaceTest, AFormatThatHidesPixelsIsToldOnceTheDataFileIsWritten) {
  OpenAndCalibrate();
  Click(30, 20);
  ws.settings.XDecimals = 0;
  BuildFormats(ws.settings, ws.formats);
  desktop.ExpectPrompt("");
  desktop.ExpectFile(folder.Path() / "few.dat");
  desktop.ExpectMessage("1 decimal for X would show them");
  EXPECT_TRUE(SavePoints(ws, desktop));
  EXPECT_EQ(desktop.Messages[0].Icon, MessageIcon::Information);
  EXPECT_EQ(test::BytesOf(folder.Path() / "few.dat"), "2.E+01\t2.50000E+01\r\n");
}

TEST_F(WorkspaceTest, SavedPicturesHoldTheBasePicture) {
  OpenAndCalibrate();
  SetPixel(ws.plot, 10, 10, kBlack);
  desktop.ExpectFile(folder.Path() / "out.bmp");
  SaveImageAs(ws, desktop);
  EXPECT_EQ(desktop.FileQuestions[0].FileName, "plot.bmp");
  EXPECT_EQ(desktop.FileQuestions[0].FilterIndex, 3);
  EXPECT_FALSE(IsBlackPixel(LoadPicture(folder.Path() / "out.bmp")->Picture.Row(10)[10]));
  EXPECT_TRUE(IsBlack(ws.plot, 10, 10)) << "the mark is back";

  desktop.ExpectFile(folder.Path() / "vanished" / "out.tif");
  desktop.ExpectMessage("out.tif");
  SaveImageAs(ws, desktop);
}

TEST_F(WorkspaceTest, ModeButtonsAreExclusiveAndShowTheirPanel) {
  OpenAndCalibrate();
  EXPECT_TRUE(ws.readOut.ShowError);
  for (const char* key : {"axisdef", "graphize", "blocktest", "drawerase", "gridbuster"}) {
    Toolbar_ButtonClick(ws, desktop, key);
    for (const Mode mode : kModes) EXPECT_EQ(IsPressed(ws, ModeKey(mode)), ModeKey(mode) == key);
    EXPECT_EQ(ws.window.AxisPanelShown, std::string_view(key) == "axisdef") << key;
    EXPECT_TRUE(ws.calibration.IsComplete()) << "showing the axes keeps them";
  }
  EXPECT_EQ(ws.status.Status,
            "Click LEFT for X and RIGHT for Y grid lines, SHIFT click for Auto mode");
  Toolbar_ButtonClick(ws, desktop, "AXISDEF");
  EXPECT_TRUE(IsPressed(ws, "gridbuster")) << "keys are compared exactly";
  ReleaseButtons(ws, desktop);
  for (const Mode mode : kModes) EXPECT_FALSE(IsPressed(ws, ModeKey(mode)));
  EXPECT_EQ(ws.status.Status, " ") << "the prompt goes with its mode";
  for (const char* key : {"gridbuster", "graphize"}) Toolbar_ButtonClick(ws, desktop, key);
  Plot_MouseMove(ws, desktop, 0, 0, 30, 30);
  EXPECT_EQ(ws.status.Hint, ModeHint(Mode::Graphize));
}

TEST_F(WorkspaceTest, ClicksCaptureWhatTheReadOutShows) {
  OpenAndCalibrate();
  Click(25, 25);
  EXPECT_EQ(ws.store.ListX[1], 20);
  EXPECT_EQ(ws.store.ListY[1], 20);
  Plot_MouseDown(ws, desktop, kRightButton, 0, 30, 30);
  Plot_MouseUp(ws, desktop, kRightButton, 0, 30, 30);
  EXPECT_EQ(ws.store.CaptureCount, 1) << "a right press never captures by itself";
  ws.mouse.SuppressNextClick = true;
  Click(26, 26);
  EXPECT_EQ(ws.store.CaptureCount, 1) << "swallowed once";
  Click(26, 26);
  EXPECT_EQ(ws.store.CaptureCount, 2);

  SetPixel(ws.plot, 31, 30, kBlack);
  ws.settings.SnapMode = 3;
  ws.settings.SnapDistance = 3;
  Click(29, 29);
  EXPECT_EQ(ws.store.ListX[3], 26);
  EXPECT_EQ(ws.store.ListY[3], 15);
}

TEST_F(WorkspaceTest, ARefusedRowIsRetriedByTheNextClick) {
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  Toolbar_ButtonClick(ws, desktop, "axisdef");
  desktop.ExpectMessage("Please enter values");
  Click(5, 45);
  EXPECT_EQ(ws.calibration.CurrentRow, 0);
  Calibrate();
}

TEST_F(WorkspaceTest, ADefinitionThatWasBegunSurvivesOtherModes) {
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  const auto lookElsewhere = [&] {
    Toolbar_ButtonClick(ws, desktop, "blocktest");
    Toolbar_ButtonClick(ws, desktop, "axisdef");
  };
  Toolbar_ButtonClick(ws, desktop, "axisdef");
  ws.axisPanel.Rows[0].XText = "7";
  lookElsewhere();
  EXPECT_EQ(ws.axisPanel.Rows[0].XText, "7") << "typed before the first click";
  ws.axisPanel.Rows[0].YText = "0";
  Click(5, 45);
  Plot_DblClick(ws, desktop);
  EXPECT_EQ(ws.calibration.CurrentRow, 1) << "nor has the empty row been complained about";
  ws.axisPanel.Rows[1].XText = ws.axisPanel.Rows[2].YText = "40";
  Click(45, 45);
  Click(5, 5);
  ASSERT_TRUE(ws.calibration.IsComplete());
  Do(ws, desktop, RedefineStep{0});
  lookElsewhere();
  EXPECT_EQ(ws.axisPanel.Rows[2].YText, "40");
  EXPECT_EQ(ws.calibration.CurrentRow, 0);
}

TEST_F(WorkspaceTest, AnImpossibleAxisIsToldInOneBox) {
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  Calibrate();
  Toolbar_ButtonClick(ws, desktop, "graphize");
  const struct {
    bool Log;
    const char* Origin;
    const char* Fault;
  } cases[] = {{true, "0", "X origin must be positive for Log Axis"},
               {true, "1", "X axis value must be positive for Log Axis"},
               {false, "-3e38", "Overflow"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Fault);
    ws.calibration.XLog = c.Log;
    ws.calibration.ValueX[0] = std::strtof(c.Origin, nullptr);
    ws.calibration.ValueX[1] = c.Log ? -5 : 3e38f;
    for (int visit = 0; visit < 2; ++visit) {
      Plot_MouseLeave(ws);
      desktop.ExpectMessage(c.Fault);
      for (float x = 20; x < 30; ++x) {
        Plot_MouseMove(ws, desktop, 0, 0, x, 20);
        EXPECT_NE(ws.status.Status.find(c.Fault), std::string::npos);
      }
    }
    desktop.ExpectMessage(c.Fault);
    Click(22, 22);
    EXPECT_EQ(ws.store.CaptureCount, 0) << "what was read before is not captured";
  }

  // What the click defines is told there, and not again when the pointer moves on.
  const auto define = [&](const char* x) {
    Do(ws, desktop, RedefineStep{1});
    Toolbar_ButtonClick(ws, desktop, "axisdef");
    ws.axisPanel.Rows[1].XText = x;
    Click(45, 45);
    Click(5, 5);
    EXPECT_TRUE(ws.calibration.IsComplete());
    EXPECT_EQ(ws.status.Hint, Instruction(ws.axisPanel)) << "nothing is asked for any more";
    Plot_MouseMove(ws, desktop, 0, 0, 20, 20);
  };
  ws.calibration.ValueX[0] = 2;
  desktop.ExpectMessage("X axis value can't be the same as the origin's");
  define("2");
  ws.calibration.XLog = true;
  desktop.ExpectMessage("X axis value must be positive for Log Axis");
  define("-5");
  SwitchXLog(ws, desktop, false);
  desktop.ExpectMessage("X axis value must be positive for Log Axis");
  SwitchXLog(ws, desktop, true);
  Plot_MouseMove(ws, desktop, 0, 0, 20, 20);
}

TEST_F(WorkspaceTest, AHandThatShakesDoesNotMoveASnappedPoint) {
  OpenAndCalibrate();
  SetPixel(ws.plot, 31, 30, kBlack);
  ws.settings.SnapMode = 3;
  ws.settings.SnapDistance = 3;
  ws.window.DragDistance = 10;
  const auto pressAndMove = [&](std::initializer_list<float> columns) {
    Plot_MouseMove(ws, desktop, 0, 0, 29, 29);
    Plot_MouseDown(ws, desktop, kLeftButton, 0, 29, 29);
    for (const float x : columns) Plot_MouseMove(ws, desktop, kLeftButton, 0, x, 29);
    return ws.store.CurrentPixelX;
  };
  EXPECT_EQ(pressAndMove({28, 38}), 31);
  EXPECT_EQ(pressAndMove({39}), 39) << "dragged away";
  EXPECT_EQ(pressAndMove({39, 30}), 30) << "and back";
  EXPECT_EQ(pressAndMove({30}), 31);
  Plot_MouseMove(ws, desktop, 0, 0, 30, 29);
  EXPECT_EQ(ws.store.CurrentPixelX, 30) << "the button is up";
  ws.settings.SnapMode = 0;
  EXPECT_EQ(pressAndMove({30}), 30);
}

TEST_F(WorkspaceTest, TheOverlayIsAboveTheRasterAndSkipsWhatIsOutside) {
  OpenAndCalibrate();
  Click(25, 25);
  Click(35, 15);
  ws.store.ListX[2] = 1e30f;
  ToggleOverlay(ws);
  const PlotOverlay all = Plot_Paint(ws, {0, 0, 59, 49});
  ASSERT_EQ(all.DataPoints.size(), 1u);
  EXPECT_EQ(all.DataPoints[0].X, 25);
  EXPECT_EQ(all.DataPoints[0].Y, 25);
  ASSERT_TRUE(all.LastPoint);
  EXPECT_EQ(all.LastPoint->Y, 15);
  EXPECT_TRUE(Plot_Paint(ws, {40, 30, 59, 49}).DataPoints.empty());
  ToggleLastPoint(ws);
  EXPECT_FALSE(Plot_Paint(ws, {0, 0, 59, 49}).LastPoint);
  EXPECT_TRUE(ws.plot.Marks.empty());
}

TEST_F(WorkspaceTest, BlockersAndPenWorkThroughTheMouse) {
  OpenAndCalibrate();
  ws.blockSize = 3;
  Toolbar_ButtonClick(ws, desktop, "blocktest");
  Click(20, 30);
  EXPECT_EQ(GetPixel(ws.plot, 20, 30), PaletteColour(ws.settings.BlockColor));
  EXPECT_TRUE(CanPress(ws, "undo"));
  Plot_Click(ws, desktop);
  EXPECT_EQ(ws.blockers.Count, 1) << "a click without a press paints nothing";

  Toolbar_ButtonClick(ws, desktop, "drawerase");
  EXPECT_EQ(GetPixel(ws.plot, 20, 30), kWhite) << "the edit modes show the picture alone";
  Plot_MouseDown(ws, desktop, kLeftButton, 0, 10, 10);
  Plot_MouseMove(ws, desktop, kLeftButton, 0, 30, 10);
  Plot_MouseUp(ws, desktop, kLeftButton, 0, 30, 10);
  EXPECT_TRUE(IsBlack(ws.plot, 20, 10));
  Toolbar_ButtonClick(ws, desktop, "graphize");
  EXPECT_EQ(GetPixel(ws.plot, 20, 30), PaletteColour(ws.settings.BlockColor));
  EXPECT_TRUE(IsBlack(ws.plot, 20, 10)) << "drawn into the picture";
  ws.status.Status = "5 Y grid lines removed";
  Do(ws, desktop, UndoEditStep{});
  EXPECT_EQ(ws.status.Status, "Undo completed");
  EXPECT_FALSE(IsBlack(ws.plot, 20, 10));
  EXPECT_EQ(GetPixel(ws.plot, 20, 30), PaletteColour(ws.settings.BlockColor));
  Toolbar_ButtonClick(ws, desktop, "undo");
  EXPECT_EQ(ws.blockers.Count, 0);
  EXPECT_EQ(GetPixel(ws.plot, 20, 30), kWhite);
}

TEST_F(WorkspaceTest, ATestOfATraceLeavesNothingInItsWay) {
  Raster picture = Raster::Filled(60, 50, kWhitePixel);
  for (int x = 8; x < 52; ++x) picture.Row(20)[x] = kBlackPixel;
  SavePicture(folder.Path() / "line.bmp", 3, 0, picture);
  for (const char* next : {"graphize", "axisdef", "drawerase", ""}) {
    if (ws.plot.IsPresent()) desktop.ExpectMessage(kReset, Answer::Yes);
    OpenPicture(ws, desktop, folder.Path() / "line.bmp");
    Calibrate();
    Toolbar_ButtonClick(ws, desktop, "blocktest");
    Click(40, 20);
    Do(ws, desktop, TraceStep{8, 20, {}});
    ASSERT_FALSE(IsBlack(ws.plot, 10, 20));
    *next ? Toolbar_ButtonClick(ws, desktop, next) : ReleaseButtons(ws, desktop);
    Toolbar_ButtonClick(ws, desktop, "graphize");
    EXPECT_EQ(GetPixel(ws.plot, 40, 20), PaletteColour(ws.settings.BlockColor)) << next;
    Do(ws, desktop, TraceStep{8, 20, {}});
    EXPECT_GT(ws.store.CaptureCount, 20) << next << ": " << ws.status.Status;
  }
}

TEST_F(WorkspaceTest, TheKeyboardMovesThePointerOnlyOverThePlot) {
  EXPECT_FALSE(MovePointerByKey(ws, desktop, PointerKey::Right, 0));
  desktop.PointerOver = true;
  struct Case {
    PointerKey key;
    int shift, x, y;
  };
  for (const Case& c :
       {Case{PointerKey::PageUp, 0, 1, -1}, Case{PointerKey::PageDown, 0, 1, 1},
        Case{PointerKey::End, 0, -1, 1}, Case{PointerKey::Home, 0, -1, -1},
        Case{PointerKey::Right, kCtrlKey, 10, 0}, Case{PointerKey::Right, kShiftKey, 1, 0},
        Case{PointerKey::Up, kShiftKey | kCtrlKey, 0, -1}}) {
    desktop.PointerX = desktop.PointerY = 0;
    EXPECT_TRUE(MovePointerByKey(ws, desktop, c.key, c.shift));
    EXPECT_EQ(desktop.PointerX, c.x);
    EXPECT_EQ(desktop.PointerY, c.y);
  }
  for (int i = 0; i < 30; ++i) StepZoom(ws, 1);
  EXPECT_EQ(ws.zoom.Factor, ZoomWindow::kMaximum);
}

TEST_F(WorkspaceTest, WhatTheStatusSaidStaysReadableBesideIt) {
  OpenAndCalibrate();
  EXPECT_EQ(ws.status.Hint, ModeHint(Mode::Graphize));
  ws.tracer.Xrange = "2 columns";
  Plot_MouseDown(ws, desktop, kRightButton, 0, 20, 20);
  const std::string told =
      "No curve here: the tracers follow only black pixels; X increment was read as 2";
  EXPECT_EQ(ws.status.Status, told);
  for (int move = 0; move < 2; ++move) Plot_MouseMove(ws, desktop, 0, 0, 21, 20);
  EXPECT_EQ(ws.status.Status, " ");
  EXPECT_EQ(ws.status.Hint, told);
  Click(30, 30);
  EXPECT_EQ(ws.status.Hint, ModeHint(Mode::Graphize));
  Plot_MouseDown(ws, desktop, kRightButton, 0, 20, 20);
  Plot_MouseMove(ws, desktop, 0, 0, 21, 20);
  EXPECT_TRUE(ws.status.Hint.starts_with("No curve here"));
  Do(ws, desktop, ClearDataStep{});
  EXPECT_EQ(ws.status.Hint, ModeHint(Mode::Graphize)) << "what was told before is of no use";
  Toolbar_ButtonClick(ws, desktop, "gridbuster");
  const std::string prompt = ws.status.Status;
  Plot_MouseMove(ws, desktop, 0, 0, 21, 20);
  EXPECT_EQ(ws.status.Hint, prompt);
  ReleaseButtons(ws, desktop);
  EXPECT_EQ(ws.status.Hint, "");
}

TEST_F(WorkspaceTest, WhatComesNextIsSaidFromThePictureToTheFile) {
  const auto next = [&] { return NextStepOf(ws); };
  EXPECT_EQ(next().Present, 0);
  EXPECT_TRUE(next().Hint.starts_with("Open"));
  OpenPicture(ws, desktop, Picture("plot.bmp"));
  EXPECT_EQ(next().Present, 1);
  EXPECT_TRUE(next().Hint.find("Define Axis") != std::string::npos);
  Toolbar_ButtonClick(ws, desktop, "axisdef");
  EXPECT_EQ(next().Present, 1);
  EXPECT_EQ(next().Hint, ws.status.Hint);
  Calibrate();
  Toolbar_ButtonClick(ws, desktop, "graphize");
  EXPECT_EQ(next().Present, 2);
  EXPECT_EQ(next().Hint, ModeHint(Mode::Graphize));
  Click(30, 30);
  EXPECT_EQ(next().Present, 3);
  EXPECT_TRUE(next().Hint.starts_with(ModeHint(Mode::Graphize)) && next().Hint.ends_with("Save"));
  Do(ws, desktop, NewCurveStep{});
  EXPECT_TRUE(next().Hint.ends_with("to save \"curve 1\": choose it")) << "the new one is empty";
  ReleaseButtons(ws, desktop);
  EXPECT_EQ(next().Hint, "Choose the curve \"curve 1\" to save its points");
  Do(ws, desktop, SelectCurveStep{"curve 1"});
  EXPECT_EQ(next().Present, 3);
  EXPECT_TRUE(next().Hint.starts_with("Save"));
  NoteSaved(ws.store);
  EXPECT_EQ(next().Hint, "All points are saved");
  SwitchNext(ws);
  EXPECT_FALSE(IsNextShown(ws));
}

TEST_F(WorkspaceTest, TheReductionIsPreviewedInTheMiddleOfWhatIsSeen) {
  OpenAndCalibrate();
  SetPicture(ws.plot, Raster::Filled(2000, 1600, kWhitePixel));
  ResizeView(ws, 600, 400);
  ShowFromCorner(ws.view, 2000, 1600);
  for (const double zoom : {0.5, 4.0}) {
    SetZoom(ws.view, zoom, 0, 0);
    ShowPlace(ws, 900, 700);
    ShowBlackWhite(ws);
    EXPECT_NEAR(ws.blackWhite.Left + BlackWhiteForm::kPartWidth / 2, 900, 2) << zoom;
    EXPECT_NEAR(ws.blackWhite.Top + BlackWhiteForm::kPartHeight / 2, 700, 2) << zoom;
    CloseForm(ws, desktop);
  }
}

TEST_F(WorkspaceTest, DoubtfulPointsAreToldShownAndRemoved) {
  OpenAndCalibrate();
  Raster picture = Raster::Filled(60, 50, kWhitePixel);
  for (int x = 5; x < 55; ++x) picture.Row(20)[x] = picture.Row(40)[x] = kBlackPixel;
  SetPicture(ws.plot, std::move(picture));
  Do(ws, desktop, TraceStep{8, 20, {}});
  const int traced = ws.store.ListCount;
  EXPECT_EQ(ws.inkCheck.Text, std::to_string(traced) + " points: all on ink");
  EXPECT_FALSE(CanRemoveDoubtful(ws));
  CheckOpened(ws);
  EXPECT_EQ(ws.inkCheck.Text, "") << "nothing is doubtful in what was opened";
  Do(ws, desktop, PointStep{30, 30});
  CheckOpened(ws);
  EXPECT_EQ(ws.inkCheck.Text, std::to_string(traced + 1) + " points: 1 not on ink");
  ShowDoubtful(ws);
  EXPECT_TRUE(IsDoubtfulShown(ws));
  EXPECT_EQ(ws.store.Page.SelectionStart, traced + 1);
  ShowDoubtful(ws);
  EXPECT_FALSE(IsDoubtfulShown(ws));
  const Colour mark = PaletteColour(ws.settings.TraceColor);
  SetPixel(ws.plot, 30, 30, mark);
  RemoveDoubtful(ws, desktop);
  EXPECT_EQ(GetPixel(ws.plot, 30, 30), kWhite) << "its mark goes with it";
  EXPECT_EQ(GetPixel(ws.plot, 30, 20), mark);
  EXPECT_EQ(ws.store.ListCount, traced);
  EXPECT_EQ(ws.inkCheck.Text, std::to_string(traced) + " points: all on ink");
  EXPECT_TRUE(Is<DeletePointsStep>(ws.recipe.Steps.back()));
  EXPECT_TRUE(IsRemovedLast(ws));
  Do(ws, desktop, EraseStep{{20, {{30, 20}}}});
  RenewInkCheck(ws);
  EXPECT_TRUE(CanRemoveDoubtful(ws)) << "the picture has changed: " << ws.inkCheck.Text;
  EXPECT_FALSE(IsRemovedLast(ws));
  ShowDoubtful(ws);
  Do(ws, desktop, SelectedRows(ws.store));
  RenewInkCheck(ws);
  EXPECT_TRUE(ws.inkCheck.Text.starts_with(std::to_string(ws.store.ListCount) + " points"))
      << "each once: " << ws.inkCheck.Text;
  const PointStore checked = ws.store;
  const std::string before = ws.inkCheck.Text;
  Do(ws, desktop, ClearDataStep{});
  RenewInkCheck(ws);
  EXPECT_EQ(ws.inkCheck.Text, "") << "there are no points";
  ws.store = checked;
  RenewInkCheck(ws);
  EXPECT_EQ(ws.inkCheck.Text, before) << "Undo has brought them back";
  Do(ws, desktop, ClearDataStep{});
  RenewInkCheck(ws);
  AskForCheck(ws);
  EXPECT_NE(ws.status.Status.find("no places"), std::string::npos);
}

TEST_F(WorkspaceTest, ThePointerIsPutWhereItWasOrIntoWhatIsSeen) {
  OpenAndCalibrate();
  ResizeView(ws, 40, 30);
  Plot_MouseMove(ws, desktop, 0, 0, 12, 13);
  PutPointer(ws, desktop);
  EXPECT_EQ(desktop.PointerX, 12);
  EXPECT_EQ(desktop.PointerY, 13);
  ScrollTo(ws.view, 20, 20);
  PutPointer(ws, desktop);
  EXPECT_EQ(desktop.PointerX, 39);
  EXPECT_EQ(desktop.PointerY, 34);
  desktop.PointerMoves = false;
  PutPointer(ws, desktop);
  EXPECT_NE(ws.status.Status, " ");
}

TEST_F(WorkspaceTest, ClosingAsksAboutPointsThatAreNotSaved) {
  const auto expectQuestion = [this](Answer answer) {
    desktop.ExpectMessage("Do you want to save graphized points ?", answer);
  };
  const auto save = [this](const std::filesystem::path& path) {
    desktop.ExpectPrompt("run 1");
    desktop.ExpectFile(path);
  };
  const auto out = folder.Path() / "Out.dat";
  EXPECT_TRUE(MayClose(ws, desktop));
  OpenAndCalibrate();
  Click(20, 20);
  expectQuestion(Answer::Cancel);
  EXPECT_FALSE(MayClose(ws, desktop));
  expectQuestion(Answer::No);
  EXPECT_TRUE(MayClose(ws, desktop));
  expectQuestion(Answer::Yes);
  save(folder.Path() / "no" / "out.dat");
  desktop.ExpectMessage("Error while saving. \r\n");
  EXPECT_FALSE(MayClose(ws, desktop)) << "what could not be saved is not thrown away";

  desktop.ExpectMessage("Total curve length");
  Do(ws, desktop, CurveLengthStep{});
  ASSERT_EQ(ws.store.ListCount, 0) << "one point has no length";
  expectQuestion(Answer::Yes);
  save(out);
  EXPECT_TRUE(MayClose(ws, desktop));
  EXPECT_EQ(test::BytesOf(out), "run 1\r\n1.50000E+01\t2.50000E+01\r\n");
  EXPECT_EQ(ws.dataFileName, LowerCase(out.string()));
  EXPECT_TRUE(MayClose(ws, desktop)) << "all is saved";

  Click(30, 10);
  Click(10, 30);
  save(out);
  SavePoints(ws, desktop);
  EXPECT_TRUE(MayClose(ws, desktop));
  Do(ws, desktop, SortStep{SortOrder::Ascending});
  expectQuestion(Answer::Cancel);
  EXPECT_FALSE(MayClose(ws, desktop)) << "the rows are in another order";
  Do(ws, desktop, UndoListStep{});
  EXPECT_TRUE(MayClose(ws, desktop)) << "as it was saved";
  Do(ws, desktop, ClearDataStep{});
  EXPECT_TRUE(MayClose(ws, desktop));
}

TEST_F(WorkspaceTest, EveryCurveIsAskedAboutAndMarked) {
  Do(ws, desktop, RenameCurveStep{"A/a"});
  Do(ws, desktop, NewCurveStep{});
  Do(ws, desktop, ShowCurveStep{false});
  OpenAndCalibrate();
  EXPECT_EQ(ws.recipe.Steps.size(), 9u) << "curves that were there before are in the recipe";
  Click(20, 20);
  Do(ws, desktop, ShowCurveStep{true});
  Do(ws, desktop, NewCurveStep{" C "});
  EXPECT_FALSE(CanSavePoints(ws));
  EXPECT_FALSE(ws.commands.Sort || ws.commands.ClearSelected);
  desktop.ExpectMessage("There is a curve \"A/a\" already.");
  Do(ws, desktop, RenameCurveStep{"A/a"});
  Do(ws, desktop, SelectCurveStep{"A/a"});
  Click(30, 30);
  Click(31, 30);
  const auto marks = [&](int left, int right) {
    std::string text;
    for (const auto& [colour, points] : Plot_Paint(ws, {left, 0, right, 49}).Curves)
      text += std::to_string(points.size()) + (colour == kCurveColours[0] ? "a" : "b");
    return text;
  };
  EXPECT_EQ(marks(0, 59), "1b2a") << "the active one above the other";
  EXPECT_EQ(marks(30, 59), "2a");
  EXPECT_EQ(marks(31, 59), "1a");
  Do(ws, desktop, ClearRowsStep{2, 2});
  EXPECT_EQ(marks(0, 59), "1b1a") << "not what the list has no longer";
  Do(ws, desktop, UndoListStep{});
  Do(ws, desktop, ShowCurveStep{false});
  EXPECT_EQ(marks(0, 59), "1b");
  EXPECT_FALSE(Plot_Paint(ws, {0, 0, 59, 49}).LastPoint) << "nothing of it is seen";
  const std::vector<Step> kWork = {PointStep{40, 30}, MovePointsStep{{3}, 1, 0}};
  for (const Step& work : kWork) {
    ASSERT_TRUE(Do(ws, desktop, work).IsDone());
    EXPECT_TRUE(ActiveCurve(ws.curves).Shown) << "nothing is captured or moved unseen";
    Do(ws, desktop, ShowCurveStep{false});
  }
  Do(ws, desktop, DeletePointsStep{{3}});
  EXPECT_FALSE(IsBlackPixel(0xff000000u | static_cast<unsigned>(GetPixel(ws.plot, 30, 30))));

  desktop.ExpectMessage("points ?\r\n\r\nNot saved: A/a, curve 2.", Answer::Yes);
  for (const char* name : {"a.dat", "b.dat"}) {
    desktop.ExpectPrompt("");
    desktop.ExpectFile(folder.Path() / name);
  }
  EXPECT_TRUE(MayClose(ws, desktop));
  EXPECT_EQ(desktop.FileQuestions[0].FileName, "plot - A_a.dat");
  EXPECT_EQ(test::BytesOf(folder.Path() / "a.dat").size(),
            2 * test::BytesOf(folder.Path() / "b.dat").size());
  EXPECT_TRUE(MayClose(ws, desktop));
  desktop.ExpectMessage("X,Y data ?\r\n\r\nOf \"curve 2\"; the other curves stay.", Answer::Yes);
  Do(ws, desktop, ClearDataStep{.Ask = true});
  EXPECT_EQ(ExportCurves(ws)[1].Rows.size(), 2u);
  Do(ws, desktop, ResetStep{});
  EXPECT_EQ(ws.curves.Curves.size(), 1u);
  EXPECT_EQ(ws.curves.Curves[0].Name, "curve 1");
}

TEST_F(WorkspaceTest, SettingsComeFromTheFileAndGoBackToIt) {
  std::ofstream(ws.settingsPath) << "[options]\nrefreshlist=1\nOverlayData=1\nTrace=2\nMine=7\n"
                                    "[Data Format]\nXExp=0\nXDecimals=2\n";
  ws.settings.SnapDistance = 25;
  Get_INI(ws, desktop);
  EXPECT_EQ(ws.settings.RefreshList, -1);
  EXPECT_FALSE(ws.commands.Overlay);
  EXPECT_EQ(ws.formats.X, "0.00");
  EXPECT_EQ(ws.tracer.Yrange, "2");
  EXPECT_EQ(ws.window.Placement.State, WindowState::Maximised);
  EXPECT_EQ(ws.window.Placement.Width, 17280);
  ws.commands.Overlay = true;
  Write_INI(ws);
  std::ifstream file(ws.settingsPath);
  const std::string text(std::istreambuf_iterator<char>(file), {});
  for (const char* line : {"refreshlist=-1\n", "OverlayData=1\n", "Mine=7\n", "SnapDistance=10\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line << text;

  ws.settings.SnapDistance = 25;
  DefaultSettings(ws);
  EXPECT_EQ(ws.settings.SnapDistance, 25);
  EXPECT_EQ(ws.settings.XDecimals, 5);
  EXPECT_EQ(ws.formats.X, "0.00000E+00");

  std::ofstream(ws.settingsPath) << "[Data Format]\nXDigits=0\n[Options]\nXJump=99999\n";
  desktop.ExpectMessage("XDigits");
  Get_INI(ws, desktop);
  EXPECT_EQ(ws.settings.XJump, 50);
  EXPECT_EQ(ws.formats.X, "0.00000E+00") << "the last patterns stay";
}

TEST_F(WorkspaceTest, OnePlaceEndsEveryCommand) {
  desktop.ExpectMessage("Overflow");
  const CommandEnd end = RunCommand(ws, desktop, [&] {
    ws.window.Hourglass = ws.mouse.TraceRunning = true;
    EXPECT_EQ(RunCommand(ws, desktop, [] { FAIL() << "nested"; }), CommandEnd::Dropped);
    throw RunTimeError("Overflow");
  });
  EXPECT_EQ(end, CommandEnd::Failed);
  EXPECT_FALSE(ws.window.Hourglass || ws.mouse.TraceRunning || ws.commandRuns);
  EXPECT_EQ(desktop.Messages[0].Icon, MessageIcon::Critical);
  EXPECT_EQ(RunCommand(ws, desktop, [] {}), CommandEnd::Done);
}

}  // namespace
}  // namespace graphize
