#pragma once

#include <cmath>
#include <numbers>

namespace graphize {

/// A place or a way in picture pixels, row downward.
struct Vector {
  double X = 0, Y = 0;

  /// Without the care of hypot() for what no picture is large enough for, a tenth of its time.
  double Length() const { return std::sqrt(X * X + Y * Y); }
};
inline Vector operator-(Vector a, Vector b) {
  return {a.X - b.X, a.Y - b.Y};
}
inline Vector operator+(Vector a, Vector b) {
  return {a.X + b.X, a.Y + b.Y};
}
inline Vector operator*(double k, Vector a) {
  return {k * a.X, k * a.Y};
}
/// Nothing where the way is nothing.
inline Vector Unit(Vector a) {
  const double length = a.Length();
  return length > 0 ? (1 / length) * a : Vector{};
}
inline double Dot(Vector a, Vector b) {
  return a.X * b.X + a.Y * b.Y;
}
/// Above 0 where b turns to the right of a, as rows count downward.
inline double Cross(Vector a, Vector b) {
  return a.X * b.Y - a.Y * b.X;
}
/// How far a place lies aside of a direction.
inline double AsideOf(Vector place, Vector unit) {
  return std::abs(Cross(unit, place));
}
/// Degrees between two directions, 0 to 180.
inline double AngleOf(Vector a, Vector b) {
  return std::abs(std::atan2(Cross(a, b), Dot(a, b))) * 180 / std::numbers::pi;
}

}  // namespace graphize
