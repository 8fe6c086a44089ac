#pragma once

#include <vector>

#include "finding_axes/glyph_reader.h"
#include "finding_axes/long_lines.h"
#include "finding_axes/words.h"
#include "raster/picture_operation.h"

namespace graphize {

/// A word with what it was read as and the numbers that may be meant.
struct ReadWordRecord {
  Word Is;
  WordReading Reading;
  std::vector<double> Meanings;
};

/// All that is written and drawn straight on an upright image.
struct LabelPage {
  InkImage Ink;
  LineSet Lines;
  InkPieces Pieces;
  std::vector<ReadWordRecord> Words;
};

/// `part` as FindPieces has it. Empty when stopped.
LabelPage ReadPage(InkImage upright, double part, PictureOperation& operation);

}  // namespace graphize
