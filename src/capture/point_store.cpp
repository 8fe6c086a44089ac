#include "capture/point_store.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>
#include <span>

#include "base/numbers.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr int kStep = 500;
constexpr int kMostRows = std::numeric_limits<std::int16_t>::max();

template <typename... Arrays>
void Refill(Arrays&... arrays) {
  (arrays.assign(kStep + 1, {}), ...);
  (arrays.shrink_to_fit(), ...);
}

/// Makes room for `points` points, in whole steps with one step to spare; never shrinks. The first
/// time it is for all that there may be: memory is taken when it is written, and nothing moves.
template <typename... Arrays>
void Grow(int points, Arrays&... arrays) {
  const auto size = static_cast<std::size_t>(points / kStep * kStep + kStep + 1);
  constexpr std::size_t kAll = kMostRows / kStep * kStep + kStep + 1;
  const auto grow = [&](auto& array) {
    if (array.size() >= size) return;
    array.reserve(std::max(kAll, size));
    array.resize(size);
  };
  (grow(arrays), ...);
}

std::span<const float> Used(const std::vector<float>& array, int count) {
  return std::span(array).subspan(1, static_cast<std::size_t>(count));
}

/// Bit by bit: what is not a number is saved like any other value.
bool IsSame(const std::vector<float>& saved, std::span<const float> values) {
  return std::ranges::equal(saved, values, {}, std::bit_cast<std::uint32_t, float>,
                            std::bit_cast<std::uint32_t, float>);
}

/// The array reaches as far as anything is to be told.
template <class T>
void Note(std::vector<T>& ofEachId, PointId id, const T& what) {
  if (id >= ofEachId.size()) {
    if (what == T()) return;
    ofEachId.resize(id + std::size_t{1});
  }
  ofEachId[id] = what;
}

/// Appends points that the cursor has just come along; all arrays are as long.
bool Append(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel,
            std::span<const Place> places, std::span<const float> X, std::span<const float> Y) {
  if (places.size() > static_cast<std::size_t>(RoomFor(store))) {
    ShowNewest(store);
    Tell(desktop,
         "You reached the limit of data that can be stored.\n\r"
         "To continue save the data and clear the Graphized Points in the list box.",
         MessageIcon::Exclamation);
    return true;
  }
  const auto count = static_cast<int>(places.size());
  const int captured = store.CaptureCount + count, listed = store.ListCount + count;
  if (captured >= kStep) store.Places.reserve(kMostRows + 1);
  Grow(captured, store.CaptureX, store.CaptureY, store.CaptureId);
  Grow(std::max(captured, listed), store.ListX, store.ListY, store.ListId);
  const auto copy = [&](auto values, auto& captures, auto& list) {
    std::copy_n(values, count, captures.begin() + store.CaptureCount + 1);
    std::copy_n(values, count, list.begin() + store.ListCount + 1);
  };
  copy(X.begin(), store.CaptureX, store.ListX);
  copy(Y.begin(), store.CaptureY, store.ListY);
  const auto number = [&](std::vector<PointId>& ids, int before) {
    const auto first = ids.begin() + before + 1;
    std::iota(first, first + count, static_cast<PointId>(store.Places.size()));
  };
  number(store.CaptureId, store.CaptureCount);
  number(store.ListId, store.ListCount);
  store.Places.insert(store.Places.end(), places.begin(), places.end());
  if (store.CaptureCount == 0) EnableDataCommands(commands, true);
  store.CaptureCount = static_cast<std::int16_t>(captured);
  store.ListCount = static_cast<std::int16_t>(listed);
  if (store.ListRows != PointStore::Rows::Places) store.ListRows = PointStore::Rows::Other;
  store.LastPixelX = store.CurrentPixelX;
  store.LastPixelY = store.CurrentPixelY;
  if (UpdateLabel) ShowNewest(store);
  return false;
}

}  // namespace

int RoomFor(const PointStore& store) {
  // A resampled list may be longer than the captured points: it can be full on its own.
  return std::max(std::min(store.MaxPoints - store.CaptureCount, kMostRows - store.ListCount), 0);
}

