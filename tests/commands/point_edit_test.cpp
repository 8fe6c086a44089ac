// Captured points corrected on the picture, and given new values.

#include "commands/point_edit_commands.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>

#include "codecs/picbuf.h"
#include "commands/capture_commands.h"
#include "commands/do.h"
#include "commands/image_tools_commands.h"
#include "commands/overlay.h"
#include "commands/plot_mouse.h"
#include "commands/replay.h"
#include "commands/toolbar.h"
#include "data/list_edit.h"
#include "data/point_edit.h"
#include "support/points.h"
#include "support/random_user.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"
#include "workspace/picture_map.h"

namespace graphize {
namespace {

using test::RowList;

/// A picture of 100 x 80 pixels, X from 0 to 10 and Y from 0 to 7 at 10 pixels a unit from (0, 79).
class PointEditTest : public ::testing::Test {
 protected:
  PointEditTest() {
    StartReplay(ws);
    const auto inHand = std::make_shared<PictureInHand>();
    inHand->Picture = Raster::Filled(100, 80, kWhitePixel);
    for (int i = 0; i < 25; ++i) inHand->Picture.Row(38 + i / 5)[48 + i % 5] = kBlackPixel;
    Do(OpenStep{.InHand = inHand});
    Calibrate("9", "7");
    Do(ModeStep{Mode::Graphize});
  }

  Outcome Do(Step step) { return graphize::Do(ws, desktop, std::move(step)); }
  void Calibrate(const char* x, const char* y) {
    Do(ModeStep{Mode::AxisDef});
    if (ws.calibration.Defined[0]) Do(RedefineStep{0});
    Do(AxisStep{0, 0, 79, "1", "1"});
    Do(AxisStep{1, 90, 79, x, "1"});
    Do(AxisStep{2, 0, 9, "1", y});
  }
  void Capture(const std::vector<Place>& places) {
    Do(ModeStep{Mode::Graphize});
    for (const Place& place : places) Do(PointStep{place.Column, place.Row});
  }
  void Refused(const Step& step, const char* why) {
    desktop.ExpectMessage(why);
    const auto places = ws.store.Places;
    const RowList list = test::ListRows(ws.store), captured = test::CapturedRows(ws.store);
    EXPECT_EQ(Do(step).Is, Outcome::How::Refused) << why;
    EXPECT_EQ(ws.store.Places, places);
    EXPECT_EQ(test::ListRows(ws.store), list);
    EXPECT_EQ(test::CapturedRows(ws.store), captured);
  }
  GraphValues ValuesOf(PointId id) const {
    const auto& [column, row] = ws.store.Places[id];
    return ValuesAt(ws.calibration, column, 80 - row);
  }
  std::optional<PlotOverlay::Rectangle> Band() const { return RubberBand(ws); }

  void Press(float x, float y, int shift = 0) {
    Plot_MouseMove(ws, desktop, 0, shift, x, y);
    Plot_MouseDown(ws, desktop, kLeftButton, shift, x, y);
  }
  void Drag(float x, float y) { Plot_MouseMove(ws, desktop, kLeftButton, 0, x, y); }
  void Release(float x, float y) {
    Plot_MouseUp(ws, desktop, kLeftButton, 0, x, y);
    Plot_Click(ws, desktop);
  }
  void Click(float x, float y, int shift = 0) {
    Press(x, y, shift);
    Release(x, y);
  }

