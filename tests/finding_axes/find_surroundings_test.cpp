#include "finding_axes/find_surroundings.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "support/plot_drawing.h"

namespace graphize {
namespace {

TEST(FindSurroundings, FindsTheDrawnFrameAndItsWordsWithoutAxes) {
  struct Case {
    const char* Name;
    double Degrees;
    bool IsFrame, AreApart;  // else two axes
  };
  for (const Case& test : {Case{"frame with grid and ticks", 0, true, false},
                           {"turned", 3, true, false},
                           {"two axes", 0, false, false},
                           {"two axes that do not touch", 0, false, true}}) {
    SCOPED_TRACE(test.Name);
    test::PlotDrawing drawing(640, 480, 80, 40, 600, 420, test.Degrees);
    const double apart = test.AreApart ? 0.02 : 0;
    if (test.IsFrame) {
      drawing.Frame({.Thickness = 2}, 5, 6);
      drawing.LinesAtU(test::Linear(5), {});
    } else {
      drawing.Polyline({drawing.Place(0, apart), drawing.Place(0, 1)}, {.Thickness = 2});
      drawing.Polyline({drawing.Place(apart, 0), drawing.Place(1, 0)}, {.Thickness = 2});
    }
    drawing.Curve([](double u) { return 0.2 + 0.5 * u * u; }, {.Thickness = 2});
    const test::PixelPosition word = drawing.Place(0.3, 0.9);
    drawing.Digits(word, "142", 2);
    for (int i = 0; i < 9; ++i) {
      drawing.Disc(drawing.Place(0.5 + 0.02 * i, 0.85), 6);
      // Dashes that turn with their curve.
      const test::PixelPosition at = drawing.Place(0.5 + 0.025 * i, 0.75);
      const double across = i % 2 == 0 ? 3.5 : 0;
      drawing.Polyline({at, {at.X + across, at.Y + 3.5 - across}}, {.Thickness = 5});
    }
    PictureOperation operation;
    const PlotSurroundings found = FindSurroundings(drawing.GreyPicture(), operation);
    ASSERT_EQ(found.Frames.size(), 1u);
    const DrawnFrame& frame = found.Frames.front();
    EXPECT_EQ(std::tuple(frame.HasLeft, frame.HasBottom), std::tuple(true, true));
    EXPECT_EQ(std::tuple(frame.HasRight, frame.HasTop), std::tuple(test.IsFrame, test.IsFrame));
    const double aside = test.AreApart ? 12 : 3;
    for (const auto& [u, v] : {std::pair(0, 0), {1, 1}}) {
      const test::PixelPosition corner = drawing.Place(u, v);
      EXPECT_NEAR(frame.Box.U(corner.X, corner.Y), u == 0 ? frame.Box.Left : frame.Box.Right,
                  aside);
      EXPECT_NEAR(frame.Box.V(corner.X, corner.Y), v == 0 ? frame.Box.Bottom : frame.Box.Top,
                  aside);
    }
    ASSERT_EQ(found.Texts.size(), 1u) << "and no row of dots or dashes is one";
    EXPECT_LE(found.Texts.front().Distance(found.Turn.U(word.X + 10, word.Y + 7),
                                           found.Turn.V(word.X + 10, word.Y + 7)),
              0);
  }
}

}  // namespace
}  // namespace graphize