bool AddPoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
              bool UpdateLabel) {
  return AddValuePoint(store, commands, desktop, UpdateLabel, store.CurrentX, store.CurrentY);
}

bool AddValuePoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
                   bool UpdateLabel, float X, float Y) {
  return Append(store, commands, desktop, UpdateLabel, {&store.CurrentPlace, 1}, {&X, 1}, {&Y, 1});
}

bool AddPoints(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel,
               const FoundPoints& points, std::size_t count) {
  if (count == 0) return false;
  return Append(store, commands, desktop, UpdateLabel, std::span(points.Places).first(count),
                std::span(points.X).first(count), std::span(points.Y).first(count));
}

bool DeleteAllData(PointStore& store, CommandStates& commands, const Desktop& desktop, bool Ask,
                   const std::string& note) {
  if (Ask && !AskYesNo(desktop, Tr("Delete all graphized X,Y data ?") + note)) return false;
  ClearList(store);
  store.CaptureCount = 0;
  store.ListCount = 0;
  store.NPoints = 0;
  store.ListIsCaptured = true;
  store.ListRows = PointStore::Rows::Places;
  EnableDataCommands(commands, false);
  Refill(store.CaptureX, store.CaptureY, store.CaptureId);
  Refill(store.ListX, store.ListY, store.ListId);
  return true;
}

void NoteSaved(const PointStore& store) {
  const auto copy = [](std::span<const float> values) {
    return std::vector<float>(values.begin(), values.end());
  };
  *store.Saved = {copy(Used(store.CaptureX, store.CaptureCount)),
                  copy(Used(store.CaptureY, store.CaptureCount)),
                  copy(Used(store.ListX, store.ListCount)),
                  copy(Used(store.ListY, store.ListCount))};
}

bool HasUnsaved(const PointStore& store) {
  if (store.CaptureCount < 1 && store.ListCount < 1) return false;
  const PointStore::Points& saved = *store.Saved;
  return !(IsSame(saved.ListX, Used(store.ListX, store.ListCount)) &&
           IsSame(saved.ListY, Used(store.ListY, store.ListCount)) &&
           IsSame(saved.CaptureX, Used(store.CaptureX, store.CaptureCount)) &&
           IsSame(saved.CaptureY, Used(store.CaptureY, store.CaptureCount)));
}

void EnableDataCommands(CommandStates& commands, bool State) {
  commands.Data = State;
  commands.ClearSelected = State;
}

void EnableBlockerCommands(CommandStates& commands, bool State) {
  commands.Blockers = State;
}

void NoteCertainty(PointStore& store, PointId id, const Certainty& certainty) {
  Note(store.Certainties, id, certainty);
}

RealPlace RealPlaceOf(const PointStore& store, PointId id) {
  const Place& place = store.Places[id];
  const PlaceRest rest = id < store.Rests.size() ? store.Rests[id] : PlaceRest();
  return {place.Column + rest.Columns, place.Row + rest.Rows};
}

void SetPlace(PointStore& store, PointId id, const RealPlace& place) {
  const Place single{static_cast<float>(place.Column), static_cast<float>(place.Row)};
  store.Places[id] = single;
  Note(store.Rests, id, PlaceRest{place.Column - single.Column, place.Row - single.Row});
}

void FollowLastPoint(PointStore& store, int pictureHeight) {
  if (store.CaptureCount < 1) return;
  const PointId last = store.CaptureId[store.CaptureCount];
  if (!HasPlace(store, last)) return;
  const auto& [column, row] = store.Places[last];
  store.LastPixelX = ToInt16(column);
  store.LastPixelY = ToInt16(static_cast<float>(pictureHeight) - row);
}

void ShowPage(PointStore& store) {
  store.NPoints = store.ListCount;
  ShowPage(store.Page, store.ListCount);
  for (ListPage::Line& line : store.Page.Lines)
    if (line.Point > 0 && store.Page.Points.Has(store.ListId[line.Point])) line.Highlighted = true;
}

void ShowNewest(PointStore& store) {
  store.NPoints = store.ListCount;
  ShowNewest(store.Page, store.ListCount);
}

void ClearList(PointStore& store) {
  ClearList(store.Page);
}

}  // namespace graphize
