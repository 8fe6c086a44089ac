#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "finding_axes/words.h"

namespace graphize {

/// What a glyph can be read as; '?' is any letter or sign that numbers do not have.
inline constexpr char kGlyphSigns[] = "0123456789-.,e+x%?";
inline constexpr int kGlyphClasses = 18;

/// A glyph as the reader sees it: by the base line and the height of the digits beside it, so that
/// signs differ by their place, too. Ink from 0 to 1 of the word's darkest, row by row.
inline constexpr int kGlyphWidth = 24, kGlyphHeight = 28;
inline constexpr int kGlyphInputs = kGlyphWidth * kGlyphHeight;
using GlyphInput = std::array<float, kGlyphInputs>;

struct GlyphLine {
  double Baseline = 0, Height = 0;
};

GlyphInput NormaliseGlyph(const InkImage& upright, const InkPieces& pieces, const Glyph& glyph,
                          GlyphLine line);

/// A perceptron of one hidden layer (rectified), weights as bytes with one factor a layer:
/// glyph_weights.inc, made by tools/train_glyph_reader.
inline constexpr int kGlyphHidden = 96;

struct GlyphReading {
  char Sign = '?';
  float Share = 0;  // of all classes, 0..1 (softmax)
};
GlyphReading ReadGlyph(const GlyphInput& input);

/// A word as it was read: "-2.5", "10" with the exponent "3".
struct WordReading {
  std::string Text, Exponent;
  float Share = 1;  // of its most doubtful glyph
};
WordReading ReadWord(const InkImage& upright, const InkPieces& pieces, const Word& word);

}  // namespace graphize
