#pragma once

#include <cstdint>
#include <optional>

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

inline constexpr int kLeftButton = 1, kRightButton = 2;
inline constexpr int kShiftKey = 1, kCtrlKey = 2;

/// The mouse over the picture; X and Y in picture pixels, row downward from the top.
void Plot_MouseMove(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X, float Y);
void Plot_MouseDown(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X, float Y);
void Plot_MouseUp(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X, float Y);
/// Ends what a press on the picture has begun, without finishing it: its release went elsewhere, a
/// menu or key changes the picture meanwhile, or Escape cancels it.
void EndDrag(Workspace& ws);
/// Ends a drag whose release alone would change something. False without one.
bool GiveUpDrag(Workspace& ws);
/// A left button released over the plot that was pressed there, or Enter: acts on the position that
/// the last move or the snapping has left.
void Plot_Click(Workspace& ws, const Desktop& desktop);
/// The click of a double click's second press: as any other, but in "axisdef", where the next row
/// would be defined on the same pixel, it does nothing.
void Plot_DblClick(Workspace& ws, const Desktop& desktop);

/// The pointer is over the picture, perhaps without having moved: a window above it has gone. The
/// read-out follows, what the status panel says stays.
void Plot_MouseEnter(Workspace& ws, const Desktop& desktop, float X, float Y);
void Plot_MouseLeave(Workspace& ws);

/// The read-out at a picture position. What makes it impossible there, such as the values of a log
/// axis, is told in a box once, then in the status panel until the pointer has left the picture.
void ReadPlot(Workspace& ws, const Desktop& desktop, float X, float Y);

/// An axis point, and a point: at the position as it is, or as the press's snapping leads it.
Outcome Run(Workspace& ws, const Desktop& desktop, AxisStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const CaptureStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const PointStep& step);

/// The pixel that a press here would capture, where snapping leads to another one.
std::optional<PlotPixel> SnapAhead(const Workspace& ws);

/// A key pressed while the pointer is over the plot; true when it moved the pointer. Unless Ctrl
/// alone is held (ten pixels), the step is one pixel.
enum class PointerKey { PageUp, PageDown, End, Home, Left, Up, Right, Down };
bool MovePointerByKey(Workspace& ws, const Desktop& desktop, PointerKey key, int Shift);

/// Puts the pointer on the picture: where it was there last when that is in view, else in the
/// middle of what is.
void PutPointer(Workspace& ws, const Desktop& desktop);
bool CanPutPointer(const Workspace& ws);

/// The keys ">" and "<": the zoom factor one step up or down, held at the ends.
void StepZoom(Workspace& ws, int step);

}  // namespace graphize
