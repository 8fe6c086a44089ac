#pragma once

#include <optional>
#include <vector>

#include "reading/ink_map.h"
#include "reading/symbol_shape.h"

namespace graphize {

/// A place where a symbol's shape lies on the picture.
struct SymbolMatch {
  double X = 0, Y = 0;    // of the shape's middle
  double Sigma = 0;       // standard uncertainty of either, pixels
  double Missing = 0;     // of the ink that should be seen, the part that is not there
  double Excess = 0;      // ink that hangs on to it and ends nearby, in parts of the shape's
  double Visible = 1;     // part of the shape that nothing hides
  double Overlapped = 0;  // part of its ink that is other matches', too

  double Mismatch() const { return Missing + Excess; }
};

inline constexpr double kLeastVisible = 0.35;  // part of a shape; less is a guess

/// What the places of a shape are judged by, on one map; both are kept.
class SymbolMatcher {
 public:
  SymbolMatcher(const InkMap& map, const SymbolShape& shape);

  /// How well the shape lies with its middle on a pixel, 1: just so; absent where it cannot be.
  std::optional<float> ScoreAt(int x, int y) const;

  /// Moves the match to where the squares of the differences are least (Gauss and Newton), leaving
  /// out what is hidden, what other matches explain, and ink that passes by.
  void Register(SymbolMatch& match, const std::vector<SymbolMatch>& others) const;

  /// Fills in how well it matches.
  void Judge(SymbolMatch& match, const std::vector<SymbolMatch>& others) const;

  bool AreNear(const SymbolMatch& a, const SymbolMatch& b) const;

 private:
  /// The shape's ink, or that of several, on a square of the picture's pixels.
  struct Laid {
    int Left = 0, Top = 0, Side = 0;
    std::vector<float> Ink;
    std::vector<float> SlopeX, SlopeY;  // when they were asked for

    std::size_t IndexOf(int x, int y) const {
      return static_cast<std::size_t>(y - Top) * static_cast<std::size_t>(Side) +
             static_cast<std::size_t>(x - Left);
    }
    float At(int x, int y) const {
      return x < Left || y < Top || x >= Left + Side || y >= Top + Side ? 0 : Ink[IndexOf(x, y)];
    }
  };

  Laid Lay(const SymbolMatch& match, bool withSlopes) const;
  /// How much of the pixels about the match belongs to the others.
  Laid Explained(const SymbolMatch& match, const std::vector<SymbolMatch>& others) const;
  bool IsKnownNear(double x, double y) const;
  double ExcessAt(const SymbolMatch& match, const Laid& own, const Laid& explained) const;

  struct Offset {
    int X = 0, Y = 0;
    float Ink = 0;
  };
  const InkMap& map_;
  const SymbolShape& shape_;
  std::vector<Offset> known_;
  int reach_ = 0;
};

}  // namespace graphize
