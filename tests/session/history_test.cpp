// Whatever a user does can be taken back, and done again.

#include "session/history.h"

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <sstream>
#include <utility>

#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/ink_commands.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/replay.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"
#include "workspace/next_step.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

/// All of the document.
struct State {
  std::string Records, Recipe;
  std::vector<std::uint32_t> Pixels;
  OverdrawnPixels Marks, LastEdit;
  std::vector<std::uint32_t> Numbers;  // bits: values that wait for the axes are no numbers
  std::vector<PointId> Ids;

  bool operator==(const State&) const = default;
};

std::string DifferenceOf(const State& a, const State& b) {
  std::string text = a.Records == b.Records ? "" : a.Records + "instead of\n" + b.Records;
  if (a.Recipe != b.Recipe) text += "recipe:\n" + a.Recipe + "instead of\n" + b.Recipe;
  if (a.Pixels != b.Pixels) text += "pixels ";
  if (a.Marks != b.Marks) text += "marks ";
  if (a.LastEdit != b.LastEdit) text += "last edit ";
  return text + (a.Numbers == b.Numbers && a.Ids == b.Ids ? "" : "points");
}

std::vector<std::uint32_t> PixelsOf(const Raster& raster) {
  return {raster.Pixels(), raster.Pixels() + raster.PixelCount()};
}

void Write(std::ostream& out, const AxisCalibration& axes, const AxisPanel& panel) {
  for (int i = 0; i < 3; ++i) {
    const AxisPanel::Row& row = panel.Rows[i];
    out << axes.PixelX[i] << ' ' << axes.PixelY[i] << ' ' << axes.ValueX[i] << ' ' << axes.ValueY[i]
        << axes.Defined[i] << axes.Armed[i] << row.XPixel << ',' << row.YPixel << ',' << row.XText
        << ',' << row.YText << row.XEnabled << row.YEnabled << row.ReDefineEnabled << '\n';
  }
  out << axes.CurrentRow << axes.XLog << axes.YLog << axes.Angle << ' ' << axes.XAxisLength << ' '
      << axes.YAxisLength << panel.Angle << Instruction(panel) << '\n';
}

State StateOf(const Workspace& ws) {
  const PointStore& store = ws.store;
  const CommandStates& can = ws.commands;
  std::ostringstream out;
  out << static_cast<int>(ws.mode) << ws.window.AxisPanelShown << ws.window.Caption << '\n';
  Write(out, ws.calibration, ws.axisPanel);
  out << ws.picture.Path << ws.picture.FromFile << ws.picture.FileChecksum << ws.plot.SourceName
      << ws.plot.HasUndo << ws.plot.PersistentDrawing << ws.plot.Width() << 'x' << ws.plot.Height()
      << ' ' << ws.status.SizeX << ws.status.SizeY << '\n';
  for (int i = 1; i <= ws.blockers.Count; ++i)
    out << ws.blockers.Blockers[i].X << ',' << ws.blockers.Blockers[i].Y << ' ';
  out << '\n' << can.Data << can.Blockers << can.Picture << can.Graphize << can.GridBuster << '\n';
  for (const Curve& curve : ws.curves.Curves)
    out << curve.Name << ' ' << curve.MarkColour << curve.Shown << '\n';
  out << ws.curves.Active << ' ' << store.CaptureCount << ' ' << store.ListCount << ' '
      << store.NPoints << store.ListIsCaptured << static_cast<int>(store.ListRows) << ' '
      << store.LastPixelX << ',' << store.LastPixelY;
  for (const ListPage::Line& line : store.Page.Lines) out << ' ' << line.Point << line.Highlighted;
  out << ' ' << store.Page.ScrollValue << store.Page.SelectionStart << store.Page.SelectionEnd
      << store.Page.SelectionActive << '\n'
      << ws.dataFileTitle << ws.recipe.SavedPoints.value_or(-1) << '\n';

  State state{.Records = out.str(),
              .Recipe = std::to_string(ws.recipe.Pictures.size()) + "\n",
              .Pixels = PixelsOf(ws.plot.Pixels),
              .Marks = ws.plot.Marks,
              .LastEdit = ws.plot.LastEdit};
  for (const Step& step : ws.recipe.Steps) state.Recipe += TextOf(step) + "\n";
  const auto add = [](auto& all, const auto& array) {
    for (const auto& value : array) all.push_back(std::bit_cast<std::uint32_t>(value));
  };
  for (std::size_t i = 0; i < ws.curves.Curves.size(); ++i) {
    const PointStore& points = PointsOf(ws.curves, ws.store, static_cast<int>(i));
    for (const auto* numbers : {&points.CaptureX, &points.CaptureY, &points.ListX, &points.ListY})
      add(state.Numbers, *numbers);
    for (const Place& place : points.Places)
      add(state.Numbers, std::initializer_list<float>{place.Column, place.Row});
    for (const Certainty& certainty : points.Certainties)
      add(state.Numbers,
          std::initializer_list<float>{certainty.AcrossColumns, certainty.AcrossRows});
    for (const PlaceRest& rest : points.Rests)
      add(state.Numbers, std::initializer_list<float>{static_cast<float>(rest.Columns),
                                                      static_cast<float>(rest.Rows)});
    for (const auto* ids : {&points.CaptureId, &points.ListId}) add(state.Ids, *ids);
    add(state.Ids, std::initializer_list<PointId>{static_cast<PointId>(points.CaptureCount),
                                                  static_cast<PointId>(points.ListCount)});
  }
  return state;
}

