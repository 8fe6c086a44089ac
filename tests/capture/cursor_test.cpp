#include "capture/cursor.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <vector>

#include "base/run_time_error.h"
#include "capture/snap.h"
#include "support/ascii_picture.h"
#include "support/calibrated.h"
#include "support/scripted_desktop.h"

namespace graphize {
namespace {

TEST(Cursor, ReadsPixelsUpwardAndValuesOnceCalibrated) {
  test::ScriptedDesktop desktop;
  ReadOut readOut;
  AxisPanel panel;
  PointStore store;
  ReadCursor(readOut, panel, store, AxisCalibration{}, desktop, 480, 12.5f, 79.5f);
  EXPECT_EQ(panel.LiveXPixel, "12");
  EXPECT_EQ(panel.LiveYPixel, "400");
  EXPECT_EQ(readOut.XValue, "");
  EXPECT_EQ(readOut.YPos, "400");

  const AxisCalibration c =
      test::Calibrate({{{100, 100, "0", "0"}, {500, 100, "10", "0"}, {100, 500, "0", "100"}}});
  ReadCursor(readOut, panel, store, c, desktop, 480, 300, 180);
  EXPECT_EQ(readOut.XValue, "5.00000E+0");
  EXPECT_EQ(store.CurrentY, 50);
  readOut.ShowError = true;
  ReadCursor(readOut, panel, store, c, desktop, 480, 300, 180);
  EXPECT_EQ(readOut.XPOS, "2.50000E-2");
  readOut.Percent = true;
  ReadCursor(readOut, panel, store, c, desktop, 480, 300, 180);
  EXPECT_EQ(readOut.XPOS, ".5%");
  ReadCursor(readOut, panel, store, c, desktop, 480, 100, 179.5f);
  EXPECT_EQ(store.CurrentPlace.Column, 100);
  EXPECT_EQ(store.CurrentPlace.Row, 179.5f);
  EXPECT_EQ(readOut.XPOS, ".5%") << "at X = 0 the last relative error stays";
}

TEST(Cursor, GoesAlongPointsAsFarAsTheyHavePixelsAndValues) {
  const test::ScriptedDesktop desktop;
  AxisCalibration c =
      test::Calibrate({{{100, 100, "0", "0"}, {500, 100, "10", "0"}, {100, 500, "0", "100"}}});
  struct Case {
    std::vector<Place> Places;
    std::size_t Reached;
  };
  const Case cases[] = {{{}, 0},
                        {{{300, 180}, {100, 180.5f}, {7.3f, 12.7f}}, 3},
                        {{{32767.4f, 0}, {32767.5f, 0}, {1, 1}}, 1},
                        {{{1, 1}, {-32768.5f, 33000}, {2, 33248.5f}, {2, 33249}}, 3},
                        {{{0, std::numeric_limits<float>::quiet_NaN()}}, 0}};
  for (const bool percent : {false, true}) {
    for (const auto& [places, reached] : cases) {
      ReadOut together, each;
      together.Percent = each.Percent = percent;
      PointStore store, eachStore;
      FoundPoints points{places, {}, {}};
      ASSERT_EQ(MoveCursor(together, store, c, 480, points), reached);
      for (std::size_t i = 0; i < reached; ++i) {
        MoveCursor(each, eachStore, c, desktop, 480, places[i].Column, places[i].Row);
        EXPECT_EQ(points.X[i], eachStore.CurrentX);
        EXPECT_EQ(points.Y[i], eachStore.CurrentY);
      }
      EXPECT_EQ(store.CurrentY, eachStore.CurrentY);
      EXPECT_EQ(store.CurrentPlace, eachStore.CurrentPlace);
      EXPECT_EQ(store.CurrentPixelY, eachStore.CurrentPixelY);
      EXPECT_EQ(together.ErrorX, each.ErrorX);
      EXPECT_EQ(together.PlotY, each.PlotY);
      if (reached < places.size()) {
        EXPECT_THROW(MoveCursor(each, eachStore, c, desktop, 480, places[reached].Column,
                                places[reached].Row),
                     RunTimeError);
      }
    }
  }
  FoundPoints points{{{1, 1}, {2, 2}}, {}, {}};
  ReadOut readOut;
  PointStore store;
  EXPECT_EQ(MoveCursor(readOut, store, AxisCalibration{}, 480, points), 2u) << "without values";
  c.XLog = true;  // from 0
  EXPECT_EQ(MoveCursor(readOut, store, c, 480, points), 0u);
  EXPECT_EQ(store.CurrentPixelX, 2);
}

TEST(Snap, GoesToTheCentreOfTheInk) {
  // Rows 2 to 4 are a horizontal line three pixels thick; a dot stands at (1, 7).
  const PlotImage image = test::MakePlotImage(
      {"......", "......", "######", "######", "######", "......", "......", ".#....", "......"});
  using Place = std::optional<std::pair<float, float>>;
  // Name, position, mode, distance, where it snaps to.
  const std::tuple<const char*, float, float, int, int, Place> cases[] = {
      {"no snap", 3, 3, 0, 5, std::nullopt},
      {"a mode there is not", 3, 3, 4, 5, std::nullopt},
      {"to Y over a thick line", 3, 0, 2, 5, std::pair{3.0f, 3.0f}},
      {"to X off the ink", 3, 0, 1, 5, std::nullopt},
      {"to X onto the dot", 4, 7, 1, 3, std::pair{1.0f, 7.0f}},
      {"to X, the dot out of reach", 5, 7, 1, 3, std::nullopt},
      {"distance 0 on ink", 1, 7, 1, 0, std::pair{1.0f, 7.0f}},
      {"centre without ink", 5, 8, 3, 1, std::pair{5.0f, 8.0f}},
      {"centre of line and dot", 1, 7, 3, 1, std::pair{1.0f, 7.0f}},
      {"at the border", 0, 8, 3, 2, std::pair{1.0f, 7.0f}},
      {"between rows 3 and 4: the upper one", 5, 4, 2, 1, std::pair{5.0f, 3.0f}},
      {"between columns 1 and 2: the even one", 1.5f, 7, 2, 1, std::nullopt},
      {"between columns 0 and 1: the even one", 0.5f, 7, 2, 1, std::nullopt},
      {"a reach beyond any picture", 5, 8, 2, 32767, std::pair{5.0f, 3.0f}},
  };
  for (const auto& [name, x, y, mode, distance, expected] : cases) {
    const auto at =
        SnapToXY(image, x, y, static_cast<std::int16_t>(mode), static_cast<std::int16_t>(distance));
    EXPECT_EQ(at ? Place({at->X, at->Y}) : std::nullopt, expected) << name;
  }
}

}  // namespace
}  // namespace graphize
