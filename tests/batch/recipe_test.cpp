// Whatever a user does, the recipe of it leads to the same points.

#include "workspace/recipe.h"

#include <gtest/gtest.h>

#include <random>

#include "base/run_time_error.h"
#include "batch/job.h"
#include "codecs/picbuf.h"
#include "data/data_file.h"
#include "data/list_edit.h"
#include "support/calibrated.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"
#include "workspace/capture_commands.h"
#include "workspace/data_commands.h"
#include "workspace/do.h"
#include "workspace/extraction_commands.h"
#include "workspace/image_tools_commands.h"
#include "workspace/options_commands.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/recipe_file.h"
#include "workspace/replay.h"
#include "workspace/run_command.h"
#include "workspace/save_points.h"
#include "workspace/toolbar.h"
#include "workspace/view_commands.h"

namespace graphize {
namespace {

/// A user who does the things that lead to points, in any order, and stops some in the middle.
class User {
 public:
  User(unsigned seed, const std::filesystem::path& picture, const std::filesystem::path& saved)
      : random_(seed), picture_(picture) {
    StartReplay(ws);
    desktop_ = test::QuietDesktop();
    desktop_.ShowMessage = [this](const Message& message) {
      return message.Buttons == MessageButtons::Ok ? Answer::Ok
             : Chance(2)                           ? Answer::Yes
                                                   : Answer::No;
    };
    desktop_.EscapeHeld = [this] { return escapeIn_ >= 0 && --escapeIn_ < 0; };
    desktop_.Prompt = [this](const TextPrompt&) {
      return std::string(Chance(2) ? "A \"title\" \\ of # this" : "");
    };
    desktop_.ChooseFile = [saved](const FileQuestion& question) {
      return question.ForSaving ? std::optional(saved) : std::nullopt;
    };
    Do([&] { OpenPicture(ws, desktop_, picture_); });
    ResizeView(ws, 90, 80);
    Calibrate();
  }

  void DoSomething() {
    escapeIn_ = Chance(6) ? Pick(40) : -1;
    switch (Pick(24)) {
      case 0:
        return Mode("graphize");
      case 1:
        return Mode("graphize");
      case 2:
        return Mode("blocktest");
      case 3:
        return Mode("drawerase");
      case 4:
        return Mode("gridbuster");
      case 5:
        return Press(kRightButton, 0, 40);
      case 6:
        return Press(kRightButton, 0, 40);
      case 7:
        return Press(kLeftButton, 0, 0);
      case 8:
        return Press(kLeftButton, 0, 6);
      case 9:
        return Press(kLeftButton, kShiftKey, 0);
      case 10:
        return Press(kRightButton, kShiftKey, 0);
      case 11:
        return Key("refresh");
      case 12:
        return Key("undo");
      case 13:
        return Do([&] {
          if (CanUndoErase(ws)) graphize::Do(ws, desktop_, UndoEditStep{});
        });
      case 14:
        return ChangeOptions();
      case 15:
        return ChangeOptions();
      case 16:
        return Do(SortStep{Chance(2) ? SortOrder::Ascending : SortOrder::Descending});
      case 17:
        return Do(SwapStep{});
      case 18:
        return Do(UndoListStep{});
      case 19:
        return Do(CurveLengthStep{});
      case 20:
        return ReSampleList();
      case 21:
        return IntegrateSome();
      case 22:
        return ClearSome();
      default:
        return Chance(4) ? Rarely() : ClickWithoutPress();
    }
  }

  Workspace ws;

 private:
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  bool Chance(int of) { return Pick(of) == 0; }
  float X() { return static_cast<float>(Pick(ws.plot.Width())); }
  float Y() { return static_cast<float>(Pick(ws.plot.Height())); }
  void Do(const std::function<void()>& command) { RunCommand(ws, desktop_, command); }
  void Do(const Step& step) {
    Do([&] { graphize::Do(ws, desktop_, step); });
  }
  void Key(const char* key) {
    Do([&] {
      if (CanPress(ws, key)) Toolbar_ButtonClick(ws, desktop_, key);
    });
  }
  void Mode(const char* key) { Key(key); }

  void Press(int button, int shift, int drag) {
    const float x = X(), y = Y();
    Do([&] { Plot_MouseMove(ws, desktop_, 0, 0, x, y); });
    Do([&] { Plot_MouseDown(ws, desktop_, button, shift, x, y); });
    for (int i = 1; drag > 0 && i <= 3; ++i)
      Do([&] {
        Plot_MouseMove(ws, desktop_, button, 0, x + static_cast<float>(i * drag),
                       y + static_cast<float>(i * drag) / 2);
      });
    if (!Chance(9)) Do([&] { Plot_MouseUp(ws, desktop_, button, 0, x, y); });
    // A release outside of the picture is no click on it.
    const bool inside = ws.readOut.PlotX < ws.plot.Width() && ws.readOut.PlotY < ws.plot.Height();
    if (button == kLeftButton && inside) Do([&] { Plot_Click(ws, desktop_); });
  }

