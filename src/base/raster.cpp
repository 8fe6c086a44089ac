#include "base/raster.h"

#include <algorithm>
#include <utility>

namespace graphize {

Raster::Raster(int width, int height)
    : width_(width),
      height_(height),
      pixels_(std::make_unique_for_overwrite<std::uint32_t[]>(static_cast<std::size_t>(width) *
                                                              static_cast<std::size_t>(height))
                  .release()) {}

Raster::Raster(int width, int height, std::uint32_t* pixels,
               void (*release)(std::uint32_t* pixels, std::size_t count))
    : width_(width), height_(height), pixels_(pixels, ReleasePixels{release, PixelCount()}) {}

Raster Raster::Filled(int width, int height, std::uint32_t pixel) {
  Raster raster(width, height);
  std::fill_n(raster.Pixels(), raster.PixelCount(), pixel);
  return raster;
}

Raster Raster::Clone() const {
  Raster copy(width_, height_);
  std::copy_n(Pixels(), PixelCount(), copy.Pixels());
  copy.Faint = Faint;
  return copy;
}

}  // namespace graphize
