#include "finding_axes/glyph_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace graphize {

namespace {

/// Rows of the window: 22 above the base line, of which a digit takes 17.5, and 6 below.
constexpr double kDigitRows = 17.5;
constexpr int kRowsAbove = 22;

constexpr int kWeights = kGlyphHidden * (kGlyphInputs + 1) + kGlyphClasses * (kGlyphHidden + 1);

/// The weights as text: each byte is two letters from 'a' on, high half first.
constexpr char kWeightText[] =
#include "finding_axes/glyph_weights.inc"
    ;
constexpr float kFactors[] = {
#include "finding_axes/glyph_factors.inc"
};

struct Weights {
  std::vector<float> Hidden, Out;  // per unit its inputs' weights, then its bias
};

const Weights& TheWeights() {
  static const Weights weights = [] {
    Weights made;
    const auto value = [](int i, float factor) {
      const int byte = (kWeightText[2 * i] - 'a') * 16 + (kWeightText[2 * i + 1] - 'a');
      return factor * static_cast<float>(byte - 128);
    };
    const int hidden = kGlyphHidden * (kGlyphInputs + 1);
    for (int i = 0; i < hidden; ++i) made.Hidden.push_back(value(i, kFactors[0]));
    for (int i = hidden; i < kWeights; ++i) made.Out.push_back(value(i, kFactors[1]));
    return made;
  }();
  return weights;
}

}  // namespace

GlyphInput NormaliseGlyph(const InkImage& upright, const InkPieces& pieces, const Glyph& glyph,
                          GlyphLine line) {
  GlyphInput input{};
  const double step = line.Height / kDigitRows;
  const double reach = kGlyphWidth * step / 2;
  const int left = std::max(static_cast<int>(std::floor(glyph.Box.MiddleX() - reach)) - 1, 0);
  const int top = std::max(glyph.Box.Top - 1, 0);
  const int right = std::min(
      std::min(static_cast<int>(std::ceil(glyph.Box.MiddleX() + reach)) + 1, glyph.Box.Right + 1),
      upright.Width - 1);
  const int bottom = std::min(glyph.Box.Bottom + 1, upright.Height - 1);
  const int from = std::max(left, glyph.Box.Left - 1);
  int darkest = 1;
  // The glyph alone: of its surroundings only what has come off its own edges.
  const auto own = [&](int x, int y) {
    if (x < from || x > right || y < top || y > bottom) return 0;
    const std::size_t at = static_cast<std::size_t>(y) * upright.Width + x;
    const std::int32_t label = pieces.Labels[at];
    if (label != 0 &&
        std::find(glyph.Pieces.begin(), glyph.Pieces.end(), label - 1) == glyph.Pieces.end())
      return 0;
    return static_cast<int>(upright.Values[at]);
  };
  for (int y = glyph.Box.Top; y <= glyph.Box.Bottom; ++y)
    for (int x = glyph.Box.Left; x <= glyph.Box.Right; ++x) darkest = std::max(darkest, own(x, y));
  const auto bilinear = [&](double x, double y) {
    const int x0 = static_cast<int>(std::floor(x)), y0 = static_cast<int>(std::floor(y));
    const double s = x - x0, t = y - y0;
    return (1 - t) * ((1 - s) * own(x0, y0) + s * own(x0 + 1, y0)) +
           t * ((1 - s) * own(x0, y0 + 1) + s * own(x0 + 1, y0 + 1));
  };
  const int fine = std::max(static_cast<int>(std::ceil(step)), 1);
  const double firstY = line.Baseline + 0.5 - kRowsAbove * step;
  const double firstX = glyph.Box.MiddleX() - reach;
  for (int row = 0; row < kGlyphHeight; ++row) {
    if (firstY + (row + 1) * step < top - 1 || firstY + row * step > bottom + 1) continue;
    for (int column = 0; column < kGlyphWidth; ++column) {
      if (firstX + (column + 1) * step < from - 1 || firstX + column * step > right + 1) continue;
      double sum = 0;
      for (int j = 0; j < fine; ++j)
        for (int i = 0; i < fine; ++i)
          sum += bilinear(firstX + (column + (i + 0.5) / fine) * step,
                          firstY + (row + (j + 0.5) / fine) * step);
      input[row * kGlyphWidth + column] =
          static_cast<float>(std::min(sum / (fine * fine * darkest), 1.0));
    }
  }
  return input;
}

GlyphReading ReadGlyph(const GlyphInput& input) {
  const Weights& weights = TheWeights();
  std::array<float, kGlyphHidden> hidden{};
  for (int i = 0; i < kGlyphHidden; ++i) {
    const float* w = weights.Hidden.data() + static_cast<std::ptrdiff_t>(i) * (kGlyphInputs + 1);
    float sum = w[kGlyphInputs];
    for (int j = 0; j < kGlyphInputs; ++j) sum += w[j] * input[j];
    hidden[i] = std::max(sum, 0.0f);
  }
  std::array<float, kGlyphClasses> out{};
  for (int i = 0; i < kGlyphClasses; ++i) {
    const float* w = weights.Out.data() + static_cast<std::ptrdiff_t>(i) * (kGlyphHidden + 1);
    out[i] = w[kGlyphHidden];
    for (int j = 0; j < kGlyphHidden; ++j) out[i] += w[j] * hidden[j];
  }
  const auto best = std::max_element(out.begin(), out.end());
  float sum = 0;
  for (const float value : out) sum += std::exp(value - *best);
  return {kGlyphSigns[best - out.begin()], 1 / sum};
}

WordReading ReadWord(const InkImage& upright, const InkPieces& pieces, const Word& word) {
  WordReading reading;
  const auto read = [&](const std::vector<Glyph>& glyphs, GlyphLine line, std::string& text) {
    for (const Glyph& glyph : glyphs) {
      const GlyphReading sign = ReadGlyph(NormaliseGlyph(upright, pieces, glyph, line));
      text += sign.Sign;
      reading.Share = std::min(reading.Share, sign.Share);
    }
  };
  read(word.Glyphs, {word.Baseline, word.Height}, reading.Text);
  read(word.Exponent, {word.ExponentBaseline, word.ExponentHeight}, reading.Exponent);
  return reading;
}

}  // namespace graphize
