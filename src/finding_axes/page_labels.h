#pragma once

#include <vector>

#include "base/affine_map.h"
#include "finding_axes/page_lines.h"
#include "finding_axes/words.h"

namespace graphize {

/// What is written beside an axis of a page, to be found again on others.
struct PageLabel {
  bool IsOfX = false;  // below or above the plot; else beside it
  InkBox Box;          // on the upright page
  double Height = 0;   // of its digits
  std::vector<InkBox> Glyphs;
  InkBox Around;  // with what might be written before and behind it
};

struct PageLabels {
  std::vector<PageLabel> Labels;
  // Above the plot beside the Y axis, and beyond the end of the X axis: where factors are printed.
  std::vector<InkBox> Ends;
};

/// The numbers outside of the outermost lines; of an axis without any, other words beside it.
PageLabels PageLabelsOf(const UprightPage& page, const HeldLines& lines,
                        PictureOperation& operation);

/// The labels of one axis on another page.
struct LabelCount {
  int All = 0;
  int Hidden = 0;  // beyond the edge of the other page
  int Unlike = 0;  // others stand there
};
struct LabelCounts {
  LabelCount X, Y;
  bool HasMoreAtEnds = false;  // the other page has something written there that this one has not
};
/// `map` leads from the ink of the page that has the labels to that of the other. A label is unlike
/// when the ink of one of its signs correlates less than what is usual on that page, or when there
/// is more beside it.
LabelCounts CountUnlike(const PageLabels& labels, const UprightPage& page, const InkImage& other,
                        const AffineMap& map);

}  // namespace graphize
