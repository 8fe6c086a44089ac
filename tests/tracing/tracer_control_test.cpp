#include "tracing/tracer_control.h"

#include <gtest/gtest.h>

#include <tuple>

#include "base/run_time_error.h"

namespace graphize {
namespace {

std::string Shown(const TracerControl& c) {
  return c.Center.Caption + "|" + c.Above.Caption + "|" + c.Below.Caption + "|" + c.Xrange + "|" +
         c.Yrange;
}

TEST(TracerControl, EachTraceTypeHasItsCaptionsAndIncrements) {
  const std::pair<int, const char*> cases[] = {{0, "Center|Edge Above|Edge Below|2|3"},
                                               {1, "Center|Edge Above|Edge Below|2|3"},
                                               {2, "Y-Down|Y-Up|Repeat|2|2"},
                                               {3, "Y-Down|Y-Up|Repeat|77|88"},
                                               {-1, "Y-Down|Y-Up|Repeat|77|88"}};
  for (const auto& [trace, expected] : cases) {
    TracerControl control;
    control.Xrange = "77";
    control.Yrange = "88";
    control.IncrementsEnabled = trace != 2;
    control.Above.Checked = true;
    SetTraceType(control, trace);
    EXPECT_EQ(Shown(control), expected) << trace;
    EXPECT_TRUE(control.IncrementsEnabled) << trace;
    EXPECT_EQ(control.PointsEnabled, trace != 2) << trace;
    EXPECT_TRUE(control.Center.Checked && control.Above.Checked) << trace;
  }
  TracerControl fresh;
  const std::string start = Shown(fresh);
  SetTraceType(fresh, 0);
  EXPECT_EQ(start, Shown(fresh));
}

TEST(TracerControl, IncrementsAreTheLeadingNumberAndTheBoxSaysSo) {
  const std::tuple<const char*, int, int, const char*> cases[] = {
      {"", 0, 0, "0"},     {"abc", 0, 0, "0"},          {"3 px", 0, 3, "3"}, {"-4", 0, 0, "0"},
      {"3abc", 0, 3, "3"}, {"2,7", 0, 3, "3"},          {" 07 ", 0, 7, "7"}, {"-5", 1, 1, "1"},
      {"2.5", 0, 2, "2"},  {"1e2", 0, 100, "100"},      {"0", 1, 1, "1"},    {"-32767", 1, 1, "1"},
      {"", 1, 1, "1"},     {"32767", 0, 32767, "32767"}};
  for (const auto& [typed, least, expected, after] : cases) {
    std::string text = typed;
    EXPECT_EQ(IncrementAtLeast(text, least), expected) << typed;
    EXPECT_EQ(text, after) << typed;
  }
  for (std::string text : {"32768", "1e9", "1e999", "-40000"})
    EXPECT_THROW(IncrementAtLeast(text, 0), RunTimeError) << text;
}

}  // namespace
}  // namespace graphize
