#pragma once

#include <string_view>

namespace graphize::accuracy {

/// Prints the table of symbols found from one click, eight plots of each family from the first seed
/// on; of the families with `part` in their names; how many miss their target.
int PrintSymbolTable(unsigned firstSeed, std::string_view part = "");

}  // namespace graphize::accuracy
