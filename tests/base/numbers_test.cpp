#include "base/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

#include "base/run_time_error.h"
#include "base/tokens.h"

namespace graphize {
namespace {

TEST(Numbers, RoundHalfToEvenIntoSixteenBits) {
  const std::pair<double, int> cases[] = {
      {0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {32767.4, 32767}, {-32768.5, -32768}};
  for (const auto& [value, expected] : cases) EXPECT_EQ(ToInt16(value), expected) << value;
  for (const double value : {32767.5, -32769.0, 1e300, std::nan(""), double{INFINITY}})
    EXPECT_THROW(ToInt16(value), RunTimeError) << value;
  EXPECT_THROW(ToInt32(2147483647.5), RunTimeError);
  EXPECT_THROW(ToSingle(1e39), RunTimeError);
}

TEST(Numbers, TextReadsByItsLeadingNumber) {
  const std::pair<const char*, double> cases[] = {
      {"1e3", 1000},  {"  -2.5 m", -2.5},  {"0,5", 0.5},
      {"", 0},        {"abc", 0},          {"+7", 7},
      {".5", 0.5},    {"5.", 5},           {"1e", 1},
      {"-", 0},       {"inf", 0},          {"nan", 0},
      {"- 3", 0},     {"1 2", 1},          {"\t12\r\n", 12},
      {"0x10", 0},    {"1e-400", 0},       {"--1", 0},
      {"1.2.3", 1.2}, {"\u22122,5", -2.5}, {"1e\u22123", 0.001},
      {",5", 0.5},    {"1.234,5", 1.234},  {"1,2,3", 1}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(LeadingNumber(text), expected) << text;
  EXPECT_TRUE(std::isinf(LeadingNumber("1e999")));
  EXPECT_LT(LeadingNumber("-1e999"), 0);
}

TEST(Numbers, ATextIsPlainWhenItSaysTheNumberAndNothingElse) {
  for (const char* text : {"5", " -2,5 ", "\u22123", "1e3", ".5", "0,125", "1000,125", "12,34"})
    EXPECT_TRUE(ReadTyped(text).IsPlain) << text;
  // A comma before three digits may group thousands.
  for (const char* text : {"", "abc", "5 m", "1.234,5", "1,2,3", "1e", "1,000", "-20,500"})
    EXPECT_FALSE(ReadTyped(text).IsPlain) << text;
}

TEST(Numbers, ShortestTextReadsBackAsTheSameValue) {
  for (const float value : {0.0f, 0.1f, -2.5e-7f, 1950.0f, 3.4e38f, 1.0f / 3.0f})
    EXPECT_EQ(static_cast<float>(LeadingNumber(ShortestText(value))), value);
  EXPECT_EQ(ShortestText(300.0f), "300");
}

TEST(Numbers, ADecimalValueIsWrittenLikeItsSingle) {
  EXPECT_EQ(DecimalValue(0.1f), 0.1);
  EXPECT_TRUE(std::isnan(DecimalValue(std::nanf(""))));
  // Every exponent, both signs, mantissas all over.
  for (std::uint32_t bits = 1; bits > 0 && bits < 0xffff0000u; bits += 40503) {
    const auto value = std::bit_cast<float>(bits);
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(ShortestText(DecimalValue(value)), ShortestText(value));
    ASSERT_EQ(static_cast<float>(DecimalValue(value)), value);
  }
}

TEST(Numbers, NamesStandInTheOrderOfTheNumbersInThem) {
  const std::vector<std::string> inOrder = {
      "1.tif",      "02.tif",   "a",         "page2.tif", "page02b.tif",
      "page10.tif", "page10a1", "page10a02", "pages",     "q9999999999999999999999"};
  for (std::size_t i = 0; i < inOrder.size(); ++i)
    for (std::size_t j = 0; j < inOrder.size(); ++j)
      EXPECT_EQ(NumbersInOrder(inOrder[i], inOrder[j]), i < j) << inOrder[i] << " " << inOrder[j];
}

TEST(Numbers, CaseAndBlanks) {
  EXPECT_EQ(LowerCase("Fig3.TIF \xc3\x84"), "fig3.tif \xc3\x84");
  EXPECT_EQ(TrimRight(" a b  "), " a b");
  EXPECT_EQ(TrimRight("   "), "");
}

}  // namespace
}  // namespace graphize
