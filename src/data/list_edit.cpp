#include "data/list_edit.h"

#include <algorithm>

#include "base/numbers.h"
#include "data/waiting_points.h"

namespace graphize {

namespace {

/// Moves what stands behind `end` to `start`, up to the element `last`.
template <typename... Arrays>
void CloseGap(int start, int end, int last, Arrays&... arrays) {
  (std::copy(arrays.begin() + end + 1, arrays.begin() + last + 1, arrays.begin() + start), ...);
}

/// Removes the captured points of the rows `start` to `end` where the list is in another order than
/// they are. As many elements as before stay: the last points that are left repeat. Without any
/// left, or where another row still shows the point, nothing is removed.
void RemoveCaptured(PointStore& store, int start, int end) {
  std::vector<bool> gone(store.Places.size());
  for (int i = start; i <= end; ++i) gone[store.ListId[i]] = true;
  for (int i = 1; i <= store.ListCount; ++i)
    if (i < start || i > end) gone[store.ListId[i]] = false;
  std::vector<int> left;
  for (int i = 1; i <= store.CaptureCount; ++i)
    if (!gone[store.CaptureId[i]]) left.push_back(i);
  if (left.empty()) return;
  const std::size_t count = left.size(), removed = store.CaptureCount - count;
  const std::size_t first = count > removed ? count - removed : 0;
  for (std::size_t i = 0; i < removed; ++i) left.push_back(left[first + i % (count - first)]);
  const auto gather = [&](auto& array) {
    auto old = array;
    for (std::size_t i = 0; i < left.size(); ++i) array[i + 1] = old[left[i]];
  };
  gather(store.CaptureX);
  gather(store.CaptureY);
  gather(store.CaptureId);
}

}  // namespace

bool CanClearSelected(const PointStore& store) {
  return store.ListIsCaptured && store.ListCount >= 1 && store.Page.SelectionActive;
}

void ClearSelected(PointStore& store) {
  const int start = store.Page.SelectionStart, end = store.Page.SelectionEnd;
  if (!CanClearSelected(store) || end < start || start < 1 || end > store.ListCount) return;
  const int last = store.ListCount;
  if (std::equal(store.ListId.begin() + 1, store.ListId.begin() + last + 1,
                 store.CaptureId.begin() + 1))
    CloseGap(start, end, last, store.CaptureX, store.CaptureY, store.CaptureId);
  else
    RemoveCaptured(store, start, end);
  CloseGap(start, end, last, store.ListX, store.ListY, store.ListId);
  store.ListCount = ToInt16(store.ListCount - (end - start + 1));
  FitScrollBar(store.Page, store.ListCount);
  ResetSelection(store.Page);
  ShowPage(store);
}

int CountWithoutRepeats(const PointStore& store) {
  std::vector<bool> seen(store.Places.size());
  int count = 0;
  for (int i = 1; i <= store.CaptureCount; ++i) {
    const PointId id = store.CaptureId[i];
    if (!seen[id]) count = i;
    seen[id] = true;
  }
  return count;
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
  std::copy_n(store.CaptureId.begin() + 1, count, store.ListId.begin() + 1);
  store.ListCount = store.CaptureCount;
  store.ListIsCaptured = true;
  store.ListRows = PointStore::Rows::Places;
  ShowNewest(store);
}

void UpdateEditMenu(const PointStore& store, CommandStates& commands) {
  commands.ClearSelected = CanClearSelected(store);
}

void UpdateDataMenu(const PointStore& store, CommandStates& commands) {
  const int captured = CountWaiting(store) > 0 ? 0 : store.CaptureCount;
  commands.Sort = commands.SwapXY = commands.ListUndo = captured >= 1;
  if (captured != 1) commands.CurveLength = captured >= 2;
  commands.Resample = captured >= 2;
  commands.Integrate = captured >= 3;
}

void GrowList(PointStore& store, int count) {
  const auto size = static_cast<std::size_t>(count) + 1;
  if (store.ListX.size() < size) store.ListX.resize(size);
  if (store.ListY.size() < size) store.ListY.resize(size);
  if (store.ListId.size() < size) store.ListId.resize(size);
}

}  // namespace graphize
