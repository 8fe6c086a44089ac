#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/bit_map.h"

namespace graphize {

/// Gives back a raster's pixels to where they lie.
struct ReleasePixels {
  void (*Release)(std::uint32_t* pixels, std::size_t count) = nullptr;  // null: on the heap
  std::size_t Count = 0;

  void operator()(std::uint32_t* pixels) const {
    Release != nullptr ? Release(pixels, Count) : delete[] pixels;
  }
};

/// Rows of 32-bit pixels 0xffRRGGBB in one block, top row first, no padding: the layout that the
/// window paints without copying. A page may be half a gigabyte, so copies are asked for by name.
class Raster {
 public:
  Raster() = default;
  /// Pixels start undefined: whoever makes a raster fills it. Sizes from 0.
  Raster(int width, int height);
  static Raster Filled(int width, int height, std::uint32_t pixel);
  /// Takes over pixels that lie elsewhere; `release` gives them back.
  Raster(int width, int height, std::uint32_t* pixels,
         void (*release)(std::uint32_t* pixels, std::size_t count));
  Raster Clone() const;

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool IsEmpty() const { return width_ == 0 || height_ == 0; }
  std::size_t PixelCount() const { return static_cast<std::size_t>(width_) * height_; }

  std::uint32_t* Pixels() { return pixels_.get(); }
  const std::uint32_t* Pixels() const { return pixels_.get(); }
  std::uint32_t* Row(int y) { return pixels_.get() + static_cast<std::size_t>(y) * width_; }
  const std::uint32_t* Row(int y) const {
    return pixels_.get() + static_cast<std::size_t>(y) * width_;
  }

  /// Which of the white pixels of a picture that was reduced to black and white were clearly darker
  /// than the paper; empty in any other. It belongs to the picture that was read: edits leave it.
  BitMap Faint;

 private:
  using Pointer = std::unique_ptr<std::uint32_t[], ReleasePixels>;

  int width_ = 0;
  int height_ = 0;
  Pointer pixels_;
};

inline constexpr std::uint32_t kBlackPixel = 0xff000000u;
inline constexpr std::uint32_t kWhitePixel = 0xffffffffu;

/// Black is exactly 0 in the 24 colour bits; anything else, however dark, is background.
inline bool IsBlackPixel(std::uint32_t pixel) {
  return (pixel & 0xffffffu) == 0;
}

}  // namespace graphize
