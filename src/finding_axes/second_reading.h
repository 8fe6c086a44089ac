#pragma once

#include <string>
#include <utility>

#include "finding_axes/label_page.h"
#include "finding_axes/text_reader.h"

namespace graphize {

/// What the computer's text recogniser makes of words that our own reader has read.
class SecondReader {
 public:
  explicit SecondReader(TextLineReader reader) : reader_(std::move(reader)) {}
  /// In our signs; nothing where there is no recogniser.
  WordReading Read(const LabelPage& page, const Word& word);
  /// Why there is none; empty while there is one.
  const std::string& Missing() const { return missing_; }

 private:
  TextLineReader reader_;
  std::string missing_;
};

}  // namespace graphize
