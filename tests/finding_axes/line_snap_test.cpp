#include "finding_axes/line_snap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "raster/orientation.h"

namespace graphize {
namespace {

/// A picture of grey paper on which strokes lie at parts of pixels.
struct Drawn {
  Raster Picture = Raster::Filled(120, 100, 0xffe8e4d8u);
  std::uint32_t Ink = 0xff203050u;

  /// From `left` to `right` and `top` to `bottom`, edges of the ink; centres of pixels are whole.
  void Fill(double left, double top, double right, double bottom) {
    const auto part = [](int at, double from, double to) {
      return std::clamp(std::min(at + 0.5, to) - std::max(at - 0.5, from), 0.0, 1.0);
    };
    for (int y = 0; y < Picture.Height(); ++y)
      for (int x = 0; x < Picture.Width(); ++x) {
        const double share = part(x, left, right) * part(y, top, bottom);
        if (share <= 0) continue;
        std::uint32_t mixed = 0xff000000u;
        for (int shift = 0; shift < 24; shift += 8) {
          const double paper = Picture.Row(y)[x] >> shift & 0xffu, ink = Ink >> shift & 0xffu;
          mixed |= static_cast<std::uint32_t>(std::lround(paper + share * (ink - paper))) << shift;
        }
        Picture.Row(y)[x] = mixed;
      }
  }
};

/// An axis at row 70.3 with a tick at column 60.4 below it, and a frame's side at column 20.25.
Drawn Plot() {
  Drawn drawn;
  drawn.Fill(19.5, 10, 21, 71);
  drawn.Fill(19.5, 69.6, 110, 71);
  drawn.Fill(59.9, 70, 60.9, 76.5);
  return drawn;
}

TEST(LineSnap, ClicksNearTicksCornersAndLinesGoThere) {
  Drawn light = Plot();
  Drawn dark = Plot();
  for (std::size_t i = 0; i < dark.Picture.PixelCount(); ++i) dark.Picture.Pixels()[i] ^= 0xffffffu;
  for (Drawn* drawn : {&light, &dark})
    for (int dy = -4; dy <= 4; dy += 2)
      for (int dx = -4; dx <= 4; dx += 2) {
        SCOPED_TRACE(std::to_string(dx) + "," + std::to_string(dy));
        const LineSnap tick = SnapToLines(drawn->Picture, 60 + dx, 70 + dy);
        EXPECT_TRUE(tick.OnUpright && tick.OnLevel);
        EXPECT_NEAR(tick.Column, 60.4, 0.12);
        EXPECT_NEAR(tick.Row, 70.3, 0.12);
        const LineSnap corner = SnapToLines(drawn->Picture, 20 + dx, 70 + dy);
        EXPECT_NEAR(corner.Column, 20.25, 0.12);
        EXPECT_NEAR(corner.Row, 70.3, 0.12);
        const LineSnap along = SnapToLines(drawn->Picture, 90 + dx, 70 + dy);
        EXPECT_FALSE(along.OnUpright);
        EXPECT_EQ(along.Column, 90 + dx) << "the click's own";
        EXPECT_NEAR(along.Row, 70.3, 0.12);
      }
}

TEST(LineSnap, WithoutALineTheClickIsItsOwn) {
  Drawn drawn = Plot();
  drawn.Fill(80, 20, 100, 40);                                                  // an area
  for (int i = 0; i < 25; ++i) drawn.Fill(30 + i, 20 + i, 31.5 + i, 21.5 + i);  // a slope
  for (const auto& [x, y] :
       {std::pair(60, 50), {90, 30}, {42, 32}, {119, 99}, {-3, 50}, {60, 200}}) {
    const LineSnap snap = SnapToLines(drawn.Picture, x, y);
    EXPECT_FALSE(snap.OnUpright || snap.OnLevel) << x << "," << y;
    EXPECT_EQ(snap.Column, x);
    EXPECT_EQ(snap.Row, y);
  }
}

}  // namespace
}  // namespace graphize