  test::ScriptedDesktop desktop;
  Workspace ws;
};

/// Every row that is a point has its values, straight or exchanged; every such point is captured.
void ExpectInStep(const PointStore& store, bool mayBeSwapped = false) {
  std::vector<GraphValues> captured(store.Places.size());
  std::vector<bool> isCaptured(store.Places.size());
  for (int i = 1; i <= store.CaptureCount; ++i) {
    const PointId id = store.CaptureId[i];
    ASSERT_TRUE(id > 0 && id < store.Places.size());
    captured[id] = {store.CaptureX[i], store.CaptureY[i]};
    isCaptured[id] = true;
  }
  for (int i = 1; i <= store.ListCount; ++i) {
    const PointId id = store.ListId[i];
    if (id == 0) continue;
    ASSERT_TRUE(id < store.Places.size() && isCaptured[id]) << "row " << i;
    // Values that wait for the axes are no numbers.
    const auto same = [](float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    const bool straight =
        same(store.ListX[i], captured[id].X) && same(store.ListY[i], captured[id].Y);
    const bool swapped =
        same(store.ListX[i], captured[id].Y) && same(store.ListY[i], captured[id].X);
    EXPECT_TRUE(straight ||
                ((mayBeSwapped || store.ListRows != PointStore::Rows::Places) && swapped))
        << "row " << i << ": " << store.ListX[i] << ", " << store.ListY[i] << "; captured "
        << captured[id].X << ", " << captured[id].Y;
  }
}

TEST_F(PointEditTest, ListAndCapturedPointsFollowByTheirIdsWhateverTheListIs) {
  const std::function<void()> lists[] = {
      [] {}, [&] { Do(SortStep{SortOrder::Descending}); }, [&] { Do(SwapStep{}); },
      [&] {
        Do(SwapStep{});
        Capture({{70, 20}});  // one that is not exchanged among such that are
        Do(SortStep{});
      },
      [&] {
        Do(ClearRowsStep{3, 3});
        Do(UndoListStep{});  // the last point twice
      }};
  for (const auto& makeList : lists) {
    Do(ClearDataStep{});
    const auto first = static_cast<PointId>(ws.store.Places.size());
    Capture({{10, 70}, {20, 30}, {30, 33.5f}, {44, 41}, {60, 12}});
    makeList();
    const RowList before = test::ListRows(ws.store);
    const PointSet moved = {first + 1, first + 4};
    const Place from = ws.store.Places[first + 4];
    ASSERT_TRUE(Do(MovePointsStep{moved, 2, -0.1f}).IsDone());
    EXPECT_EQ(ws.store.Places[first + 4], (Place{from.Column + 2, 11.9f}));
    for (int i = 1; i <= ws.store.ListCount; ++i) {
      const test::Row row{ws.store.ListX[i], ws.store.ListY[i]};
      EXPECT_EQ(row == before[i - 1], !moved.Has(ws.store.ListId[i])) << "row " << i;
    }
    for (int i = 1; i <= ws.store.CaptureCount; ++i) {
      EXPECT_EQ(ws.store.CaptureX[i], ValuesOf(ws.store.CaptureId[i]).X);
      EXPECT_EQ(ws.store.CaptureY[i], ValuesOf(ws.store.CaptureId[i]).Y);
    }
    ExpectInStep(ws.store);
    ASSERT_TRUE(Do(MovePointsStep{moved, -2, 0.1f}).IsDone());
    EXPECT_EQ(test::ListRows(ws.store), before) << "back to the last bit";
    const int rows = ws.store.ListCount, captured = ws.store.CaptureCount;
    ASSERT_TRUE(Do(DeletePointsStep{moved}).IsDone());
    EXPECT_LE(ws.store.ListCount, rows - 2);
    EXPECT_LE(ws.store.CaptureCount, captured - 2);
    for (const auto* ids : {&ws.store.ListId, &ws.store.CaptureId})
      EXPECT_EQ(std::count_if(ids->begin() + 1, ids->begin() + 1 + ws.store.CaptureCount,
                              [&](PointId id) { return moved.Has(id); }),
                0);
    ExpectInStep(ws.store);
  }
  Do(DeletePointsStep{AllPoints(ws.store)});
  EXPECT_EQ(ws.store.ListCount + ws.store.CaptureCount, 0);
  EXPECT_FALSE(ws.commands.Data);
}

TEST_F(PointEditTest, StaysInStepWhateverTheUserDoes) {
  const test::TemporaryFolder folder;
  SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser());
  int edits = 0;
  for (unsigned seed = 100; seed < 130 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat",
                          [](Workspace& state) { ExpectInStep(state.store, true); });
    for (int i = 0; i < 60; ++i) user.DoSomething();
    for (const Step& step : user.ws.recipe.Steps)
      edits += Is<MovePointsStep>(step) + Is<DeletePointsStep>(step) + Is<RecalculateStep>(step);
  }
  EXPECT_GT(edits, 50);
}

TEST_F(PointEditTest, WhatCannotBeMovedOrRecalculatedIsToldAndStays) {
  Capture({{20, 30}, {98, 40}});
  Refused(MovePointsStep{{1, 2}, 2, 0}, "out of the picture");
  Refused(MovePointsStep{{1, 3}, 2, 0}, "no such points");
  Refused(MovePointsStep{{}, 2, 0}, "no such points");
  Refused(DeletePointsStep{*PointSet::OfRanges({{2, 4000000000u}})}, "no such points");
  desktop.ExpectMessage("already");
  EXPECT_EQ(Do(RecalculateStep{}).Is, Outcome::How::Nothing);
  Do(ModeStep{Mode::AxisDef});
  Do(RedefineStep{2});
  Refused(MovePointsStep{{1}, 2, 0}, "define all three axis points");
  Refused(RecalculateStep{}, "define all three axis points");
  Do(AxisStep{2, 0, 9, "1", "3.3e38"});
  Refused(MovePointsStep{{1}, 0, -29}, "no number there");
  Do(RedefineStep{2});
  Do(AxisStep{2, 0, 39, "1", "3.3e38"});
  Refused(RecalculateStep{}, "no number for 1 point: nothing");
  Calibrate("9", "-7");
  ws.calibration.YLog = true;
  Refused(RecalculateStep{}, "positive");
}

TEST_F(PointEditTest, RecalculatesAllCurvesToWhatNewAxesWouldHaveCaptured) {
  const std::vector<Place> places = {{10, 70}, {20, 30}, {30, 33}, {44, 41}, {60, 12}};
  Capture(places);
  Do(NewCurveStep{"b"});
  Capture(places);
  Do(SwapStep{});
  Capture({{70, 20}});
  Do(ModeStep{Mode::AxisDef});
  Do(RedefineStep{1});
  const RowList old = test::ListRows(ws.store);
  Do(AxisStep{1, 90, 77, "90", "1"});
  Do(AxisStep{2, 0, 9, "1", "49"});
  EXPECT_EQ(test::ListRows(ws.store), old) << "a redefinition alone touches no value";
  EXPECT_TRUE(HasOldValues(ws));
  EXPECT_TRUE(Do(RecalculateStep{}).IsDone());
  EXPECT_EQ(ws.status.Status, "11 points recalculated");
  EXPECT_FALSE(HasOldValues(ws));
  ExpectInStep(ws.store);
  const RowList exchanged = test::ListRows(ws.store);
  Do(SelectCurveStep{"curve 1"});
  const RowList first = test::ListRows(ws.store);
  for (std::size_t i = 0; i < first.size(); ++i)
    EXPECT_EQ(exchanged[i], (test::Row{first[i].Y, first[i].X}));
  Do(ClearDataStep{});
  Capture(places);
  EXPECT_EQ(test::ListRows(ws.store), first);

  // Rows that are no points stay and are told of; the captured ones follow.
  Do(ResampleStep{.Count = "7"});
  Calibrate("9", "7");
  const RowList resampled = test::ListRows(ws.store);
  EXPECT_TRUE(Do(RecalculateStep{}).IsDone());
  EXPECT_EQ(ws.status.Status, "11 points recalculated; 7 rows without a place on the picture stay");
  EXPECT_EQ(test::ListRows(ws.store), resampled);
  EXPECT_EQ(ws.store.CaptureX[2], ValuesOf(2 + 5).X);
}

TEST_F(PointEditTest, ImageToolsCarryPointsAndBlockersAlongAndBack) {
  using enum PictureTool;
  const std::tuple<PictureTool, int> tools[] = {{Resize, 200},  {Resize, 137}, {Stretch, 150},
                                                {Stretch, 250}, {Rotate, 90},  {Rotate, -90},
                                                {Rotate, 180},  {Rotate, 37},  {Blur, 0}};
  Capture({{50, 40}, {20.25f, 30}});
  Do(BlockStep{20, 60, 6});
  const auto places = ws.store.Places;
  const RowList list = test::ListRows(ws.store);
  const BlockerList blockers = ws.blockers;
  for (const auto& [tool, amount] : tools) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(tool) << " " << amount);
    if (tool == Resize || tool == Rotate) desktop.ExpectMessage("Redefine the axis");
    ASSERT_TRUE(Do(ImageToolStep{tool, amount}).IsDone());
    // The middle of the black square is black wherever it went, and stays its middle.
    const auto& [column, row] = ws.store.Places[1];
    for (const float dx : {-1.0f, 0.0f, 1.0f})
      EXPECT_TRUE(tool == Blur || IsBlack(ws.plot, static_cast<int>(std::lround(column + dx)),
                                          static_cast<int>(std::lround(row))));
    EXPECT_EQ(ws.store.LastPixelX, std::lround(ws.store.Places[2].Column));
    const Blocker& blocker = ws.blockers.Blockers[1];
    EXPECT_EQ(GetPixel(ws.plot, blocker.X, blocker.Y), BlockerColour(ws.settings));
    EXPECT_EQ(test::ListRows(ws.store), list);
    EXPECT_EQ(ws.calibration.PixelX[1], 90) << "the axes stay";
    EXPECT_EQ(AxesFitPicture(ws), tool == Blur);
    if (tool != Blur) Refused(MovePointsStep{{1}, 1, 0}, "image tool has changed the picture");
    ASSERT_TRUE(Do(UndoImageToolStep{}).IsDone());
    EXPECT_EQ(ws.store.Places, places);
    EXPECT_EQ(ws.blockers, blockers);
    EXPECT_TRUE(AxesFitPicture(ws));
  }
  // Defined anew on the larger picture, the axes give the points the values that they had.
  desktop.ExpectMessage("Redefine the axis");
  Do(ImageToolStep{Resize, 200});
  Do(ModeStep{Mode::AxisDef});
  Do(RedefineStep{0});
  Do(AxisStep{0, 0.5f, 158.5f, "1", "1"});
  EXPECT_FALSE(AxesFitPicture(ws));
  Do(AxisStep{1, 180, 158, "9", "1"});
  Do(AxisStep{2, 0, 18, "1", "7"});
  EXPECT_TRUE(Do(RecalculateStep{}).IsDone());
  for (std::size_t i = 0; i < list.size(); ++i) {
    EXPECT_NEAR(test::ListRows(ws.store)[i].X, list[i].X, 0.05);
    EXPECT_NEAR(test::ListRows(ws.store)[i].Y, list[i].Y, 0.05);
  }
  // Another picture takes the places away.
  const auto other = std::make_shared<PictureInHand>();
  other->Picture = Raster::Filled(100, 80, kWhitePixel);
  Do(OpenStep{.InHand = other});
  Refused(MovePointsStep{{1}, 1, 0}, "another picture");
  EXPECT_EQ(RowsWithoutPlace(ws.store), 2);
}

