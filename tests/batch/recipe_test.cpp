// Whatever a user does, the recipe of it leads to the same points.

#include "workspace/recipe.h"

#include <gtest/gtest.h>

#include "base/run_time_error.h"
#include "batch/job.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/picture_commands.h"
#include "commands/recipe_file.h"
#include "commands/replay.h"
#include "commands/save_points.h"
#include "commands/toolbar.h"
#include "data/data_file.h"
#include "data/list_edit.h"
#include "data/waiting_points.h"
#include "support/calibrated.h"
#include "support/random_user.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

class RecipeTest : public ::testing::Test {
 protected:
  RecipeTest() { SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser()); }

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
    test::RandomUser user(seed, folder / "plot.bmp", file);
    for (int i = 0; i < 40; ++i) user.DoSomething();
    Workspace& ws = user.ws;
    std::vector<BatchStep> steps = StepsOf(ws);
    const bool isSaved = std::any_of(steps.begin(), steps.end(),
                                     [](const BatchStep& step) { return Is<SaveStep>(step.Do); });
    if (!isSaved && (ws.store.ListCount == 0 || CountWaiting(ws.store) > 0)) continue;
    if (!isSaved) steps.push_back({.Do = SaveStep{}, .Origin = {}});
    const std::vector<RowError> errors =
        ws.commands.SaveErrors && HasRowErrors(ws.store, ws.calibration)
            ? RowErrorsOf(ws.store, ws.calibration, ws.plot.Height(), ErrorKindOf(ws))
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
