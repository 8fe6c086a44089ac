#include "data/number_format.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/run_time_error.h"

namespace graphize {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(BuildFormats, BuildsPatternsFromPlaces) {
  struct Case {
    std::int16_t digits, decimals;
    bool exponent;
    std::string pattern;
  };
  const std::string zeros(100, '0'), hashes(99, '#');
  const Case cases[] = {
      {1, 5, true, "0.00000E+00"}, {3, 2, false, "##0.00"},       {1, 0, false, "0."},
      {2, 0, true, "#0.E+00"},     {1, 100, false, "0." + zeros}, {100, 0, false, hashes + "0."},
  };
  for (const Case& c : cases) {
    NumberFormats formats;
    BuildFormats({.XDigits = c.digits, .XDecimals = c.decimals, .XExp = c.exponent}, formats);
    EXPECT_EQ(formats.X, c.pattern);
    EXPECT_EQ(formats.Y, "0.00000E+00");
    BuildFormats({.YDigits = c.digits, .YDecimals = c.decimals, .YExp = c.exponent}, formats);
    EXPECT_EQ(formats.Y, c.pattern);
    EXPECT_EQ(formats.X, "0.00000E+00");
  }
}

TEST(BuildFormats, AnUnknownDelimiterLeavesTheOneInForce) {
  NumberFormats formats;
  for (const auto& [number, text] : {std::pair<int, const char*>{3, ";"},
                                     {7, ";"},
                                     {2, " "},
                                     {-1, " "},
                                     {1, ","},
                                     {0, "\t"},
                                     {4, "\t"}}) {
    BuildFormats({.Delimiter = static_cast<std::int16_t>(number)}, formats);
    EXPECT_EQ(formats.Delimiter, text) << number;
  }
}

TEST(BuildFormats, RefusesPlacesOutOfRangeAndChangesNothing) {
  const std::pair<Settings, const char*> cases[] = {
      {{.XDigits = 0, .Delimiter = 3}, "XDigits is 0"},
      {{.XDecimals = -1, .Delimiter = 3}, "XDecimals is -1"},
      {{.XDigits = 2, .YDigits = 101, .Delimiter = 3}, "YDigits is 101"},
      {{.XDigits = 2, .YDecimals = -5, .Delimiter = 3}, "YDecimals is -5"},
  };
  for (const auto& [settings, words] : cases) {
    NumberFormats formats{"0.0", "0.", " "};
    try {
      BuildFormats(settings, formats);
      ADD_FAILURE() << "not refused: " << words;
    } catch (const RunTimeError& error) {
      EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
    }
    EXPECT_EQ(formats.X, "0.0");
    EXPECT_EQ(formats.Y, "0.");
    EXPECT_EQ(formats.Delimiter, " ");
  }
}

TEST(FormatValue, RendersByThePatternWithTheChosenSeparator) {
  struct Case {
    float value;
    const char* pattern;
    const char* withPoint;
    const char* withComma;
  };
  const Case cases[] = {
      {1234.5f, "0.00000E+00", "1.23450E+03", "1,23450E+03"},
      {-0.000125f, "0.00000E+00", "-1.25000E-04", "-1,25000E-04"},
      {2.6f, "0.", "3.", "3,"},
      {0.1f, "0.000000000000", "0.100000001490", "0,100000001490"},
      {3.4e38f, "0.0", "339999995214436424907732413799364296704.0",
       "339999995214436424907732413799364296704,0"},
      {kInfinity, "0.00", "Inf", "Inf"},
      {std::numeric_limits<float>::quiet_NaN(), "0.00", "NaN", "NaN"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FormatValue(c.value, c.pattern, true), c.withPoint);
    EXPECT_EQ(FormatValue(c.value, c.pattern, false), c.withComma);
  }
}

TEST(FormatValue, TheWidestPatternsStillPrintEveryDigit) {
  NumberFormats formats;
  BuildFormats({.XDigits = kMaxPlaces, .XDecimals = kMaxPlaces, .YExp = false}, formats);
  // 200 digits, the point, "E-" and the exponent.
  EXPECT_EQ(FormatValue(1.5f, formats.X, true).size(), 205u);
  EXPECT_EQ(FormatValue(1.5f, formats.X, true).substr(0, 3), "150");
  BuildFormats({.XDecimals = kMaxPlaces, .XExp = false}, formats);
  const std::string text = FormatValue(std::numeric_limits<float>::max(), formats.X, true);
  EXPECT_EQ(text, "340282346638528859811704183484516925440." + std::string(kMaxPlaces, '0'));
}

}  // namespace
}  // namespace graphize