/// What a recipe has to lead to: the points, the list and the picture without its marks.
void ExpectReplayed(Workspace& ws) {
  Workspace again;
  StartReplay(again);
  for (Step step : ws.recipe.Steps) {
    // The step says what was answered.
    const auto answer = [](auto& record) {
      if constexpr (requires { record.Ask; }) record.Ask = false;
    };
    std::visit(answer, step);
    ReplayStep(again, test::QuietDesktop(), step);
  }
  const auto rows = [](const std::vector<float>& numbers, int count) {
    std::vector<std::uint32_t> bits;
    for (int i = 0; i <= count; ++i) bits.push_back(std::bit_cast<std::uint32_t>(numbers[i]));
    return bits;
  };
  ASSERT_EQ(again.curves.Curves.size(), ws.curves.Curves.size());
  ASSERT_EQ(again.curves.Active, ws.curves.Active);
  for (std::size_t i = 0; i < ws.curves.Curves.size(); ++i) {
    EXPECT_EQ(again.curves.Curves[i].Name, ws.curves.Curves[i].Name);
    EXPECT_EQ(again.curves.Curves[i].Shown, ws.curves.Curves[i].Shown);
    const PointStore& points = PointsOf(ws.curves, ws.store, static_cast<int>(i));
    const PointStore& replayed = PointsOf(again.curves, again.store, static_cast<int>(i));
    ASSERT_EQ(replayed.CaptureCount, points.CaptureCount);
    ASSERT_EQ(replayed.ListCount, points.ListCount);
    for (const auto array : {&PointStore::CaptureX, &PointStore::CaptureY})
      EXPECT_EQ(rows(replayed.*array, points.CaptureCount),
                rows(points.*array, points.CaptureCount));
    for (const auto array : {&PointStore::ListX, &PointStore::ListY})
      EXPECT_EQ(rows(replayed.*array, points.ListCount), rows(points.*array, points.ListCount));
    EXPECT_EQ(replayed.Places, points.Places);
    EXPECT_EQ(replayed.Certainties, points.Certainties);
    EXPECT_EQ(replayed.Rests, points.Rests);
  }
  EXPECT_EQ(again.blockers.Count, ws.blockers.Count);
  const BasePictureShown shown(ws.plot), base(again.plot);
  EXPECT_TRUE(PixelsOf(again.plot.Pixels) == PixelsOf(ws.plot.Pixels));
}

/// A random user whose commands are committed, and what the document was before every entry.
class HistoryTest : public ::testing::Test {
 protected:
  HistoryTest() { SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser()); }

  void Start(unsigned seed, std::size_t budget = std::size_t{256} << 20) {
    history = History(budget);
    dropsNothing = budget > 1'000'000;
    before.clear();
    bool begun = false;
    const auto commit = [this, begun](Workspace& ws) mutable {
      if (!std::exchange(begun, true)) history.Begin(ws);
      Commit(ws);
    };
    user =
        std::make_unique<test::RandomUser>(seed, folder / "plot.bmp", folder / "saved.dat", commit);
  }

  void Commit(Workspace& ws) {
    if (!dropsNothing) return history.Commit(ws);
    const std::size_t size = history.Size();
    const std::string step = LastStep(ws);
    history.Commit(ws);
    if (ws.pen.Down && ws.pen.Begun) return;
    const bool isEntry = history.Size() > size;
    State now = StateOf(ws);
    const bool pointsChanged = now.Numbers != last.Numbers || now.Ids != last.Ids;
    if (!before.empty() || isEntry) {
      const bool mayJoin = size > 0 && Is<MovePointsStep>(ws.recipe.Steps.back());
      EXPECT_TRUE(isEntry || mayJoin || !pointsChanged) << step;
      EXPECT_TRUE(isEntry || now.LastEdit == last.LastEdit) << step;
      EXPECT_TRUE(!isEntry || now.Recipe != last.Recipe) << "no step for " << ws.undoNames.Undo;
    }
    if (isEntry) before.push_back(std::move(last));
    last = std::move(now);
  }

  static std::string LastStep(const Workspace& ws) {
    return ws.recipe.Steps.empty() ? "" : TextOf(ws.recipe.Steps.back());
  }

  void ExpectState(const State& expected, const std::string& what) {
    const State now = StateOf(user->ws);
    EXPECT_TRUE(now == expected) << what << "\n" << DifferenceOf(now, expected);
  }

  test::TemporaryFolder folder;
  History history;
  bool dropsNothing = true;
  std::unique_ptr<test::RandomUser> user;
  std::vector<State> before;  // every entry
  State last;                 // after the last command
};

