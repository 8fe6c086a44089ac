#pragma once

#include <cstdint>
#include <unordered_map>

namespace graphize {

/// A set of pixels, of which a large page has few.
class PixelSet {
 public:
  explicit PixelSet(int width) : wordsPerRow_((width >> 6) + 1) {}
  /// False when it was in already.
  bool Add(int x, int y) {
    std::uint64_t& word = words_[static_cast<std::int64_t>(y) * wordsPerRow_ + (x >> 6)];
    const std::uint64_t bit = std::uint64_t{1} << (x & 63);
    if ((word & bit) != 0) return false;
    word |= bit;
    return true;
  }

 private:
  int wordsPerRow_;
  std::unordered_map<std::int64_t, std::uint64_t> words_;
};

}  // namespace graphize
