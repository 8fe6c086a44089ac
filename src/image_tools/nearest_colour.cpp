#include "image_tools/nearest_colour.h"

#include <climits>

namespace graphize {

namespace {

int SquareDistance(std::uint32_t a, std::uint32_t b) {
  int sum = 0;
  for (int shift : {0, 8, 16}) {
    const int difference =
        static_cast<int>((a >> shift) & 0xffu) - static_cast<int>((b >> shift) & 0xffu);
    sum += difference * difference;
  }
  return sum;
}

}  // namespace

std::uint32_t NearestColour::Of(std::uint32_t pixel) {
  Found& found = found_[(pixel * 2654435761u) >> 20];  // Knuth's multiplicative hash
  if (found.Pixel == pixel) return found.Nearest;
  found = {pixel, 0};
  int least = INT_MAX;
  for (const std::uint32_t colour : colours_)
    if (const int distance = SquareDistance(pixel, colour); distance < least) {
      least = distance;
      found.Nearest = colour;
    }
  return found.Nearest;
}

void NearestColour::Replace(std::uint32_t* pixels, int count) {
  std::uint32_t last = 0, nearest = 0;
  for (int i = 0; i < count; ++i) {
    if (pixels[i] != last) {
      last = pixels[i];
      nearest = Of(last);
    }
    pixels[i] = nearest;
  }
}

}  // namespace graphize
