#include "finding_axes/label_page.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "finding_axes/label_text.h"

namespace graphize {

namespace {

/// A tick of an axis without a line stands beside a label as a minus does; behind a number there is
/// none. What else has got behind it is no digit.
void DropTickBehind(Word& word) {
  const auto isTick = [&](const Glyph& glyph) {
    const double above = word.Baseline - glyph.Box.MiddleY();
    return glyph.Box.Height() <= 0.4 * word.Height &&
           glyph.Box.Width() >= 1.2 * glyph.Box.Height() && above >= 0.2 * word.Height &&
           above <= 0.85 * word.Height;
  };
  const auto isDigit = [&](const Glyph& glyph) { return glyph.Box.Height() >= 0.6 * word.Height; };
  std::size_t digits = word.Glyphs.size();
  while (digits > 0 && !isDigit(word.Glyphs[digits - 1])) --digits;
  const auto tick = std::find_if(word.Glyphs.begin() + static_cast<std::ptrdiff_t>(digits),
                                 word.Glyphs.end(), isTick);
  if (digits == 0 || tick == word.Glyphs.end()) return;
  const int from = tick->Box.Left;
  const auto isBehind = [&](const Glyph& glyph) { return glyph.Box.Left >= from; };
  if (std::any_of(word.Exponent.begin(), word.Exponent.end(), [&](const Glyph& glyph) {
        return isBehind(glyph) && glyph.Box.Height() > 0.4 * word.Height;
      }))
    return;
  for (auto* glyphs : {&word.Glyphs, &word.Exponent}) std::erase_if(*glyphs, isBehind);
  word.Box = word.Glyphs.front().Box;
  for (const auto* glyphs : {&word.Glyphs, &word.Exponent})
    for (const Glyph& glyph : *glyphs) word.Box.Add(glyph.Box);
}

/// Columns where a glyph has least ink, between which it may be several.
std::vector<int> CutsOf(const LabelPage& page, const Glyph& glyph) {
  const InkBox& box = glyph.Box;
  std::vector<int> sums(box.Width());
  for (int x = box.Left; x <= box.Right; ++x)
    for (int y = box.Top; y <= box.Bottom; ++y) sums[x - box.Left] += page.Ink.At(x, y);
  std::vector<int> cuts;
  for (int i = 2; i + 2 < static_cast<int>(sums.size()); ++i)
    if (sums[i] <= sums[i - 1] && sums[i] < sums[i + 1]) cuts.push_back(box.Left + i);
  return cuts;
}

/// Digits that touch, parted where all parts read best: dynamic programming over the cuts (Casey
/// and Lecolinet 1996). A glyph that does not read better in parts stays.
std::vector<Glyph> Parted(const LabelPage& page, const Glyph& glyph, GlyphLine line) {
  const std::vector<int> cuts = CutsOf(page, glyph);
  if (cuts.empty() || cuts.size() > 24) return {glyph};
  const auto part = [&](int from, int to) {
    Glyph piece = glyph;
    piece.Box.Left = from;
    piece.Box.Right = to;
    return piece;
  };
  // The first may be a sign.
  const auto doubtOf = [&](const Glyph& piece, bool isFirst) {
    const GlyphReading read = ReadGlyph(NormaliseGlyph(page.Ink, page.Pieces, piece, line));
    const bool isDigit = read.Sign >= '0' && read.Sign <= '9';
    // But for 1, digits are as wide as half their height.
    const bool narrow = piece.Box.Width() < 0.42 * line.Height;
    const bool isSign = (read.Sign == '.' && narrow) || (read.Sign == '-' && isFirst);
    if (!(isDigit || isSign) || (isDigit && narrow && read.Sign != '1')) return 8.0f;
    return -std::log(std::max(read.Share, 1e-6f));
  };
  // Ends of parts: the cuts, and the glyph's own.
  std::vector<int> ends = {glyph.Box.Left - 1};
  ends.insert(ends.end(), cuts.begin(), cuts.end());
  ends.push_back(glyph.Box.Right);
  std::vector<float> least(ends.size(), 1e9f);
  std::vector<std::size_t> before(ends.size(), 0);
  least[0] = 0;
  for (std::size_t j = 1; j < ends.size(); ++j)
    for (std::size_t i = 0; i < j; ++i) {
      const double width = ends[j] - ends[i];
      if (width < 0.15 * line.Height || width > 1.05 * line.Height || least[i] > 1e8f) continue;
      const float doubt = least[i] + doubtOf(part(ends[i] + 1, ends[j]), i == 0);
      if (doubt < least[j]) {
        least[j] = doubt;
        before[j] = i;
      }
    }
  if (least.back() > 2) return {glyph};
  std::vector<Glyph> parts;
  for (std::size_t j = ends.size() - 1; j > 0; j = before[j])
    parts.insert(parts.begin(), part(ends[before[j]] + 1, ends[j]));
  return parts;
}

/// The ink of a piece in a box, drawn in to where there is any.
InkBox DrawnIn(const LabelPage& page, int piece, const InkBox& box) {
  InkBox drawn;
  bool some = false;
  for (int y = box.Top; y <= box.Bottom; ++y)
    for (int x = box.Left; x <= box.Right; ++x) {
      if (page.Pieces.Labels[static_cast<std::size_t>(y) * page.Ink.Width + x] != piece + 1)
        continue;
      if (!std::exchange(some, true)) drawn = {x, y, x, y};
      drawn.Add({x, y, x, y});
    }
  return drawn;
}

/// The last digit before an exponent that touches it, apart from that: the "1" of "10" tells how
/// high digits are.
void SplitRaised(const LabelPage& page, Word& word) {
  if (word.Glyphs.size() < 2) return;
  const InkBox& first = word.Glyphs.front().Box;
  const double h = first.Height();
  std::size_t at = 1;
  while (at < word.Glyphs.size() && word.Glyphs[at].Box.Height() < 1.12 * h) ++at;
  if (at == word.Glyphs.size()) return;
  const Glyph whole = word.Glyphs[at];
  if (whole.Pieces.size() != 1 || whole.Box.Height() > 1.9 * h || whole.Box.Width() < 0.8 * h ||
      std::abs(whole.Box.Bottom - first.Bottom) > std::max(0.15 * h, 1.0))
    return;
  const int piece = whole.Pieces.front();
  float most = 0.5;
  Glyph digit, raised;
  for (int cut = whole.Box.Left + static_cast<int>(0.4 * h); cut < whole.Box.Left + h; ++cut) {
    Glyph left = whole, right = whole;
    left.Box =
        DrawnIn(page, piece,
                {whole.Box.Left, first.Top - static_cast<int>(0.08 * h), cut, whole.Box.Bottom});
    right.Box = DrawnIn(page, piece, {cut + 1, whole.Box.Top, whole.Box.Right, whole.Box.Bottom});
    if (right.Box.Height() < 4 || right.Box.Bottom > first.Bottom - 0.22 * h) continue;
    const GlyphReading base = ReadGlyph(
        NormaliseGlyph(page.Ink, page.Pieces, left, {static_cast<double>(first.Bottom), h}));
    if (base.Sign != '0' || base.Share <= most) continue;
    most = base.Share;
    digit = left;
    raised = right;
  }
  if (digit.Pieces.empty()) return;
  std::vector<Glyph> exponent = {raised};
  for (std::size_t i = at + 1; i < word.Glyphs.size(); ++i) {
    if (word.Glyphs[i].Box.Bottom > first.Bottom - 0.22 * h) return;
    exponent.push_back(word.Glyphs[i]);
  }
  exponent.insert(exponent.end(), word.Exponent.begin(), word.Exponent.end());
  word.Glyphs.resize(at);
  word.Glyphs.push_back(digit);
  word.Exponent = std::move(exponent);
  word.Height = h;
  word.Baseline = first.Bottom;
  word.ExponentHeight = raised.Box.Height();
  word.ExponentBaseline = raised.Box.Bottom;
}

void SplitTouching(const LabelPage& page, Word& word) {
  std::vector<Glyph> glyphs;
  for (const Glyph& glyph : word.Glyphs) {
    const bool wide =
        glyph.Box.Width() > 0.95 * word.Height && glyph.Box.Height() > 0.7 * word.Height;
    if (!wide) {
      glyphs.push_back(glyph);
      continue;
    }
    for (Glyph& part : Parted(page, glyph, {word.Baseline, word.Height}))
      glyphs.push_back(std::move(part));
  }
  word.Glyphs = std::move(glyphs);
}

}  // namespace

LabelPage ReadPage(InkImage upright, double part, PictureOperation& operation) {
  LabelPage page;
  page.Ink = std::move(upright);
  page.Lines = FindLongLines(page.Ink);
  if (operation.Stopped) return {};
  page.Pieces = FindPieces(page.Ink, part);
  // No label is longer; titles and legends are not read to their end.
  constexpr std::size_t kLongest = 12;
  for (Word& word : FindWords(page.Ink, page.Pieces)) {
    if (operation.Stopped) return {};
    ReadWordRecord record;
    record.Is = std::move(word);
    if (record.Is.Glyphs.size() + record.Is.Exponent.size() <= kLongest) {
      DropTickBehind(record.Is);
      SplitRaised(page, record.Is);
      SplitTouching(page, record.Is);
      record.Reading = ReadWord(page.Ink, page.Pieces, record.Is);
      record.Meanings = MeaningsOf(record.Reading.Text, record.Reading.Exponent);
    }
    page.Words.push_back(std::move(record));
  }
  return page;
}

}  // namespace graphize
