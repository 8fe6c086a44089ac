#include "raster/black_white.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/luminance.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr int kTile = 64;  // pixels; one word of a bit map

/// The luminance of the paper in a tile of the picture, in thousandths: the median of every fourth
/// pixel's, in every fourth row, that becomes white: not below `limit`, in thousandths. The limit
/// where none does.
int PaperOf(const Raster& picture, int left, int top, int limit) {
  constexpr int kStep = 4;
  int count[256] = {}, all = 0;
  for (int y = top; y < std::min(top + kTile, picture.Height()); y += kStep) {
    for (int x = left; x < std::min(left + kTile, picture.Width()); x += kStep) {
      const int luminance = LuminanceOf(picture.Row(y)[x]);
      if (luminance < limit) continue;
      ++count[luminance / 1000];
      ++all;
    }
  }
  if (all == 0) return limit;
  int level = 0;
  for (int below = count[0]; 2 * below < all;) below += count[++level];
  return 1000 * level;
}

int FaintBelow(int paper, int limit) {
  return paper - 2 * (paper - limit) / 5;
}

/// Makes at most 64 pixels black, below `limit`, or white; a bit for each that becomes white and is
/// darker than `faint`.
std::uint64_t ReducePixels(std::uint32_t* pixels, int count, int limit, int faint) {
  // Bytes first: the compiler turns that loop into vector instructions.
  std::uint8_t isFaint[kTile] = {};
  for (int i = 0; i < count; ++i) {
    const int luminance = LuminanceOf(pixels[i]);
    pixels[i] = luminance < limit ? kBlackPixel : kWhitePixel;
    isFaint[i] = luminance >= limit && luminance < faint ? 1 : 0;
  }
  std::uint64_t bits = 0;
  for (int i = 0; i < kTile; ++i) bits |= static_cast<std::uint64_t>(isFaint[i]) << i;
  return bits;
}

}  // namespace

bool IsBlackAndWhite(const Raster& picture) {
  std::atomic<bool> isIt = true;
  PictureOperation unwatched;
  ParallelRows(picture.Width(), picture.Height(), unwatched, [&](int first, int end) {
    // In blocks: the compiler turns a loop without a way out into vector instructions.
    constexpr std::ptrdiff_t kBlock = 4096;
    const std::uint32_t* const last = picture.Row(end - 1) + picture.Width();
    for (const std::uint32_t* start = picture.Row(first); start < last && isIt;) {
      const std::uint32_t* const behind = start + std::min(kBlock, last - start);
      // Adding its lowest bit leaves 24 zero bits of black and of white, and of nothing else.
      std::uint32_t others = 0;
      for (; start < behind; ++start) others |= *start + (*start & 1u);
      if ((others & 0xffffffu) != 0) isIt = false;
    }
  });
  return isIt;
}

bool ReduceToBlackAndWhite(Raster& picture, double threshold, PictureOperation& operation) {
  const int limit = static_cast<int>(std::ceil(threshold * 1000));
  const int rowsOfTiles = (picture.Height() + kTile - 1) / kTile;
  picture.Faint = BitMap(picture.Width(), picture.Height());
  return ParallelRows(picture.Width() * kTile, rowsOfTiles, operation, [&](int first, int end) {
    std::vector<int> faint;  // below this luminance, per tile
    for (int y = first * kTile; y < std::min(end * kTile, picture.Height()); ++y) {
      if (y % kTile == 0) {
        faint.clear();
        for (int x = 0; x < picture.Width(); x += kTile)
          faint.push_back(FaintBelow(PaperOf(picture, x, y, limit), limit));
      }
      for (int tile = 0; tile < picture.Faint.WordsPerRow(); ++tile) {
        const int left = tile * kTile;
        picture.Faint.Row(y)[tile] = ReducePixels(
            picture.Row(y) + left, std::min(kTile, picture.Width() - left), limit, faint[tile]);
      }
    }
  });
}

}  // namespace graphize
