#include "capture/point_store.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
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
  (arrays.reserve(std::max(kAll, size)), ...);
  ((arrays.size() < size ? arrays.resize(size) : void()), ...);
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

bool Append(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel,
            float X, float Y) {
  // A resampled list may be longer than the captured points: it can be full on its own.
  if (store.CaptureCount >= store.MaxPoints || store.ListCount >= kMostRows) {
    ShowNewest(store);
    Tell(desktop,
         "You reached the limit of data that can be stored.\n\r"
         "To continue save the data and clear the Graphized Points in the list box.",
         MessageIcon::Exclamation);
    return true;
  }
  const int captured = store.CaptureCount + 1, listed = store.ListCount + 1;
  if (captured % kStep == 0) Grow(captured, store.CaptureX, store.CaptureY, store.CaptureId);
  if (listed % kStep == 0 || listed >= static_cast<int>(store.ListX.size()))
    Grow(std::max(captured, listed), store.ListX, store.ListY, store.ListId);
  const auto id = static_cast<PointId>(store.Places.size());
  store.Places.push_back(store.CurrentPlace);
  ++store.CaptureCount;
  ++store.ListCount;
  if (store.ListRows != PointStore::Rows::Places) store.ListRows = PointStore::Rows::Other;
  store.CaptureX[store.CaptureCount] = X;
  store.CaptureY[store.CaptureCount] = Y;
  store.CaptureId[store.CaptureCount] = id;
  store.ListX[store.ListCount] = X;
  store.ListY[store.ListCount] = Y;
  store.ListId[store.ListCount] = id;
  store.LastPixelX = store.CurrentPixelX;
  store.LastPixelY = store.CurrentPixelY;
  if (UpdateLabel) ShowNewest(store);
  if (store.CaptureCount == 1) EnableDataCommands(commands, true);
  return false;
}

}  // namespace

bool AddPoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
              bool UpdateLabel) {
  return Append(store, commands, desktop, UpdateLabel, store.CurrentX, store.CurrentY);
}

bool AddValuePoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
                   bool UpdateLabel, float X, float Y) {
  return Append(store, commands, desktop, UpdateLabel, X, Y);
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
