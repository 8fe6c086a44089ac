#pragma once

#include <string>

#include "batch/arguments.h"
#include "batch/batch.h"
#include "finding_axes/propose_axes.h"

namespace graphize {

/// What `axes` prints of a proposal: one JSON object, or lines for people.
std::string ProposalJson(const AxesProposal& proposal);
std::string ProposalText(const AxesProposal& proposal);

/// Whether nobody has to confirm it: it is sure, or only its scale was in question and was chosen.
bool IsSettled(const AxesProposal& proposal);
/// "X: a second scale; Y: ...": why a proposal is not settled.
std::string WhyNotSettled(const AxesProposal& proposal);

/// What --plot=N, --x-scale=N and --y-scale=N ask for. Throws UsageError.
AxesChoice AxesChoiceOf(const CommandLine& line);
/// ProposeAxes; a plot or scale that the picture does not have is a RunTimeError.
AxesProposal ProposeChosenAxes(const Raster& picture, const AxesChoice& choice);

/// Proposes axes of one picture and prints what was found: true whatever the verdict is. Throws
/// UsageError, and RunTimeError for a picture that cannot be read.
bool PrintAxes(const CommandLine& line, const BatchStreams& streams);

}  // namespace graphize
