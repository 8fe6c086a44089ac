// The scanner commands on the whole workspace, with a virtual scanner and without a window.

#include "commands/scan_commands.h"
#include "raster/size_limits.h"

#include <gtest/gtest.h>

#include "codecs/picture_probe.h"
#include "commands/forms.h"
#include "commands/picture_commands.h"
#include "commands/shown_picture.h"
#include "commands/start_and_close.h"
#include "commands/toolbar.h"
#include "support/calibrated.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"
#include "support/virtual_scanner.h"

namespace graphize {
namespace {

constexpr const char* kReset = "Clear data and reset axis definisions ?";

class ScanCommands : public ::testing::Test {
 protected:
  ScanCommands() {
    Start(ws);
    ws.commands.Scanner = true;
  }

  void Start(Workspace& workspace) {
    workspace.settingsPath = folder / "graphize.ini";
    workspace.window.ScreenWidth = 1280;
    workspace.window.ScreenHeight = 1024;
    StartUp(workspace, desktop);
  }

  void OpenOldPicture() { LoadImage(ws, desktop, Raster::Filled(40, 30, kWhitePixel), "old.bmp"); }

  /// The old picture is there, and the scanner is free for anybody.
  void ExpectOldPictureAndFreeScanner() {
    EXPECT_EQ(ws.form, Form::None);
    EXPECT_EQ(ws.scanner.Open, nullptr);
    EXPECT_EQ(ws.window.Caption, "Graphize - old.bmp (40x30)");
    EXPECT_TRUE(ws.commands.Picture);
    EXPECT_FALSE(ws.window.Hourglass);
    scanner.Configure({});
    EXPECT_FALSE(test::ScanimagePage().IsEmpty());
  }

