#include "data/point_edit.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"

namespace graphize {

namespace {

using Rows = PointStore::Rows;

constexpr const char* kNoValue = Marked("The axes give no number there: nothing was moved");

/// Calls visit(id, place) for every row that lies at a place.
template <class Visit>
void ForEachPlaced(const PointStore& store, const Visit& visit) {
  for (int i = 1; i <= store.ListCount; ++i)
    if (HasPlace(store, store.ListId[i])) visit(store.ListId[i], store.Places[store.ListId[i]]);
}

template <class Holds>
PointSet PointsThat(const PointStore& store, const Holds& holds) {
  std::vector<PointId> ids;
  ForEachPlaced(store, [&](PointId id, const Place& place) {
    if (holds(place)) ids.push_back(id);
  });
  return PointSet(std::move(ids));
}

/// All of them have a row, and nothing else is meant.
bool AreListed(const PointStore& store, const PointSet& points) {
  if (points.IsEmpty() || points.Ranges().back().Last >= store.Places.size()) return false;
  std::vector<bool> listed(store.Places.size());
  for (int i = 1; i <= store.ListCount; ++i) listed[store.ListId[i]] = true;
  const std::vector<PointId> ids = points.Ids();
  return std::all_of(ids.begin(), ids.end(), [&](PointId id) { return listed[id]; });
}

bool SameBits(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

float Moved(float position, float way) {
  return static_cast<float>(DecimalValue(position) + DecimalValue(way));
}

/// Takes the elements of these points out of the first `count`; the number that is left.
template <class... Arrays>
int TakeOut(const PointSet& points, int count, std::vector<PointId>& ids, Arrays&... values) {
  int left = 0;
  for (int i = 1; i <= count; ++i) {
    if (points.Has(ids[i])) continue;
    ++left;
    ids[left] = ids[i];
    ((values[left] = values[i]), ...);
  }
  return left;
}

/// The rows of a list in which some have X and Y exchanged and some have not.
class MixedRows {
 public:
  explicit MixedRows(const PointStore& store) : store_(store) {
    if (store.ListRows != Rows::Other) return;
    captured_.resize(store.Places.size());
    for (int i = 1; i <= store.CaptureCount; ++i)
      captured_[store.CaptureId[i]] = {store.CaptureX[i], store.CaptureY[i]};
  }

  bool IsSwapped(int row) const {
    if (store_.ListRows != Rows::Other) return store_.ListRows == Rows::SwappedPlaces;
    const GraphValues& captured = captured_[store_.ListId[row]];
    // By their bits: values that are still to come are no numbers.
    return !SameBits(store_.ListX[row], captured.X) || !SameBits(store_.ListY[row], captured.Y);
  }

 private:
  const PointStore& store_;
  std::vector<GraphValues> captured_;  // by id
};

std::optional<GraphValues> ValuesOf(const PointStore& store, const AxisCalibration& calibration,
                                    int height, PointId id) {
  if (!HasPlace(store, id)) return std::nullopt;
  // As the cursor computes them.
  const auto& [column, row] = store.Places[id];
  return ValuesAt(calibration, column, static_cast<float>(height) - row);
}

}  // namespace

std::optional<PointId> NearestPoint(const PointStore& store, Place at, float reach) {
  PointId nearest = 0;
  float least = reach * reach;
  ForEachPlaced(store, [&](PointId id, const Place& place) {
    const float dx = place.Column - at.Column, dy = place.Row - at.Row;
    const float distance = dx * dx + dy * dy;
    if (distance > least) return;
    least = distance;
    nearest = id;
  });
  return nearest == 0 ? std::nullopt : std::optional(nearest);
}

PointSet PointsWithin(const PointStore& store, const PlaceArea& area) {
  return PointsThat(store, [&](const Place& place) {
    return place.Column >= area.Left && place.Column <= area.Right && place.Row >= area.Top &&
           place.Row <= area.Bottom;
  });
}

PointSet PointsOfRows(const PointStore& store, int first, int last) {
  std::vector<PointId> ids;
  for (int i = std::max(first, 1); i <= std::min<int>(last, store.ListCount); ++i)
    ids.push_back(store.ListId[i]);
  return PointSet(std::move(ids));
}

PointSet AllPoints(const PointStore& store) {
  return PointsThat(store, [](const Place&) { return true; });
}

std::optional<PlaceArea> AreaOf(const PointStore& store, const PointSet& points) {
  std::optional<PlaceArea> area;
  for (const PointId id : points.Ids()) {
    if (!HasPlace(store, id)) continue;
    const auto& [column, row] = store.Places[id];
    if (!area) area = {column, row, column, row};
    area = {std::min(area->Left, column), std::min(area->Top, row), std::max(area->Right, column),
            std::max(area->Bottom, row)};
  }
  return area;
}

int RowOf(const PointStore& store, PointId id) {
  const auto begin = store.ListId.begin() + 1, end = begin + store.ListCount;
  const auto row = id == 0 ? end : std::find(begin, end, id);
  return row == end ? 0 : static_cast<int>(row - store.ListId.begin());
}

void SelectPoints(PointStore& store, PointSet points) {
  ListPage& page = store.Page;
  ResetSelection(page);
  int first = 0, last = 0, rows = 0;
  for (int i = 1; i <= store.ListCount && !points.IsEmpty(); ++i) {
    if (!points.Has(store.ListId[i])) continue;
    if (first == 0) first = i;
    last = i;
    ++rows;
  }
  if (rows > 0 && last - first + 1 == rows) {
    page.SelectionStart = ToInt16(first);
    page.SelectionEnd = ToInt16(last);
    page.SelectionActive = true;
  }
  page.Points = std::move(points);
  ShowPage(store);
}

std::string MovePoints(PointStore& store, const AxisCalibration& calibration, int width, int height,
                       const PointSet& points, float columns, float rows) {
  if (!AreListed(store, points)) return Tr("The list has no such points to move");
  const std::vector<PointId> ids = points.Ids();
  std::vector<std::pair<PointId, Place>> places;
  NewValues values(store.Places.size());
  for (const PointId id : ids) {
    if (!HasPlace(store, id))
      return Tr("These points were captured on another picture: they cannot be moved on this one");
    const Place& from = store.Places[id];
    const Place to{Moved(from.Column, columns), Moved(from.Row, rows)};
    if (!(to.Column >= 0 && to.Row >= 0 && to.Column <= static_cast<float>(width - 1) &&
          to.Row <= static_cast<float>(height - 1)))
      return Tr("Points cannot be moved out of the picture");
    const GraphValues value = ValuesAt(calibration, to.Column, static_cast<float>(height) - to.Row);
    if (!std::isfinite(value.X) || !std::isfinite(value.Y)) return Tr(kNoValue);
    places.emplace_back(id, to);
    values[id] = value;
  }
  for (const auto& [id, place] : places) {
    SetPlace(store, id, {place.Column, place.Row});
    NoteCertainty(store, id, {});
  }
  TakeValues(store, values);
  FollowLastPoint(store, height);
  return {};
}

std::string DeletePoints(PointStore& store, CommandStates& commands, const PointSet& points,
                         int height) {
  if (!AreListed(store, points)) return Tr("The list has no such points to delete");
  store.ListCount =
      ToInt16(TakeOut(points, store.ListCount, store.ListId, store.ListX, store.ListY));
  store.CaptureCount =
      ToInt16(TakeOut(points, store.CaptureCount, store.CaptureId, store.CaptureX, store.CaptureY));
  if (store.ListCount == 0) {
    store.ListIsCaptured = true;
    store.ListRows = Rows::Places;
  }
  if (store.CaptureCount == 0) EnableDataCommands(commands, false);
  FollowLastPoint(store, height);
  FitScrollBar(store.Page, store.ListCount);
  ResetSelection(store.Page);
  ShowPage(store);
  return {};
}

NewValues ValuesOfPlaces(const PointStore& store, const AxisCalibration& calibration, int height) {
  NewValues values(store.Places.size());
  for (int i = 1; i <= store.CaptureCount; ++i) {
    std::optional<GraphValues>& value = values[store.CaptureId[i]];
    if (!value) value = ValuesOf(store, calibration, height, store.CaptureId[i]);
  }
  return values;
}

int CountWithoutValue(const NewValues& values) {
  return static_cast<int>(
      std::count_if(values.begin(), values.end(), [](const std::optional<GraphValues>& value) {
        return value && !(std::isfinite(value->X) && std::isfinite(value->Y));
      }));
}

void TakeValues(PointStore& store, const NewValues& values) {
  const MixedRows mixed(store);
  // A sort goes over as many rows as were captured, and may bring later ones in where they are.
  const auto held =
      static_cast<int>(std::min({store.ListX.size(), store.ListY.size(), store.ListId.size()}));
  const int rows = std::min<int>(std::max(store.ListCount, store.CaptureCount), held - 1);
  for (int i = 1; i <= rows; ++i) {
    if (store.ListId[i] >= values.size() || !values[store.ListId[i]]) continue;
    const std::optional<GraphValues>& value = values[store.ListId[i]];
    const bool swapped = mixed.IsSwapped(i);
    store.ListX[i] = swapped ? value->Y : value->X;
    store.ListY[i] = swapped ? value->X : value->Y;
  }
  for (int i = 1; i <= store.CaptureCount; ++i) {
    const std::optional<GraphValues>& value = values[store.CaptureId[i]];
    if (!value) continue;
    store.CaptureX[i] = value->X;
    store.CaptureY[i] = value->Y;
  }
}

int CountOthers(const PointStore& store, const NewValues& values) {
  int others = 0;
  for (int i = 1; i <= store.CaptureCount; ++i) {
    const std::optional<GraphValues>& value = values[store.CaptureId[i]];
    if (value && !(SameBits(store.CaptureX[i], value->X) && SameBits(store.CaptureY[i], value->Y)))
      ++others;
  }
  return others;
}

int RowsWithoutPlace(const PointStore& store) {
  int rows = store.ListCount;
  ForEachPlaced(store, [&](PointId, const Place&) { --rows; });
  return rows;
}

}  // namespace graphize
