#include "raster/orientation.h"

#include <gtest/gtest.h>

#include <numeric>

#include "raster/transparency.h"
#include "support/picture_bytes.h"

namespace graphize::test {
namespace {

TEST(RasterOrientation, EachOfTheEightIsTurnedUpright) {
  using Pixels = std::vector<std::uint32_t>;
  const std::tuple<int, int, Pixels> cases[] = {
      // orientation, width, pixels
      {0, 3, Pixels{1, 2, 3, 4, 5, 6}}, {1, 3, Pixels{1, 2, 3, 4, 5, 6}},
      {2, 3, Pixels{3, 2, 1, 6, 5, 4}}, {3, 3, Pixels{6, 5, 4, 3, 2, 1}},
      {4, 3, Pixels{4, 5, 6, 1, 2, 3}}, {5, 2, Pixels{1, 4, 2, 5, 3, 6}},
      {6, 2, Pixels{4, 1, 5, 2, 6, 3}}, {7, 2, Pixels{6, 3, 5, 2, 4, 1}},
      {8, 2, Pixels{3, 6, 2, 5, 1, 4}}, {9, 3, Pixels{1, 2, 3, 4, 5, 6}},
  };
  for (const auto& [orientation, width, pixels] : cases) {
    const Raster upright = ApplyOrientation(MakeRaster(3, 2, {1, 2, 3, 4, 5, 6}), orientation);
    EXPECT_EQ(upright.Width(), width) << orientation;
    EXPECT_EQ(PixelsOf(upright), pixels) << orientation;
  }
}

TEST(RasterOrientation, LargePicturesTurnBackToThemselves) {
  std::vector<std::uint32_t> pixels(97 * 70);
  std::iota(pixels.begin(), pixels.end(), 0u);
  for (const auto& [there, back] : {std::pair{2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 8}, {7, 7}}) {
    const Raster twice =
        ApplyOrientation(ApplyOrientation(MakeRaster(97, 70, pixels), there), back);
    EXPECT_EQ(twice.Width(), 97);
    EXPECT_EQ(PixelsOf(twice), pixels) << there;
  }
  EXPECT_TRUE(ApplyOrientation(Raster(), 6).IsEmpty());
}

TEST(Transparency, ClearPixelsShowWhitePaper) {
  Raster picture =
      MakeRaster(5, 1, {0x00000000u, 0x80ff0000u, 0xff010203u, 0x01000000u, 0xfe000000u});
  Flatten(picture);
  EXPECT_EQ(PixelsOf(picture),
            (std::vector{0xffffffffu, 0xffff7f7fu, 0xff010203u, 0xfffefefeu, 0xff010101u}));
  Raster clear = MakeRaster(2, 1, {0x00000000u, 0x00123456u});
  Flatten(clear);
  EXPECT_EQ(PixelsOf(clear), (std::vector{0xff000000u, 0xff123456u}));
}

}  // namespace
}  // namespace graphize::test
