#pragma once

namespace graphize::accuracy {

/// Prints the table of symbols found from one click, eight plots of each family from the first seed
/// on; how many families miss their target.
int PrintSymbolTable(unsigned firstSeed);

}  // namespace graphize::accuracy
