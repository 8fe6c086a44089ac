#pragma once

#include <optional>
#include <span>
#include <string>

#include "finding_axes/register_page.h"

namespace graphize {

/// What came of one picture of a run.
struct PageOutcome {
  /// Refused: the page does not fit the calibrated one. Failed: anything else went wrong.
  enum class How { Done, Doubtful, Refused, Failed };
  std::string Picture;
  How Is = How::Done;
  int Points = 0;
  std::optional<PageRegistration> Registration;
  std::string Reason;  // for all but Done

  bool IsDone() const { return Is == How::Done || Is == How::Doubtful; }
};
/// "done", "doubtful", "refused", "failed"
const char* NameOf(PageOutcome::How how);

/// A line for each picture: picture,state,points,worst_residual,shift_x,shift_y,turn,scale,reason;
/// lengths in pixels of the page, downward, the turn in degrees, clockwise. What is not known is
/// empty.
std::string ReportCsv(std::span<const PageOutcome> pages);
/// The same as a JSON list of objects, with null for what is not known.
std::string ReportJson(std::span<const PageOutcome> pages);

}  // namespace graphize
