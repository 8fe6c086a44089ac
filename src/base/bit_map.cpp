#include "base/bit_map.h"

#include <algorithm>

namespace graphize {

namespace {

/// Row y of the result is the AND of rows y .. y + length - 1 of `map` (rows beyond it are 0): the
/// upper ends of the vertical runs that are at least `length` long. In place, by doubling.
void KeepRunStarts(BitMap& map, int length) {
  for (int have = 1; have < length;) {
    const int step = std::min(have, length - have);
    for (int y = 0; y < map.Height(); ++y) {
      std::uint64_t* row = map.Row(y);
      if (y + step >= map.Height()) {
        std::fill_n(row, map.WordsPerRow(), std::uint64_t{0});
        continue;
      }
      const std::uint64_t* other = map.Row(y + step);
      for (int j = 0; j < map.WordsPerRow(); ++j) row[j] &= other[j];
    }
    have += step;
  }
}

/// The reverse: row y becomes the OR of rows y - length + 1 .. y.
void GrowRunsDown(BitMap& map, int length) {
  for (int have = 1; have < length;) {
    const int step = std::min(have, length - have);
    for (int y = map.Height() - 1; y >= step; --y) {
      std::uint64_t* row = map.Row(y);
      const std::uint64_t* other = map.Row(y - step);
      for (int j = 0; j < map.WordsPerRow(); ++j) row[j] |= other[j];
    }
    have += step;
  }
}

}  // namespace

BitMap::BitMap(int width, int height)
    : width_(width),
      height_(height),
      wordsPerRow_((width + 63) / 64),
      words_(static_cast<std::size_t>(wordsPerRow_) * static_cast<std::size_t>(height), 0) {}

void Transpose64(std::uint64_t (&words)[64]) {
  // Swaps ever smaller off-diagonal blocks (Warren, "Hacker's Delight", section 7-3).
  std::uint64_t mask = 0x00000000ffffffffu;
  for (int size = 32; size != 0; size >>= 1, mask ^= mask << size) {
    for (int i = 0; i < 64; i = (i + size + 1) & ~size) {
      const std::uint64_t swap = ((words[i] >> size) ^ words[i + size]) & mask;
      words[i] ^= swap << size;
      words[i + size] ^= swap;
    }
  }
}

BitMap Transposed(const BitMap& map) {
  BitMap transposed(map.Height(), map.Width());
  for (int y = 0; y < map.Height(); y += 64) {
    const int rows = std::min(64, map.Height() - y);
    for (int j = 0; j < map.WordsPerRow(); ++j) {
      std::uint64_t block[64] = {};
      for (int i = 0; i < rows; ++i) block[i] = map.Row(y + i)[j];
      Transpose64(block);
      const int columns = std::min(64, map.Width() - 64 * j);
      for (int i = 0; i < columns; ++i) transposed.Row(64 * j + i)[y / 64] = block[i];
    }
  }
  return transposed;
}

void Unite(BitMap& map, const BitMap& other) {
  for (int y = 0; y < map.Height(); ++y)
    for (int j = 0; j < map.WordsPerRow(); ++j) map.Row(y)[j] |= other.Row(y)[j];
}

BitMap ThinRuns(const BitMap& map, int thickness) {
  BitMap thin = map;
  KeepRunStarts(thin, thickness + 1);
  GrowRunsDown(thin, thickness + 1);
  for (int y = 0; y < map.Height(); ++y) {
    std::uint64_t* row = thin.Row(y);
    const std::uint64_t* all = map.Row(y);
    for (int j = 0; j < map.WordsPerRow(); ++j) row[j] = all[j] & ~row[j];
  }
  return thin;
}

}  // namespace graphize
