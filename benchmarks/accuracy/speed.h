#pragma once

namespace graphize::accuracy {

/// How many times the bare reads of its pixels a trace takes that captures the centre of every
/// column, without list refresh and window.
double TraceTimePerBareReads();

}  // namespace graphize::accuracy
