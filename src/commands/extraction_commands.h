#pragma once

#include <string>

#include "desktop/desktop.h"
#include "grid/grid_lines.h"
#include "tracing/extraction_context.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// The records that tracers and scan work on.
ExtractionContext ExtractionOf(Workspace& ws, const Desktop& desktop);

/// Whether a right press starts an extraction: a picture, an axis, and a mode for it.
bool CanExtract(const Workspace& ws);
/// Why nothing can be done at this picture position, which lies outside; absent where it can.
std::optional<Outcome> RefusedAt(const Workspace& ws, float x, float y);

/// Runs the tracer of the settings, or the scan. Refused unless CanExtract.
Outcome Run(Workspace& ws, const Desktop& desktop, TraceStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, ScanStep& step);
/// Scans the rectangle that was dragged, when it is one to scan; the rubber band goes.
void FinishScanRectangle(Workspace& ws, const Desktop& desktop);

/// The left button's click in blocker mode: one blocker at the cursor.
void PlaceBlocker(Workspace& ws, const Desktop& desktop);
Outcome Run(Workspace& ws, const Desktop& desktop, const BlockStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const ClearLastBlockerStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const ClearBlockersStep& step);
bool CanRemoveBlockers(const Workspace& ws);

/// A press of the pen at a picture position.
void UsePen(Workspace& ws, PenTool tool, float x, float y, int size);

/// The pen's whole way at once.
Outcome Run(Workspace& ws, const Desktop& desktop, const DrawStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const EraseStep& step);

/// Removes the grid line of that direction nearest to the position, or all of that direction.
Outcome Run(Workspace& ws, const Desktop& desktop, GridStep& step);

/// The picture as it was before the last erasure, drawing or grid removal.
Outcome Run(Workspace& ws, const Desktop& desktop, const UndoEditStep& step);
bool CanUndoErase(const Workspace& ws);

/// The text of an increment box, stepped by its arrows: whole numbers from 0.
void StepIncrement(std::string& text, int step);

}  // namespace graphize
