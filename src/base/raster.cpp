#include "base/raster.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/memory_file.h"

namespace graphize {

namespace {

constexpr std::align_val_t kLargePage{2 << 20};

/// A page's pixels in large pages of memory: they are given out and read faster.
std::uint32_t* NewPixels(std::size_t count) {
  auto* pixels =
      static_cast<std::uint32_t*>(::operator new[](count * sizeof(std::uint32_t), kLargePage));
  PreferLargePages(pixels, count * sizeof(std::uint32_t));
  return pixels;
}

void DeletePixels(std::uint32_t* pixels, std::size_t) {
  ::operator delete[](pixels, kLargePage);
}

}  // namespace

Raster::Raster(int width, int height) : width_(width), height_(height) {
  constexpr std::size_t kLarge = 4'000'000;
  if (PixelCount() < kLarge)
    pixels_ = Pointer(new std::uint32_t[PixelCount()]);
  else
    pixels_ = Pointer(NewPixels(PixelCount()), {DeletePixels, PixelCount()});
}

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
