#include "data/sample_form.h"

#include <gtest/gtest.h>

#include <tuple>

#include <limits>

#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
const std::string kBadCount = "\r\nError in sampling parameters\r\nSetting n=2";

SampleForm Opened(const PointStore& store) {
  return OpenSample(store, ScriptedDesktop()).value();
}

TEST(SampleForm, OpensWithTheRangeOfTheCapturedPoints) {
  PointStore store = MakeStore({{2, -5}, {kNaN, kInfinity}, {0.5f, 40}, {12.5f, 0.03125f}});
  store.ListCount = 0;
  const SampleForm form = Opened(store);
  EXPECT_EQ(form.MinXBox, "5.00000E-1");
  EXPECT_EQ(form.MaxXBox, "1.25000E+1");
  EXPECT_EQ(form.MinYBox, "-5.00000E+0");
  EXPECT_EQ(form.MaxYBox, "4.00000E+1");
  EXPECT_EQ(form.Steps, "4");
  EXPECT_EQ(form.dXBox, "4.00000E+0");

  ScriptedDesktop desktop;
  desktop.ExpectMessage("No Points in List");
  EXPECT_FALSE(OpenSample(PointStore(), desktop));
  // A single point and points that are no numbers have no step, and no message before a question.
  EXPECT_EQ(Opened(MakeStore({{1, 1}})).dXBox, "");
  EXPECT_EQ(Opened(MakeStore({{kNaN, 1}, {kInfinity, 1}})).MinXBox, "");
}

TEST(SampleForm, TheHintNamesThePointWhereXGoesBack) {
  const std::pair<RowList, const char*> cases[] = {
      {{{3, 0}}, "Min X equals Max X"},
      {{{0, 0}, {1, 0}, {2, 0}}, ""},
      {{{2, 0}, {1, 0}, {0, 0}}, ""},
      {{{0, 0}, {1, 0}, {1, 5}, {0, 0}}, "does not change at captured point 3."},
      {{{0, 0}, {1, 0}, {0, 5}, {0, 0}}, "turns back at captured point 3:"},
      {{{2, 0}, {1, 0}, {3, 5}}, "turns back at captured point 3:"},
  };
  for (const auto& [points, words] : cases) {
    const SampleForm form = Opened(MakeStore(points));
    EXPECT_EQ(form.Hint.empty(), *words == '\0');
    EXPECT_NE(form.Hint.find(words), std::string::npos) << form.Hint;
    EXPECT_EQ(form.Hint.find('\n'), std::string::npos);
  }
  const PointStore store = MakeStore({{0, 0}, {1, 0}});
  SampleForm form = Opened(store);
  form.SampleXLog = true;
  RangeChanged(form, store);
  EXPECT_NE(form.Hint.find("above 0"), std::string::npos);
  form.MinXBox = "0.1";
  RangeChanged(form, store);
  EXPECT_EQ(form.Hint, "X - Log: X of point 1 is not above 0.");
  form.SampleXLog = false;
  form.SampleYLog = true;
  RangeChanged(form, store);
  EXPECT_EQ(form.Hint, "Y - Log: Y of point 1 is not above 0.");
  form.SampleYLog = false;
  form.MaxXBox = "1.25";
  RangeChanged(form, store);
  EXPECT_NE(form.Hint.find("beyond the captured points"), std::string::npos) << form.Hint;
}

TEST(SampleForm, ALimitShowsTheNumberThatWasReadAndTheHintSaysSo) {
  PointStore store = MakeStore({{0, 0}, {1, 0}});
  SampleForm form = Opened(store);
  form.MinXBox = "0,25";
  form.MaxXBox = "1 m";
  ASSERT_TRUE(ReSample(form, store, false, ScriptedDesktop()));
  EXPECT_EQ(form.MinXBox, "0,25");
  EXPECT_EQ(form.MaxXBox, "1");
  EXPECT_EQ(form.Hint, "Max X was read as 1.");
  EXPECT_EQ(ListRows(store), (RowList{{0.25f, 0}, {1, 0}}));
}

