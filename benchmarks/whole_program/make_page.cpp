// make_page FILE.tif WIDTH HEIGHT: a black-and-white page with a grid and a curve.

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "codecs/picbuf.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: make_page FILE.tif WIDTH HEIGHT\n", stderr);
    return 2;
  }
  const int width = std::atoi(argv[2]), height = std::atoi(argv[3]);
  graphize::Raster page = graphize::Raster::Filled(width, height, graphize::kWhitePixel);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (x % 500 < 2 || y % 500 < 2) page.Row(y)[x] = graphize::kBlackPixel;
  for (int x = 0; x < width; ++x) {
    const int y = static_cast<int>(height * (0.5 + 0.4 * std::sin(12.0 * x / width)));
    for (int j = 0; j < 6 && y + j < height; ++j) page.Row(y + j)[x] = graphize::kBlackPixel;
  }
  graphize::SavePicture(argv[1], 1, 0, page);
}
