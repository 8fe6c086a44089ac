#pragma once

#include <string>
#include <vector>

#include "batch/job.h"
#include "workspace/workspace.h"

namespace graphize {

/// Rows of all curves.
int RowsOf(const Workspace& ws);
/// Whether there is anything for a table of that format, which may hold the active curve alone.
bool HasRows(const Workspace& ws, TableFormat format);

/// The content of the file that a job writes. `saved`: the last step has saved the active curve, so
/// that this is what is wanted. RunTimeError where a data file would have to hold several.
std::string MakeTable(Workspace& ws, const JobOptions& options, bool saved,
                      std::vector<std::string>& notes);

}  // namespace graphize
