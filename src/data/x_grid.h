#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace graphize {

inline constexpr int kMostGridX = 100000;

/// X values as a person types them.
struct XGrid {
  std::vector<double> Values;  // as typed, in that order
  std::string Fault;           // what is wrong, in plain words; empty: nothing is
};

/// Numbers with commas, semicolons or blanks between them, and ranges "first:step:last" with commas
/// or semicolons around; the last value of a range is there when steps lead to it. The values of a
/// range are the decimal numbers that counting gives: 0:0.1:1 has 0.3. No text is no value.
XGrid ReadXGrid(std::string_view text);

}  // namespace graphize
