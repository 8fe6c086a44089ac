#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace graphize {

/// A line of text as grey levels, dark on light, row by row.
struct TextLine {
  int Width = 0, Height = 0;
  std::vector<std::uint8_t> Grey;
};

/// Throws RunTimeError where it cannot read at all.
using TextLineReader = std::function<std::string(const TextLine&)>;

/// Reads one line with the computer's own text recogniser; several threads may ask at a time.
/// RunTimeError where there is none, or without its English data.
std::string ReadTextLine(const TextLine& line);

/// What the module graphize_text.so offers under the name `GraphizeText`.
struct TextReaderModule {
  decltype(&ReadTextLine) Read;
};

}  // namespace graphize
