#include "reading/ink_pieces.h"

#include <cstdint>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "base/bit_map.h"
#include "reading/pixel_set.h"

namespace graphize {

namespace {

/// How many strokes leave a place: stretches of ink on the square about it, 9 pixels to each side.
int StrokesFrom(const InkMap& map, PathPixel at) {
  constexpr int kAside = 9;
  int strokes = 0;
  bool wasInk = map.IsClear(at.X - kAside, at.Y - kAside + 1);
  PathPixel corner{at.X - kAside, at.Y - kAside};
  for (const auto& [dx, dy] : {std::pair(1, 0), {0, 1}, {-1, 0}, {0, -1}})
    for (int i = 0; i < 2 * kAside; ++i, corner.X += dx, corner.Y += dy) {
      const bool isInk = map.IsClear(corner.X, corner.Y);
      strokes += isInk && !wasInk ? 1 : 0;
      wasInk = isInk;
    }
  return strokes;
}

/// Of the piece's pixels, from the one with most ink near its middle column outward, the first
/// where one stroke goes through.
PathPixel StartOf(const InkMap& map, const InkPiece& piece, std::vector<PathPixel>& pixels) {
  const int middle = (piece.Left + piece.Right) / 2;
  std::sort(pixels.begin(), pixels.end(), [&](PathPixel a, PathPixel b) {
    const auto key = [&](PathPixel at) {
      return std::tuple(std::abs(at.X - middle), -static_cast<int>(map.At(at.X, at.Y)), at.Y, at.X);
    };
    return key(a) < key(b);
  });
  constexpr std::size_t kMostTried = 200;
  const std::size_t step = std::max<std::size_t>(pixels.size() / kMostTried, 1);
  for (std::size_t i = 0; i < pixels.size(); i += step)
    if (StrokesFrom(map, pixels[i]) == 2) return pixels[i];
  return pixels.front();
}

/// Calls `visit` with each piece, its first pixel as its Start, and its pixels, from the top.
template <class IsInk, class Visit>
void ForEachPiece(const InkMap& map, const IsInk& isInk, const PictureOperation& operation,
                  const Visit& visit) {
  BitMap seen(map.Width, map.Height);
  std::vector<PathPixel> pixels;
  for (int y = 0; y < map.Height && !operation.Stopped; ++y)
    for (int x = 0; x < map.Width; ++x) {
      const auto take = [&](int u, int v) {
        if (!isInk(u, v) || seen.Get(u, v)) return;
        seen.Set(u, v);
        pixels.push_back({u, v});
      };
      pixels.clear();
      take(x, y);
      if (pixels.empty()) continue;
      InkPiece piece{.Left = x, .Right = x, .Top = y, .Bottom = y, .Start = {x, y}};
      for (std::size_t next = 0; next < pixels.size(); ++next) {
        if (operation.Stopped) return;
        const PathPixel at = pixels[next];
        piece.Add(at);
        for (int v = -1; v <= 1; ++v)
          for (int u = -1; u <= 1; ++u) take(at.X + u, at.Y + v);
      }
      visit(piece, pixels);
    }
}

}  // namespace

bool IsRectangle(const InkMap& map, const InkPiece& piece) {
  // What hangs on to a side, such as a tick of the plot's frame, is short.
  constexpr int kHangsOn = 12;
  if (piece.Width() < 3 * kHangsOn || piece.Height() < 2 * kHangsOn) return false;
  const int left = piece.Left + kHangsOn, right = piece.Right - kHangsOn;
  const int top = piece.Top + kHangsOn / 2, bottom = piece.Bottom - kHangsOn / 2;
  const auto isFull = [](int first, int last, const auto& isInk) {
    int ink = 0;
    for (int i = first; i <= last; ++i) ink += isInk(i) ? 1 : 0;
    return 20 * ink >= 19 * (last - first + 1);
  };
  const auto hasSide = [&](bool isLevel, int outermost, int inward) {
    for (int i = 0; i < kHangsOn; ++i) {
      const int at = outermost + i * inward;
      if (isLevel ? isFull(left, right, [&](int x) { return map.IsClear(x, at); })
                  : isFull(top, bottom, [&](int y) { return map.IsClear(at, y); }))
        return true;
    }
    return false;
  };
  return hasSide(true, piece.Top, 1) && hasSide(true, piece.Bottom, -1) &&
         hasSide(false, piece.Left, 1) && hasSide(false, piece.Right, -1);
}

std::optional<InkPiece> PieceAt(const InkMap& map, PathPixel at, int mostExtent) {
  if (!map.IsClear(at.X, at.Y)) return std::nullopt;
  InkPiece piece{.Left = at.X, .Right = at.X, .Top = at.Y, .Bottom = at.Y, .Start = at};
  PixelSet seen(map.Width);
  std::vector<PathPixel> rim;
  const auto take = [&](int x, int y) {
    if (map.IsClear(x, y) && seen.Add(x, y)) rim.push_back({x, y});
  };
  take(at.X, at.Y);
  while (!rim.empty()) {
    const PathPixel next = rim.back();
    rim.pop_back();
    piece.Add(next);
    if (piece.Extent() > mostExtent) return std::nullopt;
    for (int v = -1; v <= 1; ++v)
      for (int u = -1; u <= 1; ++u) take(next.X + u, next.Y + v);
  }
  return piece;
}

std::vector<InkPiece> SpotsOf(const InkMap& map, int mostExtent,
                              const PictureOperation& operation) {
  std::vector<InkPiece> spots;
  const auto isInk = [&](int x, int y) {
    const std::uint8_t value = map.At(x, y);
    return value >= InkMap::kFull / 2 && value <= InkMap::kFull;
  };
  ForEachPiece(map, isInk, operation, [&](const InkPiece& piece, std::vector<PathPixel>&) {
    if (piece.Extent() <= mostExtent) spots.push_back(piece);
  });
  return spots;
}

std::vector<InkPiece> PiecesOf(const InkMap& map) {
  std::vector<InkPiece> pieces;
  const auto isInk = [&](int x, int y) { return map.IsClear(x, y); };
  ForEachPiece(map, isInk, {}, [&](InkPiece& piece, std::vector<PathPixel>& pixels) {
    piece.Start = StartOf(map, piece, pixels);
    pieces.push_back(piece);
  });
  return pieces;
}

}  // namespace graphize
