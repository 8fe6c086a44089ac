#include "capture/list_page.h"

#include <algorithm>

#include "base/numbers.h"

namespace graphize {

namespace {

void ShowFrom(ListPage& page, int listCount, int first) {
  const int used = std::min(kPageLines, listCount);
  for (int i = 0; i < kPageLines; ++i) {
    const int point = i < used ? first + i : 0;
    const bool selected = page.SelectionStart <= point && point <= page.SelectionEnd;
    page.Lines[i] = {point, point > 0 && selected, point > 0 && point == page.PointedRow};
  }
}

}  // namespace

void FitScrollBar(ListPage& page, int listCount) {
  page.ScrollMaximum = std::max(listCount - (kPageLines - 1), 1);
  page.ScrollEnabled = listCount > kPageLines;
  page.ScrollValue = std::clamp(page.ScrollValue, 1, page.ScrollMaximum);
}

void ResetSelection(ListPage& page) {
  page.SelectionStart = 0;
  page.SelectionEnd = -1;
  page.SelectionActive = false;
  page.Points = {};
  page.PointedRow = 0;
}

void ShowPage(ListPage& page, int listCount) {
  ShowFrom(page, listCount, page.ScrollEnabled ? page.ScrollValue : 1);
}

void ShowNewest(ListPage& page, int listCount) {
  FitScrollBar(page, listCount);
  page.ScrollValue = page.ScrollMaximum;
  ResetSelection(page);
  ShowFrom(page, listCount, std::max(listCount - (kPageLines - 1), 1));
}

void ClearList(ListPage& page) {
  page = ListPage{};
}

void SelectLine(ListPage& page, int listCount, int line, bool shift) {
  const int point = line + (page.ScrollEnabled ? page.ScrollValue : 1);
  // An empty line selects nothing that a later, longer list could take for its own.
  if (line < 0 || line >= kPageLines || point > listCount) return;
  page.SelectionEnd = ToInt16(point);
  if (!shift) {
    page.SelectionStart = ToInt16(point);
    page.SelectionActive = true;
  }
  ShowPage(page, listCount);
}

void StepSelection(ListPage& page, int listCount, int line, int by, bool extend) {
  if (line < 0 || line >= kPageLines || page.Lines[line].Point == 0) return;
  if (!page.SelectionActive) {
    page.SelectionStart = page.SelectionEnd = ToInt16(page.Lines[line].Point);
    page.SelectionActive = true;
  } else {
    page.SelectionEnd = ToInt16(std::clamp(page.SelectionEnd + by, 1, listCount));
    if (!extend) page.SelectionStart = page.SelectionEnd;
  }
  ScrollToRow(page, listCount, page.SelectionEnd);
}

void ScrollToRow(ListPage& page, int listCount, int row) {
  const int first = std::clamp(page.ScrollValue, row - (kPageLines - 1), row);
  page.ScrollValue = std::clamp(first, 1, page.ScrollMaximum);
  ShowPage(page, listCount);
}

}  // namespace graphize