TEST(SampleForm, TheCountGivesTheStep) {
  // Min, max, count, log; what is refused, if anything; count and step afterwards.
  const std::tuple<const char*, const char*, const char*, bool, const char*, const char*,
                   const char*>
      cases[] = {
          {"0", "10", "3", false, nullptr, "3", "5.00000E+0"},
          {"0", "10", "  11 points", false, nullptr, "11", "1.00000E+0"},
          {"0", "10", "1e3", false, nullptr, "1000", "1.00100E-2"},
          {"10", "0", "5", false, nullptr, "5", "-2.50000E+0"},
          {"4", "4", "5", false, nullptr, "5", ".00000E+0"},
          {"0", "10", "2.5", false, nullptr, "2", "1.00000E+1"},
          {"1", "100", "3", true, nullptr, "3", "Log 1.00000E+0"},
          {"0", "100", "3", true, nullptr, "3", ""},
          {"0", "10", "1", false, "1", "2", "1.00000E+1"},
          {"0", "10", "-7", false, "-7", "2", "1.00000E+1"},
          {"0", "10", "", false, "", "2", "1.00000E+1"},
          {"", "x", "3", false, nullptr, "3", ".00000E+0"},
          {"0", "40000", "40001", false, nullptr, "40001", "1.00000E+0"},
          {"0", "10", "1e99", false, nullptr, "1e99", ""},
          {"0", "1e99", "3", false, nullptr, "3", ""},
      };
  for (const auto& [min, max, steps, log, refused, stepsAfter, step] : cases) {
    SCOPED_TRACE(steps);
    const PointStore store = MakeStore({{0, 0}, {1, 1}});
    // The same from the box and from the button.
    for (const bool button : {false, true}) {
      SampleForm form = Opened(store);
      form.MinXBox = min;
      form.MaxXBox = max;
      form.SampleXLog = log;
      form.Steps = steps;
      ScriptedDesktop desktop;
      if (refused) desktop.ExpectMessage(refused + kBadCount);
      if (button)
        EXPECT_TRUE(CalculateStep(form, store, desktop));
      else
        StepsChanged(form, desktop);
      EXPECT_EQ(form.Steps, stepsAfter);
      EXPECT_EQ(form.dXBox, step);
      for (const Message& message : desktop.Messages)
        EXPECT_EQ(message.Icon, MessageIcon::Exclamation);
    }
  }
}

TEST(SampleForm, ATypedStepGivesTheCount) {
  // From 1 to 100: typed, log, refused, count and step.
  const std::tuple<const char*, bool, bool, const char*, const char*> cases[] = {
      {"33", false, false, "4", "3.30000E+1"},
      {"30", false, false, "4", "3.30000E+1"},  // 4.3 points are 4 points
      {" 9.9 ", false, false, "11", "9.90000E+0"},
      {"log .25", true, false, "9", "Log 2.50000E-1"},
      {"Log 1", true, false, "3", "Log 1.00000E+0"},
      {"200", false, true, "2", "9.90000E+1"},
      {"-1", false, true, "2", "9.90000E+1"},
      {"wide", false, true, "2", "9.90000E+1"},
      {"   ", false, false, "2", "9.90000E+1"},  // nothing typed
  };
  for (const auto& [typed, log, refused, steps, step] : cases) {
    SCOPED_TRACE(typed);
    const PointStore store = MakeStore({{1, 0}, {100, 1}});
    SampleForm form = Opened(store);
    form.SampleXLog = log;
    RangeChanged(form, store);
    form.dXBox = typed;
    // A change of the range does not take the typed step away.
    RangeChanged(form, store);
    ScriptedDesktop desktop;
    if (refused) desktop.ExpectMessage(typed + kBadCount);
    // Then it stands there as calculated: a second press changes nothing.
    for (const bool isDone : {!refused, true}) {
      EXPECT_EQ(CalculateStep(form, store, desktop), isDone);
      EXPECT_EQ(form.Steps, steps);
      EXPECT_EQ(form.dXBox, step);
    }
  }
}

