#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/tokens.h"
#include "batch/arguments.h"
#include "batch/job.h"
#include "workspace/step.h"

namespace graphize {

// What the texts behind options mean. Whatever is none of it is a UsageError that names the option.

/// UsageError: the option's value, and what is expected or wrong.
[[noreturn]] void Refuse(const GivenOption& option, const std::string& expected);

std::vector<std::string> Split(const std::string& text, char separator);
/// What stands before and behind the first colon.
std::pair<std::string, std::string> SplitOff(const std::string& text);

/// A whole number, 0 to 32766; `expected` is said where the text is no such number at all.
int NumberOf(const GivenOption& option, const std::string& text, const char* expected);

/// So many numbers, 0 to 32766, with commas between: "140,220".
template <std::size_t Count>
std::array<int, Count> Numbers(const GivenOption& option, const std::string& text,
                               const char* expected) {
  const std::vector<std::string> parts = Split(text, ',');
  if (parts.size() != Count) Refuse(option, expected);
  std::array<int, Count> numbers{};
  for (std::size_t i = 0; i < Count; ++i) {
    numbers[i] = NumberOf(option, parts[i], expected);
  }
  return numbers;
}

/// "140,220", a pixel of a picture.
PlotPixel PixelOf(const GivenOption& option, const std::string& text,
                  const char* expected = "COLUMN,ROW in whole pixels is expected");

/// The option's "COLUMN,ROW" or "COLUMN,ROW:SIZE"; without a size 4.
std::pair<PlotPixel, int> SizedPixelOf(const GivenOption& option);

/// A number that single precision can hold.
float SingleOf(const GivenOption& option, const std::string& text);

/// The option's "COLUMN,ROW:VALUE", with `count` values; each is a number, given as it was typed.
std::pair<PlotPixel, std::vector<std::string>> AxisPointOf(const GivenOption& option,
                                                           std::size_t count, const char* expected);

/// The option's "half", "quarter" or "LEFT,TOP,WIDTH,HEIGHT", as it was typed.
std::string PartOf(const GivenOption& option);

/// "10", "bends" or "x=1,2": how densely a curve is read.
ReadingDensity DensityOf(const GivenOption& option, const std::string& text);

/// The option's one value, or one for X and one for Y.
std::array<std::string, 2> ForBothAxes(const GivenOption& option);

/// A message's sentence as a part of another: "a curve needs a name".
std::string AsClause(std::string sentence);

/// What --format says, else the ending of the output's name; nothing where neither is known.
std::optional<TableFormat> TableFormatOf(const CommandLine& line);

}  // namespace graphize
