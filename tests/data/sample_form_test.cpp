#include "data/sample_form.h"

#include <gtest/gtest.h>

#include <tuple>

#include <limits>

#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize {
namespace {

using test::ListRows;
using test::MakeStore;
using test::RowList;
using test::ScriptedDesktop;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr const char* kBadCount = "\r\nError in sampling parameters\r\nSetting n=2";

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
  struct Case {
    const char* min;
    const char* max;
    const char* steps;
    bool log;
    const char* message;  // null: none
    const char* stepsAfter;
    const char* step;
  };
  const Case cases[] = {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.steps);
    const PointStore store = MakeStore({{0, 0}, {1, 1}});
    // The same from the box and from the button.
    for (const bool button : {false, true}) {
      SampleForm form = Opened(store);
      form.MinXBox = c.min;
      form.MaxXBox = c.max;
      form.SampleXLog = c.log;
      form.Steps = c.steps;
      ScriptedDesktop desktop;
      if (c.message) desktop.ExpectMessage(std::string(c.message) + kBadCount);
      if (button)
        EXPECT_TRUE(CalculateStep(form, store, desktop));
      else
        StepsChanged(form, desktop);
      EXPECT_EQ(form.Steps, c.stepsAfter);
      EXPECT_EQ(form.dXBox, c.step);
      for (const Message& message : desktop.Messages) {
        EXPECT_EQ(message.Text, std::string(c.message) + kBadCount);
        EXPECT_EQ(message.Icon, MessageIcon::Exclamation);
      }
    }
  }
}

TEST(SampleForm, ATypedStepGivesTheCount) {
  struct Case {
    const char* typed;
    bool log;
    const char* message;
    const char* steps;
    const char* step;
  };
  // From 1 to 100.
  const Case cases[] = {
      {"33", false, nullptr, "4", "3.30000E+1"},
      {"30", false, nullptr, "4", "3.30000E+1"},  // 4.3 points are 4 points
      {" 9.9 ", false, nullptr, "11", "9.90000E+0"},
      {"log .25", true, nullptr, "9", "Log 2.50000E-1"},
      {"Log 1", true, nullptr, "3", "Log 1.00000E+0"},
      {"200", false, "200", "2", "9.90000E+1"},
      {"-1", false, "-1", "2", "9.90000E+1"},
      {"wide", false, "wide", "2", "9.90000E+1"},
      {"   ", false, nullptr, "2", "9.90000E+1"},  // nothing typed
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    const PointStore store = MakeStore({{1, 0}, {100, 1}});
    SampleForm form = Opened(store);
    form.SampleXLog = c.log;
    RangeChanged(form, store);
    form.dXBox = c.typed;
    // A change of the range does not take the typed step away.
    RangeChanged(form, store);
    ScriptedDesktop desktop;
    if (c.message) desktop.ExpectMessage(std::string(c.message) + kBadCount);
    EXPECT_EQ(CalculateStep(form, store, desktop), c.message == nullptr);
    EXPECT_EQ(form.Steps, c.steps);
    EXPECT_EQ(form.dXBox, c.step);
    // Now it stands there as calculated: a second press changes nothing.
    EXPECT_TRUE(CalculateStep(form, store, desktop));
    EXPECT_EQ(form.Steps, c.steps);
    EXPECT_EQ(form.dXBox, c.step);
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
  desktop.ExpectMessage(std::string("one") + kBadCount);
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
}  // namespace graphize