TEST_F(PointEditTest, TheMouseTakesDragsAndSelectsPoints) {
  Capture({{20, 30}, {50, 40}, {80, 40}});
  Toolbar_ButtonClick(ws, desktop, "editpoints");
  const PointSet& selected = ws.store.Page.Points;
  Plot_MouseMove(ws, desktop, 0, 0, 53, 44);
  EXPECT_EQ(ws.pointEdit.Near, 2u);
  EXPECT_TRUE(ws.store.Page.Lines[1].Pointed);
  Plot_MouseMove(ws, desktop, 0, 0, 65, 40);
  EXPECT_FALSE(ws.pointEdit.Near || ws.store.Page.Lines[1].Pointed);

  Press(52, 41);
  Drag(53, 42);
  EXPECT_FALSE(ws.pointEdit.Dragged) << "a click may tremble";
  Drag(62, 51);
  EXPECT_EQ(ws.store.Places[2], (Place{50, 40})) << "not before the release";
  EXPECT_EQ(ws.readOut.PlotX, 60) << "the read-out is the point's, not the pointer's";
  EndDrag(ws);  // Escape
  Drag(70, 60);
  Release(70, 60);
  EXPECT_EQ(ws.store.Places[2], (Place{50, 40}));
  Press(50, 40);
  Drag(140, 50);
  Release(140, 50);
  EXPECT_EQ(ws.store.Places[2], (Place{99, 50})) << "not out of the picture";
  EXPECT_TRUE(ws.store.Page.Lines[1].Highlighted);
  EXPECT_TRUE(CanClearSelected(ws.store));

  Press(10, 20);
  Drag(90, 45);
  EXPECT_EQ(Band(), (PlotOverlay::Rectangle{10, 20, 90, 45}));
  Release(90, 45);
  EXPECT_EQ(selected, (PointSet{1, 3}));
  Click(99, 50, kShiftKey);
  EXPECT_EQ(selected, (PointSet{1, 2, 3}));
  Click(20, 30, kCtrlKey);
  EXPECT_EQ(selected, (PointSet{2, 3}));
  EXPECT_TRUE(NudgePoints(ws, desktop, 1, 0));
  EXPECT_EQ(ws.store.Places[3], (Place{80, 40})) << "none goes when one cannot";
  EXPECT_TRUE(NudgePoints(ws, desktop, -1, 0.1f));
  EXPECT_EQ(ws.store.Places[3], (Place{79, 40.1f}));
  Click(20, 60);
  EXPECT_TRUE(selected.IsEmpty());
  PressListLine(ws, 0, false);
  PressListLine(ws, 1, true);
  EXPECT_EQ(selected, (PointSet{1, 2}));
  EXPECT_EQ(Plot_Paint(ws, {0, 0, 99, 79}).Selected.size(), 2u);
  DeleteSelectedPoints(ws, desktop);
  EXPECT_EQ(ws.store.ListCount, 1);
  EXPECT_EQ(ws.store.ListId[1], 3u);

  // Straight after a capture keys move that point, and not after anything else.
  Capture({{30, 30}});
  EXPECT_TRUE(NudgePoints(ws, desktop, 0.1f, 0));
  EXPECT_EQ(ws.store.Places[4], (Place{30.1f, 30}));
  EXPECT_EQ(selected, PointSet{4});
  SelectNoPoints(ws);
  EXPECT_FALSE(NudgePoints(ws, desktop, 1, 0));
}

}  // namespace
}  // namespace graphize