TEST_F(HistoryTest, GoesBackAndForthOverWhateverTheUserDoes) {
  std::size_t entries = 0;
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    Start(seed);
    Workspace& ws = user->ws;
    for (int part = 0; part < 2; ++part) {
      for (int i = 0; i < 30; ++i) user->DoSomething();
      user->Do(NewCurveStep{});  // not only what passes
      EndDrag(ws);
      Commit(ws);
      ASSERT_EQ(history.Size(), before.size());
      entries += before.size();
      // All the way back, forth, and at random.
      std::vector<State> states = before;
      states.push_back(last);
      std::size_t at = before.size();
      const auto move = [&](bool back) {
        ASSERT_EQ(back ? history.Undo(ws) : history.Redo(ws),
                  back ? at > 0 : at + 1 < states.size());
        if (back ? at > 0 : at + 1 < states.size()) at += back ? -1 : 1;
        ExpectState(states[at], "seed " + std::to_string(seed) + ", entry " + std::to_string(at) +
                                    " " + ws.undoNames.Redo);
      };
      for (std::size_t i = 0; i <= before.size() && !HasFailure(); ++i) move(true);
      for (std::size_t i = 0; i <= before.size() && !HasFailure(); ++i) move(false);
      for (int i = 0; i < 20 && !HasFailure(); ++i) move(user->Chance(2));
      while (at == 0) move(false);  // the user needs a picture
      if (HasFailure()) return;
      ExpectReplayed(ws);
      // The next part goes on from here.
      before.resize(at);
      last = states[at];
    }
    EXPECT_FALSE(HasFailure()) << "seed " << seed;
  }
  EXPECT_GT(entries, 1500u);
}

