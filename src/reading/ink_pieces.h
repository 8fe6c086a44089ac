#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_path.h"

namespace graphize {

/// What hangs together of an ink, both corners included.
struct InkPiece {
  int Left = 0, Right = 0, Top = 0, Bottom = 0;
  int Area = 0;
  // On it, near its middle column, where it is one stroke if there is such a place.
  PathPixel Start;

  int Width() const { return Right - Left + 1; }
  int Height() const { return Bottom - Top + 1; }
  int Extent() const { return std::max(Width(), Height()); }
  void Add(PathPixel at) {
    ++Area;
    Left = std::min(Left, at.X);
    Right = std::max(Right, at.X);
    Top = std::min(Top, at.Y);
    Bottom = std::max(Bottom, at.Y);
  }
};

/// Whether it is a rectangle, filled or not, along the picture's rows: the frame of a legend.
bool IsRectangle(const InkMap& map, const InkPiece& piece);

/// The one of which a pixel is, Start aside; absent where there is none, or a larger one than
/// `mostExtent`.
std::optional<InkPiece> PieceAt(const InkMap& map, PathPixel at, int mostExtent);

/// Those of at least half ink that are no larger than `mostExtent`, 8-connected, from the top, each
/// with its first pixel as its Start. A stopped operation gives some of them.
std::vector<InkPiece> SpotsOf(const InkMap& map, int mostExtent, const PictureOperation& operation);

/// The pieces of clear ink, 8-connected, from the top.
std::vector<InkPiece> PiecesOf(const InkMap& map);

}  // namespace graphize
