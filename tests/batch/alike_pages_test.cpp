// Pages of one layout, each slipped, turned and scaled in its own way, by the recipe of one.

#include "batch/alike_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "batch/batch.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "support/recorder_page.h"
#include "support/temporary_folder.h"
#include "support/true_data.h"

namespace graphize {
namespace {

using Words = std::vector<std::string>;

class AlikePagesTest : public ::testing::Test {
 protected:
  static constexpr int kPages = 24;

  AlikePagesTest() {
    SavePicture(folder / "page0.tif", kTifFormat, 0, test::RecorderPage(0));
    for (int page = 1; page <= kPages; ++page)
      SavePicture(At(page), kTifFormat, 0, test::RecorderPage(page, test::SlipOf(page)));
  }

  std::string At(int page) const {
    return (folder / ("page" + std::to_string(page) + ".tif")).string();
  }
  int Run(const Words& words) {
    out.str("");
    err.str("");
    return RunBatch(words, {out, err});
  }
  /// A recipe of the calibrated page with these options behind its axes.
  std::string Recipe(const Words& options) {
    const std::string recipe = (folder / "recipe.graphize").string();
    Words words = {
        "digitize", At(0), "--origin=90,420:0,-1", "--x-axis=570,420:12", "--y-axis=90,60:1", "-o",
        recipe,     "-f"};
    words.insert(words.end(), options.begin(), options.end());
    EXPECT_EQ(Run(words), 0) << err.str();
    return recipe;
  }
  Words OnAllPages(const std::string& recipe, const Words& options) {
    Words words = {"replay", recipe, "--format", "csv", "-o", (folder / "out/").string(), "-f"};
    for (int page = 1; page <= kPages; ++page) words.push_back(At(page));
    words.insert(words.end(), options.begin(), options.end());
    return words;
  }
  /// How far, in pixels, the points of a page lie off its curve: in the middle and at 95 %.
  std::pair<double, double> PointsOff(int page) {
    std::vector<double> off;
    const auto file = folder / "out" / ("page" + std::to_string(page) + ".csv");
    for (const test::TruePoint& point : test::ReadPoints(file, ',', 1))
      off.push_back(std::fabs(point.Y - test::RecordedCurve(page, point.X)) * 180);
    std::sort(off.begin(), off.end());
    EXPECT_GT(off.size(), 300u) << page;
    if (off.empty()) return {1e9, 1e9};
    return {off[off.size() / 2], off[off.size() * 95 / 100]};
  }

  test::TemporaryFolder folder;
  std::ostringstream out, err;
};

TEST_F(AlikePagesTest, EachPageGivesItsOwnCurveHoweverItLies) {
  struct Case {
    const char* What;
    Words Options;
    double Middle, Most;  // pixels
  };
  const Case cases[] = {
      {"traced", {"--black-white", "--grid=both", "--erase=100,100:2", "--trace=96,226"}, 0.8, 3},
      {"read", {"--read=96,226"}, 0.2, 0.8},
  };
  for (const Case& c : cases) {
    const std::string report = (folder / "report.json").string();
    ASSERT_EQ(Run(OnAllPages(Recipe(c.Options), {"--align", "--report", report})), 0)
        << c.What << "\n"
        << err.str();
    const nlohmann::json pages = nlohmann::json::parse(test::BytesOf(report));
    ASSERT_EQ(pages.size(), static_cast<std::size_t>(kPages));
    for (int page = 1; page <= kPages; ++page) {
      const auto [middle, most] = PointsOff(page);
      EXPECT_LT(middle, c.Middle) << c.What << " page " << page;
      EXPECT_LT(most, c.Most) << c.What << " page " << page;
      const test::Lie lie = test::SlipOf(page);
      const nlohmann::json& told = pages[static_cast<std::size_t>(page - 1)];
      EXPECT_EQ(told["picture"], At(page));
      EXPECT_NEAR(told["turn"], -lie.Degrees, 0.01) << page;
      EXPECT_NEAR(told["scale"], lie.Scale, 2e-4) << page;
      EXPECT_LE(told["worst_residual"], 1) << page;
    }
  }
}

TEST_F(AlikePagesTest, WhatDoesNotFitIsToldAndTheOthersAreWritten) {
  const std::string recipe = Recipe({"--read=96,226"});
  SavePicture(folder / "page3.tif", kTifFormat, 0, test::RecorderPage(3, test::SlipOf(3), 100));
  SavePicture(folder / "page5.tif", kTifFormat, 0, Raster::Filled(720, 520, kWhitePixel));
  // The last digits are the same.
  SavePicture(folder / "page7.tif", kTifFormat, 0, test::RecorderPage(7, test::SlipOf(7), 0, "1"));
  const std::string report = (folder / "report.csv").string();
  EXPECT_EQ(Run(OnAllPages(recipe, {"--align", "--report", report})), 1);
  EXPECT_NE(err.str().find("labels of the X axis, "), std::string::npos) << err.str();
  EXPECT_NE(err.str().find("3 of 24 pictures could not be done"), std::string::npos) << err.str();
  for (int page = 1; page <= kPages; ++page)
    EXPECT_EQ(std::filesystem::exists(folder / "out" / ("page" + std::to_string(page) + ".csv")),
              page != 3 && page != 5 && page != 7)
        << page;
  const std::string told = test::BytesOf(report);
  EXPECT_EQ(told.substr(0, told.find('\r')),
            "picture,state,points,worst_residual,shift_x,shift_y,turn,scale,reason");
  EXPECT_EQ(std::ranges::count(told, '\n'), kPages + 1);
  EXPECT_NE(told.find("page3.tif,refused,0,"), std::string::npos) << told;
  EXPECT_NE(told.find("page5.tif,refused,0,"), std::string::npos) << told;
  EXPECT_NE(told.find("page7.tif,refused,0,"), std::string::npos) << told;
}

TEST_F(AlikePagesTest, TracesBeginInTheColumnsThatAreAskedFor) {
  // The recipe traces nothing itself.
  const std::string recipe = Recipe({"--black-white", "--grid=both", "--point=300,300"});
  const std::string file = (folder / "out.csv").string();
  const auto replay = [&](const Words& options) {
    Words words = {"replay", recipe, At(1), "-f", "-o", file};
    words.insert(words.end(), options.begin(), options.end());
    return Run(words);
  };
  EXPECT_EQ(replay({"--align", "--trace-column=96"}), 0) << err.str();
  EXPECT_GT(test::ReadPoints(file, ',', 1).size(), 300u);
  // Between rows where it is not.
  EXPECT_EQ(replay({"--align", "--trace-column=96,62,70"}), 1);
  EXPECT_NE(err.str().find("there is no curve in column 96"), std::string::npos) << err.str();
  EXPECT_EQ(replay({"--align", "--trace-column=96,70,62"}), 2);
  EXPECT_EQ(replay({"--align", "--report=pages.txt"}), 2);
  EXPECT_EQ(Run({"replay", recipe, "--align", "-o", file, "-f"}), 2);
}

}  // namespace
}  // namespace graphize
