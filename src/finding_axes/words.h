#pragma once

#include <cstdint>
#include <vector>

#include "finding_axes/ink_image.h"

namespace graphize {

/// What hangs together, both corners included.
struct InkBox {
  int Left = 0, Top = 0, Right = -1, Bottom = -1;

  int Width() const { return Right - Left + 1; }
  int Height() const { return Bottom - Top + 1; }
  double MiddleX() const { return 0.5 * (Left + Right); }
  double MiddleY() const { return 0.5 * (Top + Bottom); }
  double Area() const { return static_cast<double>(Width()) * Height(); }
  void Add(const InkBox& other);
};

/// A letter: its box and the pieces of ink that it is made of (numbers in InkPieces).
struct Glyph {
  InkBox Box;
  std::vector<int> Pieces;
};

/// Letters side by side on one base line.
struct Word {
  std::vector<Glyph> Glyphs;    // from left to right
  std::vector<Glyph> Exponent;  // raised behind them
  InkBox Box;                   // of all
  double Baseline = 0;          // lower edge of its digits, the last inked row
  double Height = 0;            // of a digit
  double ExponentBaseline = 0, ExponentHeight = 0;

  /// Where a label of an X axis points to, and one of a Y axis.
  double MiddleX() const { return Box.MiddleX(); }
  double MiddleY() const { return Baseline - 0.5 * (Height - 1); }
};

/// The pieces of ink on an image: what has at least this part (0..1) of the darkest nearby,
/// 8-connected. More parts letters that touch, less holds thin strokes together.
struct InkPieces {
  std::vector<std::int32_t> Labels;  // per pixel: 1 + the piece's number, 0 for paper
  std::vector<InkBox> Boxes;
  std::vector<int> Areas;
};
InkPieces FindPieces(const InkImage& upright, double part = 0.45);

/// The words that are written from left to right, of letters that touch nothing else.
std::vector<Word> FindWords(const InkImage& upright, const InkPieces& pieces);

}  // namespace graphize