TEST(SampleForm, OfCountAndStepTheOneTypedLastCounts) {
  SampleForm form = Opened(MakeStore({{0, 0}, {10, 1}}));
  form.Steps = "1";  // on the way to 11: not told yet
  StepsTyped(form);
  EXPECT_EQ(form.dXBox, "");
  form.Steps = "11";
  StepsTyped(form);
  EXPECT_EQ(form.dXBox, "1.00000E+0");
  form.dXBox = "5";
  StepsChanged(form, ScriptedDesktop());
  EXPECT_EQ(form.dXBox, "5");
  form.Steps = "6";
  StepsTyped(form);
  EXPECT_EQ(form.dXBox, "2.00000E+0");
}

TEST(SampleForm, ReSamplesWithWhatStandsInTheBoxes) {
  PointStore store = MakeStore({{0, 0}, {10, 10}});
  SampleForm form = Opened(store);
  form.dXBox = "2.5";
  EXPECT_TRUE(ReSample(form, store, false, ScriptedDesktop()));
  EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {2.5f, 2.5f}, {5, 5}, {7.5f, 7.5f}, {10, 10}}));
  EXPECT_EQ(form.Steps, "5");

  form.MaxXBox = "20";
  form.Steps = "one";
  ScriptedDesktop desktop;
  desktop.ExpectMessage("one" + kBadCount);
  EXPECT_TRUE(ReSample(form, store, true, desktop));
  EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {20, 20}}));
  EXPECT_EQ(form.dXBox, "2.00000E+1");
}

TEST(SampleForm, RefusalsLeaveTheListAsItIs) {
  PointStore store = MakeStore({{0, 0}, {10, 10}});
  for (const auto& [steps, step] :
       {std::pair{"32768", ""}, {"40000", ""}, {"1e99", ""}, {"3", "0.0001"}, {"3", "1e-300"}}) {
    SCOPED_TRACE(std::string(steps) + step);
    SampleForm form = Opened(store);
    form.Steps = steps;
    StepsChanged(form, ScriptedDesktop());
    if (*step) form.dXBox = step;
    ScriptedDesktop desktop;
    desktop.ExpectMessage("Too many points");
    EXPECT_FALSE(ReSample(form, store, false, desktop));
    EXPECT_EQ(desktop.Messages.back().Icon, MessageIcon::Critical);
    EXPECT_EQ(form.Steps, steps);
    EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {10, 10}}));
    EXPECT_TRUE(store.ListIsCaptured);
  }
}

TEST(SampleForm, LimitsThatAreNoNumbersAreRefused) {
  PointStore store = MakeStore({{0, 0}, {10, 10}});
  for (const auto& [min, max, told] :
       {std::tuple{"", "10", ""}, {"abc", "10", "abc"}, {"0", "1e60", "1e60"}, {"0", "-", "-"}}) {
    SampleForm form = Opened(store);
    form.MinXBox = min;
    form.MaxXBox = max;
    RangeChanged(form, store);
    EXPECT_EQ(form.Hint, "Min X and Max X must be numbers.");
    ScriptedDesktop desktop;
    desktop.ExpectMessage(std::string(told) + "\r\nError in sampling parameters");
    EXPECT_FALSE(ReSample(form, store, false, desktop));
    EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {10, 10}}));
  }
}

TEST(SampleForm, ABadPointIsTold) {
  PointStore store = MakeStore({{0, 0}, {1, 1}, {2, -1}});
  SampleForm form = Opened(store);
  form.SampleYLog = true;
  form.MinXBox = "0.5";
  ScriptedDesktop desktop;
  desktop.ExpectMessage("Error while ReSampling. Remove bad points and retry");
  EXPECT_EQ(ReSample(form, store, false, desktop), SampleEnd::BadPoint);
  EXPECT_EQ(store.ListCount, 0);
  form.SampleYLog = false;
  EXPECT_EQ(SampleEnd::Done, ReSample(form, store, false, desktop));
  // Escape is no error.
  desktop.EscapeAfter = 0;
  EXPECT_EQ(ReSample(form, store, false, desktop), SampleEnd::Stopped);
  EXPECT_EQ(store.ListCount, 1);
}

}  // namespace
}  // namespace graphize::test
