#include "finding_axes/second_reading.h"

#include <algorithm>
#include <cmath>

#include "base/run_time_error.h"

namespace graphize {

namespace {

/// The size at which the recogniser reads digits best, others at which it reads some of those of
/// which it makes nothing then, and the margin it wants, pixels.
constexpr double kDigitHeights[] = {30, 22, 42};
constexpr int kMargin = 14;

TextLine LineOf(const LabelPage& page, const std::vector<Glyph>& glyphs, double height,
                double digitHeight) {
  InkBox box = glyphs.front().Box;
  std::vector<int> pieces;
  for (const Glyph& glyph : glyphs) {
    box.Add(glyph.Box);
    pieces.insert(pieces.end(), glyph.Pieces.begin(), glyph.Pieces.end());
  }
  const auto own = [&](int x, int y) {
    if (x < box.Left - 1 || x > box.Right + 1 || y < box.Top - 1 || y > box.Bottom + 1) return 0;
    if (x < 0 || y < 0 || x >= page.Ink.Width || y >= page.Ink.Height) return 0;
    const std::int32_t label = page.Pieces.Labels[static_cast<std::size_t>(y) * page.Ink.Width + x];
    if (label != 0 && std::find(pieces.begin(), pieces.end(), label - 1) == pieces.end()) return 0;
    return page.Ink.At(x, y);
  };
  int darkest = 1;
  for (int y = box.Top; y <= box.Bottom; ++y)
    for (int x = box.Left; x <= box.Right; ++x) darkest = std::max(darkest, own(x, y));
  const double step = height / digitHeight;
  TextLine line;
  line.Width = static_cast<int>(std::ceil(box.Width() / step)) + 2 * kMargin;
  line.Height = static_cast<int>(std::ceil(box.Height() / step)) + 2 * kMargin;
  const int fine = std::max(static_cast<int>(std::ceil(step)), 1);
  for (int row = 0; row < line.Height; ++row)
    for (int column = 0; column < line.Width; ++column) {
      double sum = 0;
      for (int j = 0; j < fine; ++j)
        for (int i = 0; i < fine; ++i) {
          const double x = box.Left - 0.5 + (column - kMargin + (i + 0.5) / fine) * step;
          const double y = box.Top - 0.5 + (row - kMargin + (j + 0.5) / fine) * step;
          const int x0 = static_cast<int>(std::floor(x)), y0 = static_cast<int>(std::floor(y));
          const double s = x - x0, t = y - y0;
          sum += (1 - t) * ((1 - s) * own(x0, y0) + s * own(x0 + 1, y0)) +
                 t * ((1 - s) * own(x0, y0 + 1) + s * own(x0 + 1, y0 + 1));
        }
      const double part = std::min(sum / (fine * fine * darkest), 1.0);
      line.Grey.push_back(static_cast<std::uint8_t>(std::lround(255 * (1 - part))));
    }
  return line;
}

/// The recogniser's words for the same signs: dashes of all kinds, letters for digits that look
/// like them.
std::string InOurSigns(const std::string& text) {
  static constexpr std::pair<const char*, char> kLong[] = {{"\u2014", '-'},
                                                           {"\u2013", '-'},
                                                           {"\u2212", '-'},
                                                           {"\u00d7", 'x'},
                                                           {"\u2018", ','},
                                                           // A short dash.
                                                           {"\u201c", '-'},
                                                           {"\u201d", '-'}};
  std::string signs;
  for (std::size_t i = 0; i < text.size();) {
    const auto sign = std::find_if(std::begin(kLong), std::end(kLong), [&](const auto& pair) {
      return text.compare(i, std::char_traits<char>::length(pair.first), pair.first) == 0;
    });
    if (sign != std::end(kLong)) {
      signs += sign->second;
      i += std::char_traits<char>::length(sign->first);
      continue;
    }
    char c = text[i++];
    if (c == ' ' || c == '\n') continue;
    if (c == 'O' || c == 'o') c = '0';
    if (c == 'l' || c == 'I' || c == '|') c = '1';
    if (c == 'E') c = 'e';
    if (c == 'X') c = 'x';
    if (c == '~' || c == '_') c = '-';
    signs += c;
  }
  return signs;
}

}  // namespace

WordReading SecondReader::Read(const LabelPage& page, const Word& word) {
  WordReading reading;
  if (!missing_.empty() || word.Glyphs.empty()) return reading;
  try {
    const auto read = [&](const std::vector<Glyph>& glyphs, double height) {
      std::string text;
      for (const double size : kDigitHeights)
        if (text = InOurSigns(reader_(LineOf(page, glyphs, height, size))); !text.empty()) break;
      return text;
    };
    reading.Text = read(word.Glyphs, word.Height);
    if (!word.Exponent.empty()) reading.Exponent = read(word.Exponent, word.ExponentHeight);
  } catch (const RunTimeError& error) {
    missing_ = error.what();
  }
  return reading;
}

}  // namespace graphize