  void ClickWithoutPress() {
    Do([&] { Plot_MouseMove(ws, desktop_, 0, 0, X(), Y()); });
    Do([&] { Plot_Click(ws, desktop_); });
  }

  void ChangeOptions() {
    Settings& settings = ws.settings;
    settings.Trace = static_cast<std::int16_t>(Pick(3));
    settings.SnapMode = static_cast<std::int16_t>(Pick(4));
    settings.SnapDistance = static_cast<std::int16_t>(Pick(12));
    settings.TraceColor = Chance(3) ? 0 : Pick(16);
    settings.XDecimals = static_cast<std::int16_t>(Pick(8));
    settings.YExp = Chance(2);
    settings.DecimalPoint = Chance(2);
    settings.Delimiter = static_cast<std::int16_t>(Pick(4));
    ws.tracer.Xrange = Chance(4) ? "" : std::to_string(Pick(5)) + (Chance(4) ? ".6 px" : "");
    ws.tracer.Yrange = std::to_string(Pick(5));
    ws.tracer.Above.Checked = Chance(2);
    ws.tracer.Below.Checked = Chance(3);
    ws.blockSize = Pick(9);
    ws.commands.SaveErrors = Chance(2);
    ws.calibration.XLog = Chance(4);
    ws.calibration.YLog = Chance(3);
    Do([&] { FormatChanged(ws); });
  }

  void ReSampleList() {
    Do([&] {
      if (ws.store.CaptureCount < 2) return;
      ShowSample(ws, desktop_);
      ws.sample.Steps = std::to_string(2 + Pick(20));
      if (Chance(2)) StepsTyped(ws.sample);
      if (Chance(3)) ws.sample.dXBox = "0.25";
      ws.sample.SampleXLog = Chance(4);
      graphize::Do(ws, desktop_, StepOfForm(ws.sample));
    });
  }

  void IntegrateSome() {
    Do([&] {
      if (ws.store.CaptureCount < 3) return;
      ShowIntegrate(ws);
      MoveLowLimit(ws.integrate, ws.store, 1 + Pick(ws.store.CaptureCount));
      graphize::Do(
          ws, desktop_,
          IntegrateStep{IntegrateStep::Limits{ws.integrate.LowLimit, ws.integrate.HighLimit}, {}});
    });
  }

  void ClearSome() {
    Do([&] {
      PressListLine(ws, Pick(kPageLines), false);
      PressListLine(ws, Pick(kPageLines), true);
      if (CanClearSelected(ws.store)) graphize::Do(ws, desktop_, SelectedRows(ws.store));
    });
  }

  void UseImageTool() {
    if (Chance(4)) return Do(UndoImageToolStep{});
    // The axes' points stay in the picture, and it does not grow without end.
    static constexpr std::pair<PictureTool, int> kTools[] = {
        {PictureTool::Blur, 0},      {PictureTool::EdgeDetect, 7}, {PictureTool::Negate, 0},
        {PictureTool::Sharpen, 3},   {PictureTool::Soften, 9},     {PictureTool::Resize, 120},
        {PictureTool::Stretch, 115}, {PictureTool::Rotate, -3},    {PictureTool::Rotate, 180}};
    const auto& [tool, amount] = kTools[Pick(ws.plot.Width() < 300 ? 9 : 5)];
    Do(ImageToolStep{tool, amount});
  }

  void Rarely() {
    switch (Pick(9)) {
      case 7:
        return Do([&] {
          if (CanSavePoints(ws)) SavePoints(ws, desktop_);
        });
      case 8:  // the question of the reset comes before the choice, which is none
        Do([&] { OpenImage(ws, desktop_); });
        return Calibrate();
      case 5:
      case 6:
        return UseImageTool();
      case 0:
        return Key("delete");
      case 1:
        return Do(ReloadStep{.Ask = true});
      case 2:
        return Do(ClearBlockersStep{});
      case 3:
        Do(RedefineStep{Pick(3)});
        return Calibrate();
      default:
        Do([&] { OpenPicture(ws, desktop_, picture_); });
        return Calibrate();
    }
  }

  void Calibrate() {
    Key("axisdef");
    while (ws.calibration.CurrentRow < 2 || !ws.calibration.Defined[2]) {
      const int row = ws.calibration.CurrentRow;
      ws.axisPanel.Rows[row].XText = row == 1 ? "10" : Chance(5) ? "0" : "1";  // 0 has no logarithm
      ws.axisPanel.Rows[row].YText = row == 2 ? "1e2 " : "1";
      Do([&] {
        Plot_MouseMove(ws, desktop_, 0, 0, row == 1 ? 180.f : 20.f, row == 2 ? 10.f : 130.f);
      });
      Do([&] { Plot_Click(ws, desktop_); });
    }
    Mode("graphize");
  }

