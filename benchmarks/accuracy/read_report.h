#pragma once

#include <string_view>

namespace graphize::accuracy {

/// Prints what one click reads of every family of plots, six of each from the first seed on, and
/// what both tracers make of them, as a table. How many families miss their target.
int PrintReadTable(unsigned firstSeed, std::string_view part = "");

}  // namespace graphize::accuracy
