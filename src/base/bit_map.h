#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace graphize {

/// A binary picture: one bit per pixel in rows of 64-bit words (column 0 is the
/// lowest bit of a row's first word). Bits beyond the width are always 0.
class BitMap {
 public:
  BitMap() = default;
  /// All bits 0. Sizes from 0.
  BitMap(int width, int height);

  bool IsEmpty() const { return words_.empty(); }
  int Width() const { return width_; }
  int Height() const { return height_; }
  int WordsPerRow() const { return wordsPerRow_; }
  std::uint64_t* Row(int y) { return words_.data() + static_cast<std::size_t>(y) * wordsPerRow_; }
  const std::uint64_t* Row(int y) const {
    return words_.data() + static_cast<std::size_t>(y) * wordsPerRow_;
  }

  /// False outside.
  bool Get(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(width_) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(height_) &&
           ((Row(y)[x >> 6] >> (x & 63)) & 1u) != 0;
  }
  /// The bit at (x, y) becomes 0 or 1; only inside.
  void Clear(int x, int y) { Row(y)[x >> 6] &= ~(std::uint64_t{1} << (x & 63)); }
  void Set(int x, int y) { Row(y)[x >> 6] |= std::uint64_t{1} << (x & 63); }

 private:
  int width_ = 0;
  int height_ = 0;
  int wordsPerRow_ = 0;
  std::vector<std::uint64_t> words_;
};

/// Bit i of word j becomes bit j of word i.
void Transpose64(std::uint64_t (&words)[64]);

/// Rows become columns.
BitMap Transposed(const BitMap& map);

/// The bits of `other`, a map of the same size, are set in `map`, too.
void Unite(BitMap& map, const BitMap& other);

/// The bits of `map` that lie in vertical runs of at most `thickness` (at least 1) pixels: what a
/// morphological opening by a vertical line of `thickness` + 1 pixels takes away (top-hat).
BitMap ThinRuns(const BitMap& map, int thickness);

}  // namespace graphize
