#pragma once

namespace graphize::accuracy {

/// Prints the table of symbols found from one click; how many families miss their target.
int PrintSymbolTable();

}  // namespace graphize::accuracy
