#include "tracing/blockers.h"

#include <gtest/gtest.h>

#include "support/ascii_picture.h"

namespace graphize {
namespace {

using Rows = std::vector<std::string>;

struct Painting {
  PlotImage Image = test::MakePlotImage(Rows(5, "########"));
  BlockerList List;
  CommandStates Commands;
  Settings Options;

  void Paint(int x, int row, int size) {
    PaintBlocker(List, Image, Commands, Options, static_cast<std::int16_t>(x),
                 static_cast<std::int16_t>(row), size);
  }
};

TEST(Blockers, StayAtTheirPlacesAndSizesThroughARefreshAndANewPicture) {
  Painting p;
  p.Paint(1, 1, 3);
  p.Paint(6, 3, 1);
  const Rows painted = {"???#####", "???#####", "???#####", "######?#", "########"};
  EXPECT_EQ(test::Show(p.Image), painted);
  EXPECT_EQ(GetPixel(p.Image, 1, 1), MakeColour(128, 0, 0));
  EXPECT_TRUE(p.Commands.Blockers);
  ClearMarks(p.Image);
  EXPECT_EQ(test::Show(p.Image), Rows(5, "########"));
  RedrawBlockers(p.List, p.Image, p.Options);
  EXPECT_EQ(test::Show(p.Image), painted);

  SetPicture(p.Image, test::Draw({"###", "###"}));  // smaller: blockers may lie outside
  RedrawBlockers(p.List, p.Image, p.Options);
  EXPECT_EQ(test::Show(p.Image), (Rows{"???", "???"}));
}

TEST(Blockers, AreTakenBackOneByOneOrAllAtOnce) {
  Painting p;
  p.Paint(1, 1, 1);
  p.Paint(2, 1, 1);
  p.Paint(3, 1, 1);
  SetPixel(p.Image, 7, 4, kWhite);  // any other mark goes with the refresh
  ClearLastBlocker(p.List, p.Image, p.Commands, p.Options);
  EXPECT_EQ(p.List.Count, 2);
  EXPECT_TRUE(p.Commands.Blockers);
  EXPECT_EQ(test::Show(p.Image),
            (Rows{"########", "#??#####", "########", "########", "########"}));
  ClearBlockers(p.List, p.Image, p.Commands);
  EXPECT_FALSE(p.Commands.Blockers);
  EXPECT_EQ(test::Show(p.Image), Rows(5, "########"));

  p.Paint(4, 4, 1);
  EXPECT_TRUE(p.Commands.Blockers);
  for (int i = 0; i < 3; ++i) {
    ClearLastBlocker(p.List, p.Image, p.Commands, p.Options);
    EXPECT_EQ(p.List.Count, 0);
    EXPECT_FALSE(p.Commands.Blockers);
    EXPECT_EQ(test::Show(p.Image), Rows(5, "########"));
  }
}

TEST(Blockers, TheHundredAndFirstIsRefused) {
  Painting p;
  SetPicture(p.Image, Raster::Filled(120, 1, kBlackPixel));
  for (int x = 0; x < 101; ++x) p.Paint(x, 0, 1);
  EXPECT_EQ(p.List.Count, 100);
  EXPECT_EQ(test::Show(p.Image)[0], std::string(100, '?') + std::string(20, '#'));
}

TEST(Blockers, AreNeverBlackAndMayLieAtTheBorder) {
  for (const int colour : {0, 1, 15, 16, -3}) {
    Painting p;
    p.Options.BlockColor = colour;
    for (const auto& [x, row] : {std::pair{0, 0}, {7, 4}, {-2, 2}, {8, 5}, {32767, -32768}})
      p.Paint(x, row, 5);
    EXPECT_FALSE(IsBlack(p.Image, 0, 0)) << colour;
    EXPECT_FALSE(IsBlack(p.Image, 7, 4)) << colour;
    EXPECT_FALSE(IsBlack(p.Image, 0, 2)) << colour;
    EXPECT_TRUE(IsBlack(p.Image, 4, 1)) << colour;
    ClearBlockers(p.List, p.Image, p.Commands);
    EXPECT_EQ(test::Show(p.Image), Rows(5, "########")) << colour;
  }
}

}  // namespace
}  // namespace graphize
