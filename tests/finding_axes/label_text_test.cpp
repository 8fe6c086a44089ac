#include "finding_axes/label_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "finding_axes/axis_law.h"
#include "finding_axes/read_labels.h"

namespace graphize {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(LabelText, MeansItsNumbersAndNothingElse) {
  struct Case {
    const char *Text, *Exponent;
    std::vector<double> Values;
  };
  const Case cases[] = {
      {"0", "", {0}},
      {"-2.50", "", {-2.5}},
      {"+3", "", {3}},
      {".5", "", {0.5}},
      {"0,5", "", {0.5}},
      {"0,125", "", {0.125}},
      {"1,000", "", {1, 1000}},
      {"1.000", "", {1, 1000}},
      {"12,345,678", "", {12345678}},
      {"1e-3", "", {0.001}},
      {"2.5e+4", "", {25000}},
      {"10", "3", {1000}},
      {"-10", "-2", {-0.01}},
      {"5x10", "-1", {0.5}},
      {"90", "0", {}},  // degrees
      {"10", "?", {}},
      {"12,34,567", "", {}},
      {"1.2.3", "", {}},
      {"3-4", "", {}},
      {"5%", "", {}},
      {"1?", "", {}},
      {"-", "", {}},
      {"", "", {}},
      {"1e", "", {}},
  };
  for (const Case& c : cases)
    EXPECT_THAT(MeaningsOf(c.Text, c.Exponent), ElementsAreArray(c.Values))
        << c.Text << "^" << c.Exponent;
  for (const char* doubtful : {"05", "-00", "-0.0"}) EXPECT_NE(TextDoubt(doubtful), nullptr);
  for (const char* plain : {"0.5", "0", "-10", "1e5"}) EXPECT_EQ(TextDoubt(plain), nullptr);
}

std::vector<PlacedLabel> Labels(const std::vector<std::pair<double, const char*>>& texts) {
  std::vector<PlacedLabel> labels;
  for (const auto& [position, text] : texts) labels.push_back({position, MeaningsOf(text, "")});
  return labels;
}

TEST(AxisLaw, MostLabelsDecideAndWhatElseTheyMayMeanIsARival) {
  struct Case {
    const char* What;
    std::vector<PlacedLabel> Labels;
    std::size_t Explained;
    bool Log;
    bool HasRival;
  };
  const Case cases[] = {
      {"one wrong", Labels({{0, "0"}, {100, "5"}, {201, "10"}, {300, "18"}, {400, "20"}}), 4, false,
       false},
      {"reversed logarithmic", Labels({{300, "1"}, {200, "10"}, {100, "100"}, {0, "1000"}}), 4,
       true, false},
      {"years nearly lie on a logarithmic law",
       Labels({{0, "1900"}, {100, "1950"}, {200, "2000"}, {300, "2050"}}), 4, false, false},
      {"thousands or thousandths", Labels({{0, "1,000"}, {100, "2,000"}, {200, "3,000"}}), 3, false,
       true},
      {"one label settles it", Labels({{0, "0,500"}, {100, "1,000"}, {200, "1,500"}}), 3, false,
       false},
      {"nothing goes together", Labels({{0, "1"}, {100, "7"}, {200, "3"}}), 2, false, false},
  };
  for (const Case& c : cases) {
    const PictureOperation operation;
    const LawFit fit = FindLaw(c.Labels, 4, operation);
    EXPECT_EQ(fit.Labels.size(), c.Explained) << c.What;
    if (fit.Labels.size() < 3) continue;
    EXPECT_EQ(fit.Law.Log, c.Log) << c.What;
    EXPECT_EQ(FindLaw(c.Labels, 4, operation, &fit).Labels.size() >= 3, c.HasRival) << c.What;
  }
}

TEST(AxisLaw, UnevenStepsAreNoScale) {
  EXPECT_EQ(ScaleDoubt(false, {0, 2, 4, 10}), nullptr);  // labels were left out
  EXPECT_EQ(ScaleDoubt(false, {1850, 1900, 2000}), nullptr);
  EXPECT_NE(ScaleDoubt(false, {0, 10, 24.7}), nullptr);
}

TEST(ReadLabels, DoubtsWhatTwoLooksReadDifferently) {
  const struct {
    const char *Near, *Far, *Text, *Second;
    bool IsDoubtful;
  } cases[] = {{" sin(x)\n", "sin(x)", "sin(x)", "", false},
               {"y = 2", "y= 2", "y = 2", "", false},
               {"sintx)", "sin(x)", "sin(x)", "sintx)", true},
               {"sintx)", "sintx)", "sintx)", "", true},
               {"sintx)", "sintx.", "sintx)", "sintx.", true},
               {"sin(x)", "sim(x)", "sin(x)", "sim(x)", true},
               {"run 1", "", "run 1", "", true},
               {"", "run 1", "run 1", "", true},
               {"", "", "", "", false}};
  const Raster picture = Raster::Filled(90, 40, kWhitePixel);
  const std::vector<std::vector<TextBox>> labels = {{}, {{10, 10, 60, 20}}};
  for (const auto& c : cases) {
    int height = 0;
    PictureOperation operation;
    const auto read =
        ReadLabels(picture, FrameOf({}, 90, 40), labels, operation, [&](const TextLine& line) {
          return std::string(std::exchange(height, line.Height) == 0 ? c.Near : c.Far);
        });
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].Text, "");
    EXPECT_EQ(read[1].Text, c.Text);
    EXPECT_EQ(read[1].Second, c.Second);
    EXPECT_EQ(read[1].IsDoubtful, c.IsDoubtful) << c.Near << " " << c.Far;
  }
}

}  // namespace
}  // namespace graphize