  test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  test::VirtualScanner scanner;
  Workspace ws;
};

TEST_F(ScanCommands, TheChosenSourceIsRememberedAndAllElseInTheFileStays) {
  scanner.Configure({"number_of_devices 3"});
  test::WriteBytes(ws.settingsPath, "; mine\n[Options]\nZoom=0\n");
  SelectSource(ws, desktop);
  EXPECT_EQ(ws.form, Form::SelectSource);
  ASSERT_EQ(ws.source.Sources.size(), 3u);
  ws.source.Selected = 2;
  ChooseSource(ws, desktop);
  EXPECT_EQ(ws.form, Form::None);
  EXPECT_EQ(
      test::BytesOf(ws.settingsPath),
      "; mine\n[Options]\nZoom=0\n\n[Scanner]\nSource=test:2\nLabel=Noname%20frontend-tester\n");
  Workspace later;
  Start(later);
  EXPECT_EQ(later.scanner.Source.Name, "test:2");
  EXPECT_EQ(later.scanner.Source.Label, "Noname frontend-tester");
  Aquire(ws, desktop);
  EXPECT_EQ(ws.scan.Device, "Noname frontend-tester");
  CloseForm(ws, desktop);

  // The search finds it selected again; without any scanner there is nothing to choose.
  SelectSource(ws, desktop);
  EXPECT_EQ(ws.source.Selected, 2);
  scanner.Unplug();
  LookForSources(ws, desktop, true);
  EXPECT_TRUE(ws.source.Network);
  ChooseSource(ws, desktop);
  EXPECT_EQ(ws.scanner.Source.Name, "test:2");
  EXPECT_EQ(ws.form, Form::SelectSource);
}

TEST_F(ScanCommands, ASettingsFileThatCannotBeWrittenIsTold) {
  std::filesystem::create_directory(ws.settingsPath);
  SelectSource(ws, desktop);
  desktop.ExpectMessage("Select Source Error: The settings file");
  ChooseSource(ws, desktop);
  EXPECT_EQ(desktop.Messages.back().Caption, "Select Source Error");
  EXPECT_EQ(ws.scanner.Source.Name, "test:0") << "until the program ends";
}

TEST_F(ScanCommands, APageBecomesThePicture) {
  OpenOldPicture();
  ws.plot.PersistentDrawing = true;
  ws.mode = Mode::DrawErase;
  EXPECT_TRUE(CanPress(ws, "aquire"));
  Toolbar_ButtonClick(ws, desktop, "aquire");
  EXPECT_EQ(ws.mode, Mode::None);
  EXPECT_FALSE(ws.plot.PersistentDrawing);
  ASSERT_EQ(ws.form, Form::Scan);
  ScanSettings settings = ws.scan.Can.Now;
  settings.Mode = "Gray";
  settings.Area = {0, 0, 50, 20};
  ChangeScan(ws, desktop, settings);
  TypeResolution(ws, desktop, "none");
  TypeResolution(ws, desktop, "127 dpi");
  EXPECT_EQ(ws.scan.Size, "250 x 100 pixels");
  PreviewScan(ws, desktop);
  EXPECT_GT(ws.scan.Preview.Width(), 500);
  EXPECT_EQ(ws.scan.Size, "250 x 100 pixels") << "the preview changes nothing";
  EXPECT_EQ(ws.window.Caption, "Graphize - old.bmp (40x30)");

  AcquireImage(ws, desktop);
  EXPECT_EQ(ws.window.Caption, "Graphize - Scanned Plot (250x100)");
  EXPECT_EQ(ws.status.SizeX + ws.status.SizeY, "W=250H=100");
  EXPECT_EQ(ws.picture.Name, "untitled.dat");
  EXPECT_TRUE(ws.picture.WithoutFile && !ws.picture.FromFile);
  EXPECT_FALSE(CanReload(ws));
  EXPECT_TRUE(ws.commands.Picture && ws.plot.PersistentDrawing);
  EXPECT_EQ(ws.form, Form::None);
  const Raster expected = test::ScanimagePage("--mode Gray --resolution 127 -x 50 -y 20");
  ASSERT_EQ(expected.Width(), 250);
  EXPECT_TRUE(std::equal(expected.Pixels(), expected.Pixels() + expected.PixelCount(),
                         ws.plot.Pixels.Pixels()));
  desktop.ExpectFile({});
  SaveImageAs(ws, desktop);
  EXPECT_EQ(desktop.FileQuestions.back().FileName, "untitled.tif");

  // The next page of the same kind needs no new choice.
  Aquire(ws, desktop);
  EXPECT_EQ(ws.scan.Size, "250 x 100 pixels");
  EXPECT_TRUE(ws.scan.Preview.IsEmpty());
  CloseForm(ws, desktop);
  EXPECT_EQ(ws.scanner.Open, nullptr);
}

TEST_F(ScanCommands, TheQuestionComesOnlyForAnAxisAndNoKeepsAll) {
  OpenOldPicture();
  ws.calibration = test::PixelCalibration();
  ASSERT_TRUE(ws.calibration.AnyDefined());
  desktop.ExpectMessage(kReset, Answer::No);
  Aquire(ws, desktop);
  AcquireImage(ws, desktop);
  EXPECT_TRUE(ws.calibration.AnyDefined());
  desktop.ExpectMessage(kReset, Answer::Yes);
  Aquire(ws, desktop);
  EXPECT_FALSE(ws.calibration.AnyDefined());
  EXPECT_TRUE(ws.commands.Picture) << "the picture that is there stays usable";
  CloseForm(ws, desktop);
  ws.commands.Scanner = false;
  Aquire(ws, desktop);
  EXPECT_EQ(ws.form, Form::None);
}

TEST_F(ScanCommands, AFailureIsToldAndTheOldPictureStays) {
  OpenOldPicture();
  scanner.Configure({"read-status-code \"SANE_STATUS_COVER_OPEN\""});
  for (const auto& scan : {AcquireImage, PreviewScan}) {
    Aquire(ws, desktop);
    desktop.ExpectMessage("Error while scanning: The scanner's cover is open.");
    scan(ws, desktop);
    EXPECT_EQ(desktop.Messages.back().Caption, "Graphize Error");
    EXPECT_EQ(desktop.Messages.back().Text, "Error while scanning: The scanner's cover is open.");
  }
  ExpectOldPictureAndFreeScanner();
}

TEST_F(ScanCommands, AScannerThatIsNotThereIsTold) {
  OpenOldPicture();
  ws.scanner.Source.Name = "test:9";
  desktop.ExpectMessage("Error while scanning: The scanner test:9 was not found.");
  Aquire(ws, desktop);
  ws.scanner.Source = {};
  scanner.Unplug();
  desktop.ExpectMessage("Error while scanning: No scanner was found.");
  Aquire(ws, desktop);
  ExpectOldPictureAndFreeScanner();
}

TEST_F(ScanCommands, APictureThatIsTooLargeGetsTheAdvice) {
  OpenOldPicture();
  scanner.Configure({"geometry_max 1000.0"});
  Aquire(ws, desktop);
  ScanSettings settings = ws.scan.Can.Now;
  settings.Resolution = 1200;
  settings.Area = {0, 0, 900, 10};
  ChangeScan(ws, desktop, settings);
  EXPECT_EQ(ws.scan.Hint, SizeRefusal(ws.scan.Can.Width, ws.scan.Can.Height));
  desktop.ExpectMessage("Error while scanning: The picture is too large");
  AcquireImage(ws, desktop);
  EXPECT_TRUE(desktop.Messages.back().Text.ends_with(
      "\n\rTry to reduce image size or use lower dpi setting."));
  ExpectOldPictureAndFreeScanner();
}

TEST_F(ScanCommands, CancelInMidPageSaysNothing) {
  OpenOldPicture();
  scanner.Configure({"read-delay true", "read-delay-duration 200000", "resolution 200"});
  Aquire(ws, desktop);
  int seen = 0;
  desktop.OnPump = [&] {
    if (ws.scan.Doing != ScanForm::Work::Scan) return;
    seen = std::max(seen, ws.scan.Percent);
    if (seen > 0) desktop.EscapeAfter = 0;
  };
  AcquireImage(ws, desktop);
  EXPECT_GT(seen, 0);
  EXPECT_LT(seen, 100);
  ExpectOldPictureAndFreeScanner();
}

}  // namespace
}  // namespace graphize
