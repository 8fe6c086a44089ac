#include "raster/pyramid.h"

#include <algorithm>
#include <array>

#include "raster/parallel_rows.h"
#include "raster/plot_image.h"

namespace graphize {

namespace {

/// Pixels are mixed by so many at a time, which stay near the processor.
constexpr int kPiece = 128;

template <bool darkGround>
std::uint8_t Outer(std::uint8_t a, std::uint8_t b) {
  return (a < b) != darkGround ? a : b;
}

template <bool darkGround>
void Mix(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c, const std::uint8_t* d,
         int bytes, std::uint8_t* to) {
  for (int i = 0; i < bytes; ++i) {
    const auto sum = static_cast<std::uint16_t>(a[i] + b[i] + c[i] + d[i]);
    const std::uint8_t end =
        Outer<darkGround>(Outer<darkGround>(a[i], b[i]), Outer<darkGround>(c[i], d[i]));
    to[i] = static_cast<std::uint8_t>(static_cast<std::uint16_t>(sum + 4 * end + 4) >> 3);
  }
}

/// The even and the odd pixels of a row; the last single one is both.
void Part(const std::uint32_t* row, int count, std::uint32_t* even, std::uint32_t* odd) {
  for (int i = 0; i < count / 2; ++i) {
    even[i] = row[2 * i];
    odd[i] = row[2 * i + 1];
  }
  if (count % 2 != 0) even[count / 2] = odd[count / 2] = row[count - 1];
}

/// Whether all pixels are this one.
bool IsEven(const std::uint32_t* row, int count, std::uint32_t pixel) {
  std::uint32_t differs = 0;
  for (int i = 0; i < count; ++i) differs |= row[i] ^ pixel;
  return differs == 0;
}

/// Asks for pixels that are read soon: what hides behind the memory of a page is the time to get
/// it.
void Fetch(const std::uint32_t* row, int from, int end) {
  constexpr int kLine = 16;  // pixels that come together
  for (int i = from; i < end; i += kLine) __builtin_prefetch(row + i);
}

int Halved(int length) {
  return (length + 1) / 2;
}

}  // namespace

void MixRows(const std::uint32_t* a, const std::uint32_t* b, const std::uint32_t* c,
             const std::uint32_t* d, int count, bool darkGround, std::uint32_t* to) {
  const auto bytes = [](const std::uint32_t* row) {
    return reinterpret_cast<const std::uint8_t*>(row);
  };
  const auto mix = darkGround ? Mix<true> : Mix<false>;
  mix(bytes(a), bytes(b), bytes(c), bytes(d), 4 * count, reinterpret_cast<std::uint8_t*>(to));
}

void HalveRows(const std::uint32_t* a, const std::uint32_t* b, int count, bool darkGround,
               std::uint32_t* to) {
  std::array<std::uint32_t, kPiece> upperEven, upperOdd, lowerEven, lowerOdd;
  for (int from = 0; from < count; from += 2 * kPiece) {
    const int part = std::min(count - from, 2 * kPiece);
    Fetch(a, from + part, std::min(from + 2 * part, count));
    Fetch(b, from + part, std::min(from + 2 * part, count));
    if (IsEven(a + from, part, a[from]) && IsEven(b + from, part, a[from])) {
      std::fill_n(to + from / 2, Halved(part), a[from]);  // paper, most of a page
      continue;
    }
    Part(a + from, part, upperEven.data(), upperOdd.data());
    Part(b + from, part, lowerEven.data(), lowerOdd.data());
    MixRows(upperEven.data(), upperOdd.data(), lowerEven.data(), lowerOdd.data(), Halved(part),
            darkGround, to + from / 2);
  }
}

bool HasDarkGround(const Raster& raster) {
  constexpr int kPlaces = 64;  // each way
  constexpr int kMiddleGrey = 128;
  int dark = 0;
  for (int j = 0; j < kPlaces; ++j) {
    const std::uint32_t* row = raster.Row((2 * j + 1) * raster.Height() / (2 * kPlaces));
    for (int i = 0; i < kPlaces; ++i) {
      const std::uint32_t pixel = row[(2 * i + 1) * raster.Width() / (2 * kPlaces)];
      const auto channel = [pixel](int shift) { return static_cast<int>(pixel >> shift & 0xff); };
      if (11 * channel(16) + 16 * channel(8) + 5 * channel(0) < 32 * kMiddleGrey) ++dark;
    }
  }
  return 2 * dark > kPlaces * kPlaces;
}

void Pyramid::Reset(const Raster& raster) {
  levels_.clear();
  pixels_ = raster.Pixels();
  width_ = raster.Width();
  height_ = raster.Height();
  if (raster.IsEmpty()) return;
  darkGround_ = HasDarkGround(raster);
  int width = width_, height = height_;
  for (int level = 1; level <= kLargestLevel; ++level) {
    width = Halved(width);
    height = Halved(height);
    if (level < kFirstKept) continue;
    const int across = (width + kTileSide - 1) / kTileSide;
    const int down = (height + kTileSide - 1) / kTileSide;
    levels_.push_back({width, height, across, {}});
    levels_.back().Tiles.resize(static_cast<std::size_t>(across) * down);
  }
}

void Pyramid::Follow(const Raster& raster, const DirtyArea& area) {
  const bool whole = area.Left <= 0 && area.Top <= 0 && area.Right >= raster.Width() - 1 &&
                     area.Bottom >= raster.Height() - 1;
  if (raster.Pixels() != pixels_ || raster.Width() != width_ || raster.Height() != height_ ||
      (whole && !area.IsEmpty()))
    return Reset(raster);
  if (area.IsEmpty() || raster.IsEmpty()) return;
  for (int level = kFirstKept; level <= kLargestLevel; ++level) FollowLevel(raster, level, area);
}

void Pyramid::FollowLevel(const Raster& raster, int level, const DirtyArea& area) {
  Level& at = At(level);
  const int left = std::max(area.Left, 0) >> level, top = std::max(area.Top, 0) >> level;
  const int right = std::min(area.Right, width_ - 1) >> level;
  const int bottom = std::min(area.Bottom, height_ - 1) >> level;
  for (int tileY = top / kTileSide; tileY <= bottom / kTileSide; ++tileY) {
    for (int tileX = left / kTileSide; tileX <= right / kTileSide; ++tileX) {
      const int tile = tileY * at.TilesAcross + tileX;
      if (at.Tiles[tile] == nullptr) continue;
      const int firstX = std::max(left - tileX * kTileSide, 0);
      const int firstY = std::max(top - tileY * kTileSide, 0);
      const int endX = std::min(right + 1 - tileX * kTileSide, kTileSide);
      const int endY = std::min(bottom + 1 - tileY * kTileSide, kTileSide);
      constexpr int kLarge = kTileSide * kTileSide / 2;
      // Made anew with what it is made of: that may be gone as well.
      bool anew = (endX - firstX) * (endY - firstY) > kLarge;
      if (level > kFirstKept) {
        const Level& below = At(level - 1);
        for (int y = 2 * tileY; y <= 2 * tileY + 1; ++y)
          for (int x = 2 * tileX; x <= 2 * tileX + 1; ++x)
            if (x < below.TilesAcross && y * kTileSide < below.Height)
              anew = anew || below.Tiles[y * below.TilesAcross + x] == nullptr;
      }
      if (anew)
        at.Tiles[tile].reset();
      else
        Make(raster, level, tile, firstX, firstY, endX, endY);
    }
  }
}

void Pyramid::Make(const Raster& raster, int level, int tile, int left, int top, int right,
                   int bottom) {
  const Level& at = At(level);
  const int firstX = tile % at.TilesAcross * kTileSide, firstY = tile / at.TilesAcross * kTileSide;
  right = std::min(right, at.Width - firstX);
  bottom = std::min(bottom, at.Height - firstY);
  // Two rows of the level below, one of this.
  const int from = 2 * (firstX + left);
  const int belowWidth = level == kFirstKept ? Halved(width_) : At(level - 1).Width;
  const int belowHeight = level == kFirstKept ? Halved(height_) : At(level - 1).Height;
  const int count = std::min(2 * (right - left), belowWidth - from);
  std::array<std::uint32_t, 2 * kTileSide> upper, lower;
  for (int y = top; y < bottom; ++y) {
    const int row = 2 * (firstY + y);
    CopyRow(raster, level - 1, from, row, count, upper.data());
    const bool single = row + 1 >= belowHeight;
    if (!single) CopyRow(raster, level - 1, from, row + 1, count, lower.data());
    HalveRows(upper.data(), single ? upper.data() : lower.data(), count, darkGround_,
              at.Tiles[tile].get() + static_cast<std::ptrdiff_t>(y) * kTileSide + left);
  }
}

void Pyramid::MakeTiles(const Raster& raster, int level, const Tiles& wanted) {
  if (level > kFirstKept)
    MakeTiles(raster, level - 1,
              {2 * wanted.Left, 2 * wanted.Top, 2 * wanted.Right, 2 * wanted.Bottom});
  Level& at = At(level);
  std::vector<int> missing;
  for (int y = wanted.Top; y < wanted.Bottom && y * kTileSide < at.Height; ++y)
    for (int x = wanted.Left; x < std::min(wanted.Right, at.TilesAcross); ++x)
      if (at.Tiles[y * at.TilesAcross + x] == nullptr) missing.push_back(y * at.TilesAcross + x);
  constexpr int kEachAlone = 1 << 18;
  PictureOperation unwatched;
  ParallelRows(kEachAlone, static_cast<int>(missing.size()), unwatched, [&](int first, int end) {
    for (int i = first; i < end; ++i) MakeTile(raster, level, missing[i]);
  });
}

void Pyramid::MakeTile(const Raster& raster, int level, int tile) {
  constexpr std::size_t kPixels = std::size_t{kTileSide} * kTileSide;
  At(level).Tiles[tile] = std::make_unique_for_overwrite<std::uint32_t[]>(kPixels);
  Make(raster, level, tile, 0, 0, kTileSide, kTileSide);
}

void Pyramid::Need(const Raster& raster, int level, int left, int top, int right, int bottom) {
  if (level < kFirstKept || levels_.empty()) return;
  const auto end = [](int pixel) { return (pixel + kTileSide - 1) / kTileSide; };
  MakeTiles(raster, level, {left / kTileSide, top / kTileSide, end(right), end(bottom)});
}

bool Pyramid::MakeSome(const Raster& raster, int level) {
  if (levels_.empty() || level < kFirstKept) return false;
  // Of the tiles that everything is made of, a few; then the rest, which is quickly done.
  constexpr int kSome = 4;
  const auto& first = At(kFirstKept).Tiles;
  int made = 0;
  for (int tile = 0; tile < std::ssize(first) && made < kSome; ++tile) {
    if (first[tile] != nullptr) continue;
    MakeTile(raster, kFirstKept, tile);
    ++made;
  }
  const std::size_t before = Bytes();
  if (made < kSome) Need(raster, level, 0, 0, At(level).Width, At(level).Height);
  return made > 0 || Bytes() > before;
}

void Pyramid::CopyRow(const Raster& raster, int level, int x, int y, int count,
                      std::uint32_t* to) const {
  if (count <= 0) return;
  if (level == 0) {
    std::copy_n(raster.Row(y) + x, count, to);
    return;
  }
  if (level < kFirstKept) {
    const int from = 2 * x;
    HalveRows(raster.Row(2 * y) + from, raster.Row(std::min(2 * y + 1, height_ - 1)) + from,
              std::min(2 * count, width_ - from), darkGround_, to);
    return;
  }
  const Level& at = At(level);
  const Tile* row = &at.Tiles[static_cast<std::size_t>(y / kTileSide) * at.TilesAcross];
  while (count > 0) {
    const int within = x % kTileSide, part = std::min(count, kTileSide - within);
    to = std::copy_n(row[x / kTileSide].get() + y % kTileSide * kTileSide + within, part, to);
    x += part;
    count -= part;
  }
}

std::size_t Pyramid::Bytes() const {
  std::size_t tiles = 0;
  for (const Level& level : levels_)
    tiles += std::count_if(level.Tiles.begin(), level.Tiles.end(),
                           [](const Tile& tile) { return tile != nullptr; });
  return tiles * kTileSide * kTileSide * sizeof(std::uint32_t);
}

}  // namespace graphize
