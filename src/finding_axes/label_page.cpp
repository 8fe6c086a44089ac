#include "finding_axes/label_page.h"

#include <algorithm>

#include "finding_axes/label_text.h"

namespace graphize {

namespace {

/// A tick of an axis without a line stands before or behind a label as a minus does; behind a
/// number there is none.
void DropTickBehind(ReadWordRecord& record) {
  std::string& text = record.Reading.Text;
  if (record.Is.Exponent.empty() && text.size() > 1 && text.back() == '-') {
    text.pop_back();
    record.Is.Glyphs.pop_back();
    record.Is.Box = record.Is.Glyphs.front().Box;
    for (const Glyph& glyph : record.Is.Glyphs) record.Is.Box.Add(glyph.Box);
  }
}

}  // namespace

LabelPage ReadPage(InkImage upright, PictureOperation& operation) {
  LabelPage page;
  page.Ink = std::move(upright);
  page.Lines = FindLongLines(page.Ink);
  if (operation.Stopped) return {};
  page.Pieces = FindPieces(page.Ink);
  // No label is longer; titles and legends are not read to their end.
  constexpr std::size_t kLongest = 12;
  for (Word& word : FindWords(page.Ink, page.Pieces)) {
    if (operation.Stopped) return {};
    ReadWordRecord record;
    record.Is = std::move(word);
    if (record.Is.Glyphs.size() + record.Is.Exponent.size() <= kLongest) {
      record.Reading = ReadWord(page.Ink, page.Pieces, record.Is);
      DropTickBehind(record);
      record.Meanings = MeaningsOf(record.Reading.Text, record.Reading.Exponent);
    }
    page.Words.push_back(std::move(record));
  }
  return page;
}

}  // namespace graphize
