#include "extraction/tracer_control.h"

#include <gtest/gtest.h>

#include "base/run_time_error.h"

namespace graphize {
namespace {

std::string Shown(const TracerControl& c) {
  return c.Center.Caption + "|" + c.Above.Caption + "|" + c.Below.Caption + "|" + c.Xrange + "|" +
         c.Yrange;
}

TEST(TracerControl, EachTraceTypeHasItsCaptionsAndIncrements) {
  const struct {
    int Trace;
    const char* Expected;
  } cases[] = {
      {0, "Center|Edge Above|Edge Below|2|3"}, {1, "Center|Edge Above|Edge Below|2|3"},
      {2, "Y-Down|Y-Up|Repeat|2|2"},           {3, "Y-Down|Y-Up|Repeat|77|88"},
      {-1, "Y-Down|Y-Up|Repeat|77|88"},
  };
  for (const auto& c : cases) {
    TracerControl control;
    control.Xrange = "77";
    control.Yrange = "88";
    control.IncrementsEnabled = c.Trace != 2;
    control.Above.Checked = true;
    SetTraceType(control, c.Trace);
    EXPECT_EQ(Shown(control), c.Expected) << c.Trace;
    EXPECT_TRUE(control.IncrementsEnabled) << c.Trace;
    EXPECT_TRUE(control.Center.Checked && control.Above.Checked) << c.Trace;
  }
  TracerControl fresh;
  const std::string start = Shown(fresh);
  SetTraceType(fresh, 0);
  EXPECT_EQ(start, Shown(fresh));
}

TEST(TracerControl, IncrementsAreTheLeadingNumberRoundedToSixteenBits) {
  const std::pair<const char*, int> cases[] = {{"", 0},      {"abc", 0},       {"3 px", 3},
                                               {"-4", -4},   {"2.5", 2},       {"3.5", 4},
                                               {"1e2", 100}, {"32767", 32767}, {"-32768", -32768}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(IncrementOf(text), expected) << text;
  for (const char* text : {"32768", "1e9", "1e999", "-40000"})
    EXPECT_THROW(IncrementOf(text), RunTimeError) << text;
}

}  // namespace
}  // namespace graphize
