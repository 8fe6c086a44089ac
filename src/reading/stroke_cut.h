#pragma once

#include <array>
#include <optional>

#include "reading/ink_blend.h"
#include "reading/ink_map.h"
#include "reading/stroke_path.h"

namespace graphize {

/// Ink in one cut through the stroke, from a path's pixel on to both sides.
struct StrokeCut {
  double Ink = 0, Moment = 0;  // shares, and shares times distance from the pixel
  bool MeetsHidden = false;
  bool IsLong = false;  // longer than was looked at
  // Shares of the outermost pixels on both sides, and of those beside them further in.
  std::array<double, 2> End{}, Inner{1, 1};
  int Pixels = 0;
  int First = 0, Last = 0;  // outermost pixels, from the path's

  double Middle() const { return Moment / Ink; }
  /// What the middle gains where each edge lies within one pixel, which counts in its centre while
  /// its ink lies on the inner side of it.
  double EdgeShift() const {
    constexpr double kWhole = 0.96;
    if (Pixels < 2 || (Pixels > 2 && std::min(Inner[0], Inner[1]) < kWhole)) return 0;
    return (End[0] * (1 - End[0]) - End[1] * (1 - End[1])) / (2 * Ink);
  }
};

/// The pixels of a map along a column or a row.
class CutLine {
 public:
  CutLine(const InkMap& map, PathPixel at, bool alongRow, const InkBlends* blends)
      : map_(map), at_(at), alongRow_(alongRow), blends_(blends) {}

  bool IsHidden(int i) const { return map_.IsHidden(X(i), Y(i)) && !Blend(i); }
  double Share(int i) const {
    return map_.IsHidden(X(i), Y(i)) ? Blend(i).value_or(0) : map_.Share(X(i), Y(i));
  }
  /// Absent on walls, too.
  std::optional<double> Seen(int i) const {
    if (map_.At(X(i), Y(i)) > InkMap::kFull) return std::nullopt;
    return map_.Share(X(i), Y(i));
  }

 private:
  int X(int i) const { return at_.X + (alongRow_ ? i : 0); }
  int Y(int i) const { return at_.Y + (alongRow_ ? 0 : i); }
  std::optional<double> Blend(int i) const {
    return blends_ ? blends_->ShareAt(map_, X(i), Y(i)) : std::nullopt;
  }

  const InkMap& map_;
  PathPixel at_;
  bool alongRow_;
  const InkBlends* blends_;
};

/// `most` pixels to each side, and no farther than the ink goes on.
StrokeCut CutAlong(const CutLine& line, int most);

/// Where the middle of a band of that chord lies, from the path's pixel, that fits the seen pixels
/// of a cut; absent where they do not tell it.
std::optional<double> MiddleOfBand(const CutLine& line, double chord, double slope);

}  // namespace graphize
