#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/raster.h"

namespace graphize {

struct DirtyArea;

/// Smaller and smaller copies of a raster, for views from afar: in a level's pixel are 2^level x
/// 2^level pixels of the raster, fewer at its right and lower edge. What is kept is made when it is
/// first needed, in tiles; all of it is a twelfth of the raster.
///
/// A pixel of a level is, channel by channel, half the mean of the four of the level below and half
/// their darkest (lightest on a dark ground): a line one pixel wide stays visible at every level.
class Pyramid {
 public:
  static constexpr int kLargestLevel = 8;

  /// The raster, or what it shows in an area, has changed. Small changes are followed pixel by
  /// pixel, larger ones are made anew when they are seen.
  void Follow(const Raster& raster, const DirtyArea& area);

  /// Makes what these pixels of a level need, on all processors. The raster is the one that was
  /// followed; columns and rows are counted in the level's pixels, ends are excluded.
  void Need(const Raster& raster, int level, int left, int top, int right, int bottom);
  /// `count` pixels of a level's row from column `x` on: pixels that were needed.
  void CopyRow(const Raster& raster, int level, int x, int y, int count, std::uint32_t* to) const;

  /// Makes some of what a whole level needs; false when all of it was there.
  bool MakeSome(const Raster& raster, int level);

  bool DarkGround() const { return darkGround_; }
  std::size_t Bytes() const;

 private:
  // Pixels of the levels below are made whenever they are seen.
  static constexpr int kFirstKept = 2;
  static constexpr int kTileSide = 256;
  using Tile = std::unique_ptr<std::uint32_t[]>;
  struct Level {
    int Width = 0, Height = 0, TilesAcross = 0;
    std::vector<Tile> Tiles;
  };

  void Reset(const Raster& raster);
  Level& At(int level) { return levels_[level - kFirstKept]; }
  const Level& At(int level) const { return levels_[level - kFirstKept]; }
  /// A part of a kept level's tile from what lies a level below.
  void Make(const Raster& raster, int level, int tile, int left, int top, int right, int bottom);
  /// A part of a level in tiles, ends excluded.
  struct Tiles {
    int Left, Top, Right, Bottom;
  };
  /// What is missing of them, and of what they are made of.
  void MakeTiles(const Raster& raster, int level, const Tiles& wanted);
  /// What it is made of is there.
  void MakeTile(const Raster& raster, int level, int tile);
  void FollowLevel(const Raster& raster, int level, const DirtyArea& area);

  std::vector<Level> levels_;
  const std::uint32_t* pixels_ = nullptr;  // of the raster that is followed
  int width_ = 0, height_ = 0;
  bool darkGround_ = false;
};

/// The pixels of `a` and `b`, a row and the one below it, taken together by twos as a level does.
/// `to` has (count + 1) / 2 pixels; a last single column stands for two.
void HalveRows(const std::uint32_t* a, const std::uint32_t* b, int count, bool darkGround,
               std::uint32_t* to);
/// One pixel of four, each channel half their mean and half their darkest or lightest.
void MixRows(const std::uint32_t* a, const std::uint32_t* b, const std::uint32_t* c,
             const std::uint32_t* d, int count, bool darkGround, std::uint32_t* to);
/// Whether most of a picture is dark: few places are looked at.
bool HasDarkGround(const Raster& raster);

}  // namespace graphize
