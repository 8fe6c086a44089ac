#pragma once

#include <string>

#include "finding_axes/label_page.h"

namespace graphize {

/// What the computer's text recogniser makes of words that our own reader has read.
class SecondReader {
 public:
  /// In our signs; nothing where there is no recogniser.
  WordReading Read(const LabelPage& page, const Word& word);
  /// Why there is none; empty while there is one.
  const std::string& Missing() const { return missing_; }

 private:
  std::string missing_;
};

}  // namespace graphize
