#pragma once

#include <cstdint>
#include <vector>

#include "base/sparse_bytes.h"
#include "raster/picture_operation.h"
#include "reading/ink.h"

namespace graphize {

/// How much of each pixel is one ink: 0 to 1 in steps of 1/200, a byte per pixel. Where something
/// else is drawn over the paper, the ink may lie beneath: such pixels are hidden, not empty.
struct InkMap {
  static constexpr std::uint8_t kFull = 200;
  static constexpr std::uint8_t kClear = kFull * 2 / 5;  // from here to kFull it is clear ink
  static constexpr std::uint8_t kWall = 253;             // nothing leads through here
  static constexpr std::uint8_t kBeside = 254;           // blended with what hides
  static constexpr std::uint8_t kHidden = 255;

  int Width = 0, Height = 0;
  SparseBytes Values;  // most of a page is paper

  bool Contains(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(Width) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(Height);
  }
  /// To be written; within the map.
  std::uint8_t& Cell(int x, int y) { return Values[static_cast<std::size_t>(y) * Width + x]; }
  /// Outside is wall.
  std::uint8_t At(int x, int y) const {
    return Contains(x, y) ? Values[static_cast<std::size_t>(y) * Width + x] : kWall;
  }
  bool IsClear(int x, int y) const {
    const std::uint8_t value = At(x, y);
    return value >= kClear && value <= kFull;
  }
  bool IsHidden(int x, int y) const { return At(x, y) >= kBeside; }
  /// The ink's share, 0 where it is not seen.
  double Share(int x, int y) const {
    const std::uint8_t value = At(x, y);
    return value <= kFull ? value / static_cast<double>(kFull) : 0;
  }
};

inline constexpr float kLeastTolerance = 0.5f, kMostTolerance = 2;

/// Pixels that are nearer to another of `directions` are hidden, so are their neighbours that are
/// neither paper nor full ink. The tolerance, from kLeastTolerance to kMostTolerance, is how many
/// times the usual a pixel may differ from the ink, in direction and in strength, and count as it.
/// An empty map when the operation was stopped.
InkMap MapOf(const Raster& picture, const Paper& paper, const std::vector<Rgb>& directions,
             const Ink& ink, float tolerance, PictureOperation& operation);

}  // namespace graphize