  std::mt19937 random_;
  std::filesystem::path picture_;
  Desktop desktop_;
  int escapeIn_ = -1;
};

class RecipeTest : public ::testing::Test {
 protected:
  RecipeTest() {
    test::PlotDrawing drawing(200, 150, 20, 10, 180, 130);
    drawing.Frame({});
    drawing.LinesAtU({0.25, 0.5, 0.75}, {});
    drawing.LinesAtV({0.25, 0.5, 0.75}, {.Dash = 3, .Gap = 2});
    drawing.Curve([](double u) { return 0.5 + 0.4 * std::sin(7 * u); }, {.Thickness = 2});
    Raster picture = drawing.Picture();
    for (int x = 0; x < 20; ++x) picture.Row(3)[x] = 0xff808080;  // asks about black and white
    SavePicture(folder / "plot.bmp", 3, 0, picture);
  }

  std::vector<BatchStep> StepsOf(Workspace& ws) {
    const RecipeFile recipe = ReadRecipe(RecipeText(ws, folder.Path()), folder.Path());
    std::vector<BatchStep> steps;
    pictures.clear();
    toldPoints = recipe.Points;
    for (const auto& picture : recipe.Pictures) pictures.push_back(picture.Path);
    for (const auto& line : recipe.Steps)
      steps.push_back({line.Is, "line " + std::to_string(line.Number)});
    return steps;
  }

  test::TemporaryFolder folder;
  std::vector<std::filesystem::path> pictures;
  std::optional<int> toldPoints;
};

TEST_F(RecipeTest, AFullStoreIsToldOnceAndNotAgain) {
  Raster picture = Raster::Filled(200, 200, kBlackPixel);
  SavePicture(folder / "black.bmp", 3, 0, picture);
  test::ScriptedDesktop desktop;
  Workspace ws;
  StartReplay(ws);
  OpenPicture(ws, desktop, folder / "black.bmp");
  ws.calibration = test::PixelCalibration();
  ws.commands.Graphize = true;
  ws.recipe.Steps.push_back(ModeStep{Mode::AxisDef});
  ws.recipe.Steps.push_back(AxisStep{0, 0, 199, "0", "0"});
  ws.recipe.Steps.push_back(AxisStep{1, 100, 199, "100", "0"});
  ws.recipe.Steps.push_back(AxisStep{2, 0, 99, "0", "100"});
  Toolbar_ButtonClick(ws, desktop, "graphize");
  ws.tracer.Xrange = ws.tracer.Yrange = "1";
  desktop.ExpectMessage("You reached the limit of data that can be stored.");
  Do(ws, desktop, ScanStep{{.Left = 0, .Top = 0, .Right = 199, .Bottom = 199}, {}});
  ASSERT_EQ(ws.store.CaptureCount, 32767);
  EXPECT_EQ(std::ranges::count(RunJob(StepsOf(ws), pictures, {}).Table, '\n'), 32767);
  // Told by nobody before, it is an error.
  std::vector<BatchStep> untold = StepsOf(ws);
  std::get<ScanStep>(untold.back().Do).Went = {};
  EXPECT_THROW(RunJob(untold, pictures, {}), RunTimeError);
}

TEST_F(RecipeTest, LeadsToTheSameBytesWhateverTheUserDoes) {
  int compared = 0, points = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    const std::filesystem::path file = folder / "saved.dat";
    std::filesystem::remove(file);
    User user(seed, folder / "plot.bmp", file);
    for (int i = 0; i < 40; ++i) user.DoSomething();
    Workspace& ws = user.ws;
    const std::vector<BatchStep> steps = StepsOf(ws);
    const bool isSaved = std::any_of(steps.begin(), steps.end(),
                                     [](const BatchStep& step) { return Is<SaveStep>(step.Do); });
    if (!isSaved && ws.store.ListCount == 0) continue;
    const std::vector<RowError> errors =
        ws.commands.SaveErrors && HasRowErrors(ws.store, ws.calibration)
            ? RowErrorsOf(ws.store, ws.calibration)
            : std::vector<RowError>();
    const std::string saved =
        isSaved ? test::BytesOf(file)
                : DataFileText("", ws.store, ws.formats, ws.settings.DecimalPoint, errors);
    EXPECT_EQ(toldPoints, std::ranges::count(saved, '\n') - saved.starts_with("A \"title")) << seed;
    try {
      EXPECT_EQ(RunJob(steps, pictures, {}).Table, saved) << "seed " << seed << "\n"
                                                          << RecipeText(ws, folder.Path());
    } catch (const RunTimeError& error) {
      ADD_FAILURE() << "seed " << seed << ": " << error.what() << "\n"
                    << RecipeText(ws, folder.Path());
    }
    ++compared;
    points += ws.store.ListCount;
    if (HasFailure()) return;
  }
  EXPECT_GT(compared, 100);
  EXPECT_GT(points, 8000);
}

}  // namespace
}  // namespace graphize
