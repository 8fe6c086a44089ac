#pragma once

#include <array>
#include <cstdint>

#include "capture/point_set.h"

namespace graphize {

inline constexpr int kPageLines = 5;

/// The data list panel: five lines and a scroll bar over the point list. Lines hold 1-based point
/// numbers, 0 for an empty line; their texts are made when they are shown (data/list_text.h).
struct ListPage {
  struct Line {
    int Point = 0;
    bool Highlighted = false;
    bool Pointed = false;  // its point lies under the pointer

    bool operator==(const Line&) const = default;
  };
  std::array<Line, kPageLines> Lines;
  int ScrollValue = 1;  // the point on the first line when the scroll bar is enabled
  int ScrollMaximum = 1;
  bool ScrollEnabled = false;
  std::int16_t SelectionStart = 0;  // 1-based, inclusive; end < start is an empty selection
  std::int16_t SelectionEnd = -1;
  bool SelectionActive = false;  // made with a plain click
  PointSet Points;               // that are selected: of the rows, or chosen on the picture
  int PointedRow = 0;            // 1-based: of the point under the pointer; 0: none

  bool operator==(const ListPage&) const = default;
};

/// Redraws the lines from the scroll position.
void ShowPage(ListPage& page, int listCount);
/// The newest points, the last one on the last used line; clears the selection.
void ShowNewest(ListPage& page, int listCount);
/// Five empty lines and no selection.
void ClearList(ListPage& page);
/// A press on line i (0..4); with Shift it moves the selection's end.
void SelectLine(ListPage& page, int listCount, int line, bool shift);
/// A key on line i moves the selection's end by so many rows, with `extend` its end alone, and into
/// view; without a selection it selects the line.
void StepSelection(ListPage& page, int listCount, int line, int by, bool extend);
/// Scrolls no further than it takes to bring the row into sight.
void ScrollToRow(ListPage& page, int listCount, int row);
/// The scroll bar's range for a list of this length.
void FitScrollBar(ListPage& page, int listCount);
void ResetSelection(ListPage& page);

}  // namespace graphize
