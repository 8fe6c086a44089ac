#pragma once

#include <string>

#include "finding_axes/label_page.h"

namespace graphize {

/// What the computer's text recogniser makes of labels that our own reader has read.
class SecondReader {
 public:
  /// Whether it reads the same, digit by digit and sign by sign; false where there is none.
  bool ReadsAlike(const LabelPage& page, const ReadWordRecord& word);
  /// Why there is none; empty while there is one.
  const std::string& Missing() const { return missing_; }

 private:
  bool IsAlike(const LabelPage& page, const std::vector<Glyph>& glyphs, GlyphLine line,
               const std::string& text);

  std::string missing_;
};

}  // namespace graphize
