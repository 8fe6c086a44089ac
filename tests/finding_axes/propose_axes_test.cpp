#include "finding_axes/propose_axes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "base/run_time_error.h"
#include "codecs/picbuf.h"
#include "raster/orientation.h"
#include "support/plot_drawing.h"

namespace graphize {
namespace {

using testing::HasSubstr;

Raster Sample(const char* name) {
  return LoadPicture(std::filesystem::path(GRAPHIZE_SOURCE_DIR) / "tests" / "samples" / name)
      ->Picture.Clone();
}

AxesProposal Propose(const Raster& picture, const TextLineReader& second = ReadTextLine) {
  PictureOperation operation;
  return ProposeAxes(picture, operation, second);
}

void Fill(Raster& picture, int left, int top, int right, int bottom, std::uint32_t colour) {
  for (int y = top; y <= bottom; ++y)
    for (int x = left; x <= right; ++x) picture.Row(y)[x] = colour;
}

/// What is in a box goes `dx`, `dy` pixels on, and leaves paper behind.
void Move(Raster& picture, int left, int top, int right, int bottom, int dx, int dy) {
  const Raster from = picture.Clone();
  Fill(picture, left, top, right, bottom, kWhitePixel);
  for (int y = top; y <= bottom; ++y)
    for (int x = left; x <= right; ++x) picture.Row(y + dy)[x + dx] = from.Row(y)[x];
}

/// The pendulum's axes: 0 to 12 from column 70 to 610, -1 to 1 from row 430 to 40.
void ExpectPendulum(const AxesProposal& axes, const char* what) {
  EXPECT_EQ(axes.Verdict, AxesVerdict::Sure) << what << axes.X.Reason << axes.Y.Reason;
  ASSERT_EQ(axes.Rows.size(), 3u) << what;
  for (const ProposedRow& row : axes.Rows) {
    EXPECT_NEAR(row.Column, 70 + row.X * 45, 0.5) << what;
    EXPECT_NEAR(row.Row, 235 - row.Y * 195, 0.5) << what;
  }
  EXPECT_EQ(axes.Rows[0].Y, axes.Rows[1].Y) << what;
  EXPECT_EQ(axes.Rows[0].X, axes.Rows[2].X) << what;
}

TEST(ProposeAxes, AreSureAndRightHoweverTheInkIsColoured) {
  const Raster black = Sample("pendulum.bmp");
  ExpectPendulum(Propose(black), "as it is ");
  Raster light = black.Clone(), brown = black.Clone();
  for (std::size_t i = 0; i < black.PixelCount(); ++i) {
    const bool ink = (black.Pixels()[i] & 0xffu) < 128;
    light.Pixels()[i] = ink ? 0xffe8e8d0u : 0xff101830u;
    brown.Pixels()[i] = ink ? 0xff804020u : 0xfffff4e0u;
  }
  ExpectPendulum(Propose(light), "light on dark ");
  ExpectPendulum(Propose(brown), "brown on cream ");
  // Digits behind a point stand further off than others do, as in fonts of one width.
  Raster wide = black.Clone();
  for (const int top : {130, 325}) Move(wide, 52, top, 60, top + 12, 3, 0);
  ExpectPendulum(Propose(wide), "with wide points ");
}

TEST(ProposeAxes, LogarithmicAndTurnedAxesAreFound) {
  const AxesProposal log = Propose(Sample("filter_loglog.gif"));
  EXPECT_TRUE(log.X.Log && log.Y.Log);
  EXPECT_EQ(log.Verdict, AxesVerdict::Sure) << log.X.Reason << log.Y.Reason;
  // This one is turned: both rows along its X axis tell by how much.
  const AxesProposal turned = Propose(Sample("response_rotated.pcx"));
  ASSERT_EQ(turned.Rows.size(), 3u);
  EXPECT_GT(std::fabs(turned.Rows[1].Row - turned.Rows[0].Row), 3);
}

TEST(ProposeAxes, WithoutAnAgreeingSecondReaderNothingIsSure) {
  const Raster picture = Sample("pendulum.bmp");
  const AxesProposal none = Propose(
      picture, [](const TextLine&) -> std::string { throw RunTimeError("It is not there."); });
  EXPECT_EQ(none.Verdict, AxesVerdict::Proposal);
  EXPECT_THAT(none.X.Reason, HasSubstr("It is not there."));
  const AxesProposal other = Propose(picture, [](const TextLine&) { return std::string("7"); });
  EXPECT_EQ(other.X.Verdict, AxesVerdict::Proposal);
  EXPECT_EQ(other.Rows.size(), 3u);
}

/// Pictures whose labels do not say what the axis is: any answer but "sure".
TEST(ProposeAxes, SpoiledAxesAreNeverSure) {
  struct Case {
    const char* What;
    bool X;  // the axis that is spoiled; the other is Y
    std::function<void(Raster&)> Spoil;
  };
  const Case cases[] = {
      {"a label at another's place", true, [](Raster& p) { Move(p, 330, 440, 350, 458, 22, 0); }},
      {"half of the plot moved on", true,
       [](Raster& p) { Move(p, 390, 30, p.Width() - 30, p.Height() - 30, 17, 0); }},
      {"points of numbers lost", false,
       [](Raster& p) {
         // Low and small pieces of ink left of the axis are the points.
         for (const int middle : {40, 137, 235, 332, 430})
           Fill(p, 30, middle + 3, 62, middle + 8, kWhitePixel);
       }},
      {"a label in pieces", true, [](Raster& p) { Fill(p, 334, 442, 346, 444, kWhitePixel); }},
      {"labels cut at the edge", false,
       [](Raster& p) { Move(p, 46, 0, p.Width() - 1, p.Height() - 1, -46, 0); }},
      {"a mirrored picture", true,
       [](Raster& p) {
         for (int y = 0; y < p.Height(); ++y) std::reverse(p.Row(y), p.Row(y) + p.Width());
       }},
      {"no labels", true,
       [](Raster& p) { Fill(p, 0, 436, p.Width() - 1, p.Height() - 1, kWhitePixel); }},
  };
  for (const Case& c : cases) {
    Raster picture = Sample("pendulum.bmp");
    c.Spoil(picture);
    const AxesProposal axes = Propose(picture);
    const ProposedAxis& axis = c.X ? axes.X : axes.Y;
    EXPECT_NE(axis.Verdict, AxesVerdict::Sure) << c.What;
    EXPECT_NE(axis.Reason, "") << c.What;
  }
}

/// Several plots are chosen between; each then has the axes that it has alone.
TEST(ProposeAxes, OfPlotsSideBySideOneIsChosen) {
  const Raster one = Sample("pendulum.bmp");
  const int width = one.Width(), height = one.Height();
  Raster two = Raster::Filled(2 * width, height, kWhitePixel);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < 2 * width; ++x) two.Row(y)[x] = one.Row(y)[x % width];
  const auto propose = [&](const AxesChoice& choice) {
    PictureOperation operation;
    return ProposeAxes(two, operation, ReadTextLine, choice);
  };
  const AxesProposal none = propose({});
  EXPECT_EQ(none.Verdict, AxesVerdict::None);
  ASSERT_EQ(none.Plots.size(), 2u);
  EXPECT_LT(none.Plots[0].Right, none.Plots[1].Left);
  ExpectPendulum(propose({.Plot = 0}), "left");
  AxesProposal right = propose({.Plot = 1});
  for (ProposedRow& row : right.Rows) row.Column -= width;
  ExpectPendulum(right, "right");
  EXPECT_TRUE(Propose(one).Plots.empty());
}

/// The same column of labels once more at the right, two ticks lower, tells other values.
TEST(ProposeAxes, OfTwoScalesOneIsChosenAndNeverSure) {
  const Raster two = test::WithSecondScale(Sample("pendulum.bmp"));
  const auto propose = [&](std::optional<int> scale) {
    PictureOperation operation;
    return ProposeAxes(two, operation, ReadTextLine, {.Plot = {}, .XScale = {}, .YScale = scale});
  };
  const AxesProposal left = propose({});
  EXPECT_NE(left.Y.Verdict, AxesVerdict::Sure);
  ASSERT_EQ(left.Y.Scales.size(), 2u) << left.Y.Reason;
  EXPECT_EQ(left.Y.Scale, 0);
  EXPECT_FALSE(left.Y.IsChosen);
  const AxesProposal right = propose(1);
  EXPECT_EQ(right.Y.Verdict, AxesVerdict::Proposal) << right.Y.Reason;
  EXPECT_FALSE(right.Y.IsChosen) << "its labels stand at no ticks";
  const AxesProposal chosen = propose(0);
  EXPECT_EQ(chosen.Y.Verdict, AxesVerdict::Proposal);
  EXPECT_TRUE(chosen.Y.IsChosen) << chosen.Y.Reason;
  ASSERT_EQ(right.Rows.size(), 3u);
  for (const ProposedRow& row : right.Rows) EXPECT_NEAR(row.Row, 235 + 97 - row.Y * 195, 1);
}

TEST(ProposeAxes, EmptyPagesHaveNoneAndAStoppedSearchSaysSo) {
  for (const auto& [width, height] : {std::pair(1, 1), std::pair(3, 400), std::pair(300, 200)}) {
    const AxesProposal axes = Propose(Raster::Filled(width, height, kWhitePixel));
    EXPECT_EQ(axes.Verdict, AxesVerdict::None);
    EXPECT_TRUE(axes.Rows.empty());
    EXPECT_NE(axes.X.Reason, "");
  }
  PictureOperation operation;
  operation.Stopped = true;
  EXPECT_TRUE(ProposeAxes(Sample("pendulum.bmp"), operation).IsStopped);
}

}  // namespace
}  // namespace graphize
