#pragma once

#include <string>
#include <vector>

namespace graphize {

/// The numbers that a label may mean: none for what is no number, two for "1,000" (a thousand, or
/// one with three decimals). An exponent counts where it stands raised: "10" with "3", "5x10" with
/// "-2".
std::vector<double> MeaningsOf(const std::string& text, const std::string& exponent);

/// "10^3"
std::string ShownLabel(const std::string& text, const std::string& exponent);

/// Why the text alone may not be what is printed, such as "05", whose point may have been lost;
/// nullptr for most.
const char* TextDoubt(const std::string& text);

}  // namespace graphize
