#pragma once

#include "calibration/axis_calibration.h"
#include "desktop/desktop.h"
#include "desktop/status_bar.h"
#include "grid/black_map.h"
#include "raster/plot_image.h"

namespace graphize {

/// What a removal did.
struct GridRemoval {
  int Lines = 0;         // that were removed
  int Pixels = 0;        // that became white
  bool Stopped = false;  // by Escape: some lines may be left
};

/// Removes grid lines of one direction from the picture: the one nearest to the picture pixel
/// (x, y), or, when `all` is set, every one that is found along the calibrated angle. The axis line
/// and the frame are removed by `all` only when (x, y) lies on one of them, within a few pixels.
///
/// Works as staves are removed from scanned music: lines are found by dynamic programming on a
/// sheared map of thin runs (line_paths.h), told from data by their evidence (grid_evidence.h,
/// plot_frame.h), and taken out but for the strokes that cross them (stroke_protection.h). In a
/// picture that was reduced to black and white a line is also looked for where it came out in
/// specks.
///
/// Exactly black pixels become white; curves that cross or touch a line keep theirs. The removal is
/// one step for UndoEdit and clears the marks, but only when there is something to remove. The
/// result is told in the panel "status". Refused with a message without a complete calibration.
GridRemoval RemoveGridLines(PlotImage& image, const AxisCalibration& calibration,
                            const Desktop& desktop, StatusBar& status, GridDirection direction,
                            bool all, int x, int y);

}  // namespace graphize
