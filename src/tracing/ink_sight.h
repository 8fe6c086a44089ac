#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/raster.h"

namespace graphize {

/// The levels by which ink differs from the paper under it, in each channel.
struct InkShade {
  int Red = 0, Green = 0, Blue = 0;

  /// Its length as a vector, 0 to 442.
  double Strength() const;
  /// Whether the other is the same ink, as strong or somewhat covered or doubled: along this one,
  /// and aside of it by no more than `noise` levels beyond what blending leaves.
  bool IsAlike(const InkShade& other, double noise) const;
};

/// Tells ink of any colour from the paper around it. The paper is looked at where it is asked for,
/// in tiles, so that a few thousand questions cost no reading of a whole page. The picture must
/// outlive it.
class InkSight {
 public:
  explicit InkSight(const Raster& picture);

  int Width() const { return picture_.Width(); }
  int Height() const { return picture_.Height(); }
  /// Whether the pixel's colour is clearly another than the paper's there; black is always ink on a
  /// page that is not black. Outside of the picture there is none.
  bool IsInk(int x, int y);
  /// Whether there is ink at most `reach` pixels across and down from a place between pixels.
  bool HasInkNear(double x, double y, double reach);
  /// The same of ink that is like the shade.
  bool HasInkNear(double x, double y, double reach, const InkShade& like);
  /// The strongest ink there; nothing where there is none.
  std::optional<InkShade> StrongestNear(double x, double y, double reach);

 private:
  struct Tile {
    int Red = -1, Green = 0, Blue = 0;  // of the paper; Red is -1 until it has been looked at
    int Least = 0;                      // levels that ink differs from it in some channel
  };
  const Tile& TileAt(int x, int y);
  InkShade ShadeAt(int x, int y);
  void LookAt(Tile& tile, int left, int top) const;

  const Raster& picture_;
  bool blackIsInk_ = true;
  int columns_;
  std::vector<Tile> tiles_;
};

}  // namespace graphize
