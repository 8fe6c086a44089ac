#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// The words of a line, which blanks separate. A word in double quotes may hold blanks, and \",
/// \\ and \n stand for a quote, a backslash and a line's end in it. Nothing when a quoted word does
/// not end.
std::optional<std::vector<std::string>> Tokenize(std::string_view line);

/// `text` as one word of a line: in quotes where it would not be one without.
std::string Quote(std::string_view text);

/// The number that the whole text is, nothing for any other: "12", "-1.5e3", no blanks, no sign but
/// minus; finite.
std::optional<double> WholeNumberText(std::string_view text);
/// The same for an integer from `least` to `most`.
std::optional<int> IntegerText(std::string_view text, int least, int most);

/// Whether `a` stands before `b` where digits that follow each other are a number: "page2.tif"
/// before "page10.tif".
bool NumbersInOrder(std::string_view a, std::string_view b);

}  // namespace graphize
