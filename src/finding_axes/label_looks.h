#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "finding_axes/find_axis.h"
#include "finding_axes/label_page.h"

namespace graphize {

/// One way of looking at an upright image.
struct LabelLook {
  double Part = 0;          // as FindPieces has it
  bool IsTurned = false;    // to the left, for what is written upward
  bool IsEnlarged = false;  // for small letters
};

/// An axis, and the page of the look at which it was found best, in whose pixels it is.
struct LookedAtAxis {
  FoundAxis Found;
  const LabelPage* Page = nullptr;       // absent where nothing was looked at
  AxisCourse There = AxisCourse::Level;  // its course on that page
  LabelLook How = {};
};

struct LookedAtAxes {
  LookedAtAxis X, Y;
  std::vector<std::unique_ptr<LabelPage>> Pages;  // that were looked at
};

/// Looks for both axes, of several scales for the chosen ones, as long as they are in doubt; at
/// what is written upward only for one of which nothing else was found. The words of their lasting
/// doubts lie on the upright image. A stopped operation gives some of it.
LookedAtAxes LookForAxes(const InkImage& upright, std::optional<int> xScale,
                         std::optional<int> yScale, PictureOperation& operation);

/// The boxes of an axis's labels on the upright image, `height` rows high.
std::vector<InkBox> LabelBoxes(const LookedAtAxis& axis, int height);

/// Of the doubts that last those go that rest on what are labels of an axis, `labels` on the
/// upright image; of one thing that several looks have seen one is told.
void TakeLastingDoubts(FoundAxis& axis, const std::vector<InkBox>& labels);

/// The axis comes to be in pixels of the upright image, on which it has this course; its labels'
/// words stay those of its page.
void BringUpright(LookedAtAxis& axis, AxisCourse course, int height);

}  // namespace graphize
