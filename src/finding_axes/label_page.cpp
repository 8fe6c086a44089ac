#include "finding_axes/label_page.h"

#include <algorithm>
#include <cmath>

#include "finding_axes/label_text.h"

namespace graphize {

namespace {

/// A tick of an axis without a line stands beside a label as a minus does; behind a number there is
/// none.
void DropTickBehind(Word& word) {
  if (word.Glyphs.size() < 2) return;
  const InkBox& last = word.Glyphs.back().Box;
  const double above = word.Baseline - last.MiddleY();
  const bool isBehind = word.Exponent.empty() || last.Left > word.Exponent.back().Box.Right;
  if (!isBehind || last.Height() > 0.4 * word.Height || last.Width() < 1.5 * last.Height() ||
      above < 0.2 * word.Height || above > 0.85 * word.Height)
    return;
  word.Glyphs.pop_back();
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
  const auto doubtOf = [&](const Glyph& piece) {
    const GlyphReading read = ReadGlyph(NormaliseGlyph(page.Ink, page.Pieces, piece, line));
    return read.Sign >= '0' && read.Sign <= '9' ? -std::log(std::max(read.Share, 1e-6f)) : 8.0f;
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
      if (width < 0.25 * line.Height || width > 1.05 * line.Height || least[i] > 1e8f) continue;
      const float doubt = least[i] + doubtOf(part(ends[i] + 1, ends[j]));
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
      SplitTouching(page, record.Is);
      record.Reading = ReadWord(page.Ink, page.Pieces, record.Is);
      record.Meanings = MeaningsOf(record.Reading.Text, record.Reading.Exponent);
    }
    page.Words.push_back(std::move(record));
  }
  return page;
}

}  // namespace graphize
