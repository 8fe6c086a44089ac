#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/picture_reading.h"
#include "desktop/desktop.h"
#include "reading/read_curve.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// How well the place of a point that was read is known.
Certainty CertaintyOf(const CurvePoint& point);

std::vector<ReadPlace> PlacesOf(const std::vector<CurvePoint>& points);

/// Why there is nothing to read; absent where ReadAt can be asked.
std::optional<Outcome> ReadingRefused(const Workspace& ws, const ReadStep& step);

/// The reading that the step would take, with what was taken for the curve's ink
/// (CurveReading::Map), for looking at it first: off the picture without marks, with the blockers
/// for walls, thinned to the step's density. No point is captured, and nothing is noted. Shows
/// progress and stops on Escape; a refusal is in the reading.
CurveReading ReadAt(Workspace& ws, const Desktop& desktop, const ReadStep& step);
/// How sure a reading with points is, in plain words.
std::string HowSure(const CurveReading& reading);
/// That the curve has no point at these X; names the first of them. Empty without any.
std::string NoPointAt(const std::vector<float>& xs);

/// Reads the curve at a picture position, off the picture without marks and with the blockers for
/// walls, and captures its points; the reading that is shown (CurvePreview) is taken as it is.
/// Refused with what was found there where that is no curve; Escape captures nothing.
Outcome Run(Workspace& ws, const Desktop& desktop, const ReadStep& step);

}  // namespace graphize
