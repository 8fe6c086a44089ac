#pragma once

#include <cmath>
#include <cstdlib>
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

  /// How much of the pixels about the match, wherever it is registered to, belongs to the others.
  Laid Explained(const SymbolMatch& match, const std::vector<SymbolMatch>& others) const;

  /// Moves the match to where the squares of the differences are least (Gauss and Newton), leaving
  /// out what is hidden, what is explained, and ink that passes by. False as soon as it is clear
  /// that more than `worst` will be missing: the match is then of no use.
  bool Register(SymbolMatch& match, const Laid& explained, double worst) const;

  /// Fills in how well it matches.
  void Judge(SymbolMatch& match, const Laid& explained) const;
  /// Fills in Overlapped alone.
  void JudgeOverlap(SymbolMatch& match, const Laid& explained) const;

  /// How far apart matches lie, in columns or rows, that have to do with each other.
  int NearReach() const { return 2 * reach_; }

 private:
  Laid Lay(const SymbolMatch& match, bool withSlopes) const;
  /// Whether the shape of a match is known on a pixel of the picture.
  class KnownOnPicture {
   public:
    KnownOnPicture(const SymbolShape& shape, const SymbolMatch& match)
        : shape_(shape),
          column_(static_cast<int>(std::lround(match.X))),
          row_(static_cast<int>(std::lround(match.Y))) {}
    bool At(int x, int y) const {
      const int column = x - column_, row = y - row_;
      return std::abs(column) <= shape_.Radius && std::abs(row) <= shape_.Radius &&
             shape_.IsKnown[shape_.IndexOf(column, row)];
    }

   private:
    const SymbolShape& shape_;
    int column_, row_;
  };
  /// What a pixel may lack of its ink and miss nothing.
  double Slack() const { return shape_.IsHard ? 0.45 : 0.12; }
  double ExcessAt(const SymbolMatch& match, const Laid& own, const Laid& explained) const;

  struct Offset {
    int X = 0, Y = 0;
    float Ink = 0;
  };
  const InkMap& map_;
  const SymbolShape& shape_;
  std::vector<Offset> known_;
  std::vector<float> padded_;  // the shape's ink with paper around it
  int reach_ = 0;
};

}  // namespace graphize
