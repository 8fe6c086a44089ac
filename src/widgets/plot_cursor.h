#pragma once

#include <QCursor>
#include <QString>

class QPixmap;

namespace graphize {

/// The cursors a person can choose for the picture, 0 .. kPlotCursors - 1. The third of each shape
/// has a light core in a dark edge: it stands out from every colour beneath it.
inline constexpr int kPlotCursors = 15;

/// Drawn sharp at `ratio` device pixels per logical pixel.
QPixmap PlotCursorPicture(int index, double ratio);
/// What it looks like, in words.
QString PlotCursorName(int index);

/// The cursor of the setting CursorType: k is the k-th of the pictures, counted from 1. 0, and a
/// number without a picture, is the desktop's own cross.
QCursor PlotCursor(int CursorType, double ratio);

}  // namespace graphize
