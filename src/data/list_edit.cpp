#include "data/list_edit.h"

#include <algorithm>

#include "base/numbers.h"

namespace graphize {

bool CanClearSelected(const PointStore& store) {
  return store.ListIsCaptured && store.ListCount >= 1 && store.Page.SelectionActive;
}

void ClearSelected(PointStore& store) {
  const int start = store.Page.SelectionStart, end = store.Page.SelectionEnd;
  if (!CanClearSelected(store) || end < start || start < 1 || end > store.ListCount) return;
  for (auto* array : {&store.CaptureX, &store.CaptureY, &store.ListX, &store.ListY})
    std::copy(array->begin() + end + 1, array->begin() + store.ListCount + 1,
              array->begin() + start);
  store.ListCount = ToInt16(store.ListCount - (end - start + 1));
  FitScrollBar(store.Page, store.ListCount);
  ResetSelection(store.Page);
  ShowPage(store);
}

void SwapXY(PointStore& store) {
  std::swap_ranges(store.ListX.begin() + 1, store.ListX.begin() + 1 + store.ListCount,
                   store.ListY.begin() + 1);
  using Rows = PointStore::Rows;
  if (store.ListRows != Rows::Other)
    store.ListRows = store.ListRows == Rows::Places ? Rows::SwappedPlaces : Rows::Places;
  ShowNewest(store);
}

void XY2List(PointStore& store) {
  if (store.CaptureCount < 1) return;
  const int count = store.CaptureCount;
  GrowList(store, count);
  ClearList(store);
  std::copy_n(store.CaptureX.begin() + 1, count, store.ListX.begin() + 1);
  std::copy_n(store.CaptureY.begin() + 1, count, store.ListY.begin() + 1);
  store.ListCount = store.CaptureCount;
  store.ListIsCaptured = true;
  store.ListRows = PointStore::Rows::Places;
  ShowNewest(store);
}

void UpdateEditMenu(const PointStore& store, CommandStates& commands) {
  commands.ClearSelected = CanClearSelected(store);
}

void UpdateDataMenu(const PointStore& store, CommandStates& commands) {
  const int captured = store.CaptureCount;
  commands.Sort = commands.SwapXY = commands.ListUndo = captured >= 1;
  if (captured != 1) commands.CurveLength = captured >= 2;
  commands.Resample = captured >= 2;
  commands.Integrate = captured >= 3;
}

void GrowList(PointStore& store, int count) {
  const auto size = static_cast<std::size_t>(count) + 1;
  for (auto* array : {&store.ListX, &store.ListY})
    if (array->size() < size) array->resize(size);
}

}  // namespace graphize
