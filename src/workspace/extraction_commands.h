#pragma once

#include <optional>
#include <string>

#include "desktop/desktop.h"
#include "grid/grid_lines.h"
#include "tracing/extraction_context.h"
#include "workspace/workspace.h"

namespace graphize {

/// The records that tracers and scan work on.
ExtractionContext ExtractionOf(Workspace& ws, const Desktop& desktop);

/// Whether a right press starts an extraction: a picture, an axis, and a mode for it.
bool CanExtract(const Workspace& ws);
/// Runs the tracer of the settings from a picture position (row downward).
void Trace(Workspace& ws, const Desktop& desktop, float x, float y);
void ScanArea(Workspace& ws, const Desktop& desktop, const ScanRectangle& area);
/// Scans the rectangle that was dragged, when it is one to scan; the rubber band goes.
void FinishScanRectangle(Workspace& ws, const Desktop& desktop);

/// The left button's click in blocker mode: one blocker at the cursor.
void PlaceBlocker(Workspace& ws);
void RemoveLastBlocker(Workspace& ws);
void RemoveAllBlockers(Workspace& ws);
bool CanRemoveBlockers(const Workspace& ws);

/// A press of the pen at a picture position.
void UsePen(Workspace& ws, PenTool tool, float x, float y, int size);

/// A press in grid mode at a picture position: removes the grid line of that direction nearest to
/// it, or all of that direction.
void BustGrid(Workspace& ws, const Desktop& desktop, GridDirection direction, bool all, float x,
              float y);

/// The picture as it was before the last erasure, drawing or grid removal.
void UndoErase(Workspace& ws);
bool CanUndoErase(const Workspace& ws);

/// Offers the reduction to black and white of a picture that has other colours, before it is shown;
/// `reduce` is the answer where it is known already. True when it was reduced.
bool OfferBlackAndWhite(Workspace& ws, const Desktop& desktop, Raster& picture,
                        std::optional<bool> reduce = {});

/// The text of an increment box, stepped by its arrows: whole numbers from 0.
void StepIncrement(std::string& text, int step);

}  // namespace graphize
