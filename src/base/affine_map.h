#pragma once

namespace graphize {

/// Where the points of a plane go: x' = XX x + XY y + X, y' = YX x + YY y + Y. As it is
/// made they stay where they are.
struct AffineMap {
  double XX = 1, XY = 0, X = 0;
  double YX = 0, YY = 1, Y = 0;

  bool operator==(const AffineMap&) const = default;
};

/// Turned clockwise (y downward) by an angle with this cosine and sine, and scaled, so that
/// (fromX, fromY) comes to (toX, toY).
constexpr AffineMap Turned(double cosine, double sine, double scaleX, double scaleY, double fromX,
                           double fromY, double toX, double toY) {
  AffineMap map{cosine * scaleX, -sine * scaleY, 0, sine * scaleX, cosine * scaleY, 0};
  map.X = toX - (map.XX * fromX + map.XY * fromY);
  map.Y = toY - (map.YX * fromX + map.YY * fromY);
  return map;
}

struct MappedPlace {
  double X = 0, Y = 0;
};
/// Where a place goes.
constexpr MappedPlace Mapped(const AffineMap& map, double x, double y) {
  return {map.XX * x + map.XY * y + map.X, map.YX * x + map.YY * y + map.Y};
}

/// How much larger areas become.
constexpr double Determinant(const AffineMap& map) {
  return map.XX * map.YY - map.XY * map.YX;
}

/// The way back; the determinant is not 0.
constexpr AffineMap Inverse(const AffineMap& map) {
  const double d = Determinant(map);
  AffineMap back{map.YY / d, -map.XY / d, 0, -map.YX / d, map.XX / d, 0};
  back.X = -(back.XX * map.X + back.XY * map.Y);
  back.Y = -(back.YX * map.X + back.YY * map.Y);
  return back;
}

/// `first`, and `second` of what comes out.
constexpr AffineMap Then(const AffineMap& first, const AffineMap& second) {
  return {second.XX * first.XX + second.XY * first.YX,
          second.XX * first.XY + second.XY * first.YY,
          second.XX * first.X + second.XY * first.Y + second.X,
          second.YX * first.XX + second.YY * first.YX,
          second.YX * first.XY + second.YY * first.YY,
          second.YX * first.X + second.YY * first.Y + second.Y};
}

}  // namespace graphize
