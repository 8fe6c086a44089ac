#pragma once

namespace graphize::accuracy {

/// Prints what one click reads of every family of plots, six of each, as a table. How many
/// families miss their target.
int PrintReadTable();

}  // namespace graphize::accuracy
