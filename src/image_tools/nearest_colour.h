#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/raster.h"

namespace graphize {

/// Finds the nearest of a few colours by the sum of squares of the component differences; the first
/// of two that are as near.
class NearestColour {
 public:
  /// At least one colour 0xffRRGGBB, best in ascending order: then the darker one of two wins. They
  /// must outlive this.
  explicit NearestColour(const std::vector<std::uint32_t>& colours) : colours_(colours) {}

  std::uint32_t Of(std::uint32_t pixel);
  void Replace(std::uint32_t* pixels, int count);

 private:
  struct Found {
    std::uint32_t Pixel = 0, Nearest = 0;  // 0: none, as no pixel is
  };
  const std::vector<std::uint32_t>& colours_;
  std::array<Found, 4096> found_{};
};

}  // namespace graphize
