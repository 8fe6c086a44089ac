#include "data/number_format.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "base/run_time_error.h"

namespace graphize {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(BuildFormats, BuildsPatternsFromPlaces) {
  const std::string zeros(100, '0'), signs(99, '#');
  const std::tuple<std::int16_t, std::int16_t, bool, std::string> cases[] = {
      {1, 5, true, "0.00000E+00"}, {3, 2, false, "##0.00"},       {1, 0, false, "0."},
      {2, 0, true, "#0.E+00"},     {1, 100, false, "0." + zeros}, {100, 0, false, signs + "0."}};
  for (const auto& [digits, decimals, exponent, pattern] : cases) {
    NumberFormats formats;
    BuildFormats({.XDigits = digits, .XDecimals = decimals, .XExp = exponent}, formats);
    EXPECT_EQ(formats.X, pattern);
    EXPECT_EQ(formats.Y, "0.00000E+00");
    BuildFormats({.YDigits = digits, .YDecimals = decimals, .YExp = exponent}, formats);
    EXPECT_EQ(formats.Y, pattern);
    EXPECT_EQ(formats.X, "0.00000E+00");
  }
}

TEST(BuildFormats, AnUnknownDelimiterLeavesTheOneInForce) {
  NumberFormats formats;
  const std::pair<std::int16_t, const char*> cases[] = {{3, ";"}, {7, ";"},  {2, " "}, {-1, " "},
                                                        {1, ","}, {0, "\t"}, {4, "\t"}};
  for (const auto& [number, text] : cases) {
    BuildFormats({.Delimiter = number}, formats);
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

TEST(FormatValue, HasTheChosenSeparator) {
  // What patterns mean is tested where they are read.
  const std::tuple<float, const char*, const char*, const char*> cases[] = {
      {1234.5f, "0.00000E+00", "1.23450E+03", "1,23450E+03"},
      {2.6f, "0.", "3.", "3,"},
      {0.1f, "0.000000000000", "0.100000001490", "0,100000001490"},
      {kInfinity, "0.00", "Inf", "Inf"}};
  for (const auto& [value, pattern, withPoint, withComma] : cases) {
    EXPECT_EQ(FormatValue(value, pattern, true), withPoint);
    EXPECT_EQ(FormatValue(value, pattern, false), withComma);
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