TEST_F(HistoryTest, DropsTheOldestBeyondItsBudget) {
  Start(3, 100'000);
  Workspace& ws = user->ws;
  for (int i = 0; i < 200; ++i) {
    user->DoSomething();
    EXPECT_LE(history.Bytes(), 100'000u);
  }
  EndDrag(ws);
  history.Commit(ws);
  const State end = StateOf(ws);
  EXPECT_GT(history.Size(), 3u);
  while (history.Undo(ws)) ExpectReplayed(ws);
  EXPECT_EQ(ws.undoNames.Undo, "");
  while (history.Redo(ws)) continue;
  ExpectState(end, "after redo");
}

TEST_F(HistoryTest, BringsCurvesBackAndUnsavesNone) {
  Start(2);
  Workspace& ws = user->ws;
  const Desktop desktop = test::QuietDesktop();
  const auto step = [&](const Step& what) {
    Do(ws, desktop, what);
    Commit(ws);
  };
  step(NewCurveStep{"B"});
  for (float x = 30; x < 60; x += 10) step(PointStep{x, 50});
  step(NewCurveStep{"C"});
  step(PointStep{70, 50});
  const State three = StateOf(ws);
  const std::size_t bytes = history.Bytes();
  for (int i = 0; i < 100; ++i) step(SelectCurveStep{i % 2 == 0 ? "B" : "C"});
  EXPECT_LT(history.Bytes() - bytes, 100 * 2000u) << "looking takes no points' memory";

  step(SelectCurveStep{"B"});
  step(SaveStep{"", folder / "b.dat"});
  step(SelectCurveStep{"C"});
  EXPECT_EQ(UnsavedCurves(ws.curves, ws.store), std::vector<int>{2});
  step(PointStep{80, 50});
  step(ResetStep{});
  EXPECT_EQ(ws.curves.Curves.size(), 1u);
  ASSERT_TRUE(history.Undo(ws) && history.Undo(ws));
  EXPECT_EQ(ws.undoNames.Undo, "Capture");
  EXPECT_EQ(StateOf(ws).Numbers, three.Numbers);
  EXPECT_EQ(UnsavedCurves(ws.curves, ws.store), std::vector<int>{2})
      << "what is on the disk stays saved";
  ASSERT_TRUE(history.Redo(ws));
  step(DeleteCurveStep{});
  EXPECT_EQ(ws.undoNames.Undo, "Delete curve");
  ASSERT_TRUE(history.Undo(ws));
  ExpectReplayed(ws);
}

TEST_F(HistoryTest, NothingIsReadOutWithAxesThatAreGone) {
  Start(1);
  Workspace& ws = user->ws;
  user->Do(PointStep{50, 60});
  ws.readOut.XValue = ws.readOut.YValue = "1";
  ASSERT_TRUE(history.Undo(ws));
  EXPECT_EQ(ws.readOut.XValue, "1");
  ASSERT_TRUE(history.Undo(ws)) << "the axis";
  EXPECT_EQ(ws.readOut.XValue + ws.readOut.YValue, "");
  EXPECT_TRUE(ws.status.Status.starts_with("Undone"));
  Plot_MouseMove(ws, Desktop(), 0, 0, 60, 60);
  EXPECT_FALSE(ws.status.Hint.starts_with("Undone")) << "no hint to what comes next";
}

TEST_F(HistoryTest, JoinsMovesOfTheSamePointsByKeys) {
  Start(1);
  Workspace& ws = user->ws;
  for (int x = 40; x < 100; x += 20) user->Do(PointStep{static_cast<float>(x), 60});
  const std::size_t size = history.Size();
  const State begin = StateOf(ws);
  const auto move = [&](const PointSet& points, float columns, float rows, bool byKeys = true) {
    Do(ws, test::QuietDesktop(), MovePointsStep{points, columns, rows});
    ws.pointEdit.ByKeys = byKeys;
    Commit(ws);
    return history.Size() - size;
  };
  // Along one axis first, then along both; what they have in common differs from step to step.
  EXPECT_EQ(move({1, 3}, 1, 0), 1u);
  EXPECT_EQ(move({1, 3}, 0, -0.1f), 1u);
  user->Do(ModeStep{Mode::EditPoints});
  EXPECT_EQ(move({1, 3}, 1, 0), 2u) << "the mode came between";
  EXPECT_EQ(move({1, 3}, -1, 1), 2u);
  EXPECT_EQ(move({1}, 1, 0), 3u);
  EXPECT_EQ(move({1}, 1, 0, false), 4u) << "a drag is one of its own, however short";
  EXPECT_EQ(move({1}, 1, 0), 5u);
  EXPECT_EQ(ws.undoNames.Undo, "Move (1 point)");
  const State end = StateOf(ws);
  ExpectReplayed(ws);
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(history.Undo(ws));
  EXPECT_EQ(ws.undoNames.Redo, "Move (2 points)");
  ExpectState(begin, "undone");
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(history.Redo(ws));
  ExpectState(end, "done again");
}

TEST_F(HistoryTest, EndsAStrokeOfThePenBeforeItTakesItBack) {
  Start(1);
  Workspace& ws = user->ws;
  const State begin = StateOf(ws);
  user->PressPen();
  EXPECT_TRUE(ws.pen.Down);
  EXPECT_EQ(ws.undoNames.Undo, "Axis point") << "a stroke is one change, and not done";
  ASSERT_TRUE(history.Undo(ws));
  EXPECT_FALSE(ws.pen.Down);
  EXPECT_EQ(ws.undoNames.Redo, "Drawing");
  EXPECT_EQ(StateOf(ws).Pixels, begin.Pixels);
  ASSERT_TRUE(history.Redo(ws));
  EXPECT_NE(StateOf(ws).Pixels, begin.Pixels);
  ExpectReplayed(ws);
}

TEST_F(HistoryTest, GivesUpWhatIsOnlyBeingDragged) {
  Start(1);
  Workspace& ws = user->ws;
  user->Do(PointStep{50, 60});
  user->Do(ModeStep{Mode::EditPoints});
  Plot_MouseDown(ws, Desktop(), kLeftButton, 0, 50, 60);
  Plot_MouseMove(ws, Desktop(), kLeftButton, 0, 70, 70);
  ASSERT_TRUE(ws.pointEdit.Dragged);
  ASSERT_TRUE(history.Undo(ws));
  EXPECT_EQ(ws.undoNames.Undo, "Capture");
  Plot_MouseUp(ws, Desktop(), kLeftButton, 0, 70, 70);
  EXPECT_EQ(ws.store.Places.back(), (Place{50, 60}));
}

TEST(History, WhatComesNextIsSaidForWhatThereIs) {
  const test::TemporaryFolder folder;
  SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser());
  Workspace ws;
  History history;
  history.Begin(ws);
  const auto step = [&](const Step& one) {
    EXPECT_TRUE(Do(ws, test::QuietDesktop(), one).IsDone()) << TextOf(one);
  };
  const auto expect = [&](const std::string& begin) {
    const std::string hint = NextStepOf(ws).Hint;
    EXPECT_TRUE(hint.starts_with(begin)) << hint << "\ninstead of\n" << begin;
  };
  const std::vector<std::pair<std::string, std::vector<Step>>> entries = {
      {"Origin:", {OpenStep{.Path = folder / "plot.bmp"}, ModeStep{Mode::AxisDef}}},
      {"X Axis:", {AxisStep{0, 20, 100, "0", "0"}}},
      {"Y Axis:", {AxisStep{1, 110, 100, "9", "0"}}},
      {"To continue", {AxisStep{2, 20, 10, "0", "9"}}},
      {"Origin:", {RedefineStep{0}}},
      {"To continue",  // as proposed axes are taken
       {AxisStep{0, 20, 100, "0", "0"}, AxisStep{1, 110, 100, "9", "0"},
        AxisStep{2, 20, 10, "0", "9"}}}};
  std::vector<std::string> hints = {"Open"};
  expect(hints.back());
  for (const auto& [hint, steps] : entries) {
    for (const Step& one : steps) step(one);
    history.Commit(ws);
    expect(hints.emplace_back(hint));
  }
  for (std::size_t i = entries.size(); i-- > 0;) {
    ASSERT_TRUE(history.Undo(ws));
    expect(hints[i]);
  }
  for (std::size_t i = 1; i < hints.size(); ++i) {
    ASSERT_TRUE(history.Redo(ws));
    expect(hints[i]);
  }
  // A reference outlives the row that it has shown to be wrong; meanwhile no click moves it.
  step(ReferenceStep{60, 60, "4", "4"});
  ws.reference.Chosen = 0;
  step(RedefineStep{2});
  history.Commit(ws);
  expect("Y Axis:");
  ASSERT_TRUE(history.Undo(ws));
  expect("A click moves");
}

TEST(History, TheColoursOfAnInkAloneGoAlong) {
  Raster colours = Raster::Filled(60, 40, kWhitePixel);
  for (int x = 5; x < 55; ++x)
    for (int y = 10; y < 30; ++y) colours.Row(y)[x] = y % 7 < 3 ? 0xffd62728 : 0xff1f77b4;
  Workspace ws;
  const Desktop desktop = test::QuietDesktop();
  TakeInHand(ws, desktop, colours.Clone(), "Pasted Plot");
  History history;
  history.Begin(ws);
  const auto shown = [&] { return PixelsOf(ws.plot.Pixels); };
  std::vector<std::vector<std::uint32_t>> states = {shown()};
  for (const Step& step : {Step(InkStep{0xd6, 0x27, 0x28}), Step(InkStep{0x1f, 0x77, 0xb4}),
                           Step(ShowColoursStep{})}) {
    ASSERT_TRUE(Do(ws, desktop, step).IsDone());
    history.Commit(ws);
    states.push_back(shown());
  }
  EXPECT_NE(states[1], states[2]);
  EXPECT_EQ(states[3], states[0]);
  for (int round = 0; round < 2; ++round) {
    for (int i = 2; i >= 0; --i) {
      ASSERT_TRUE(history.Undo(ws));
      EXPECT_EQ(shown(), states[static_cast<std::size_t>(i)]);
      EXPECT_EQ(CanShowColours(ws), i > 0);
    }
    for (std::size_t i = 1; i <= 3; ++i) {
      ASSERT_TRUE(history.Redo(ws));
      EXPECT_EQ(shown(), states[i]);
      EXPECT_EQ(CanShowColours(ws), i < 3);
    }
  }
  // The colours that Undo has brought into the box are those that come back.
  ASSERT_TRUE(history.Undo(ws));
  ASSERT_TRUE(Do(ws, desktop, ShowColoursStep{}).IsDone());
  EXPECT_EQ(shown(), states[0]);
}

}  // namespace
}  // namespace graphize
