#include "capture/curve_list.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"

namespace graphize {

namespace {

bool HasControlCharacter(std::string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto byte = static_cast<unsigned char>(name[i]);
    if (byte < 0x20 || byte == 0x7f) return true;
    // U+0080 to U+009F as UTF-8.
    if (byte == 0xc2 && i + 1 < name.size() && static_cast<unsigned char>(name[i + 1]) < 0xa0)
      return true;
  }
  return false;
}

/// The first colour that the fewest curves have.
Colour FreeColour(const CurveList& list) {
  const auto users = [&](Colour colour) {
    return std::count_if(list.Curves.begin(), list.Curves.end(),
                         [&](const Curve& curve) { return curve.MarkColour == colour; });
  };
  return *std::min_element(std::begin(kCurveColours), std::end(kCurveColours),
                           [&](Colour a, Colour b) { return users(a) < users(b); });
}

/// What is under the cursor is not of a curve.
void KeepCursor(PointStore& store, const PointStore& from) {
  store.CurrentX = from.CurrentX;
  store.CurrentY = from.CurrentY;
  store.CurrentPlace = from.CurrentPlace;
  store.CurrentPixelX = from.CurrentPixelX;
  store.CurrentPixelY = from.CurrentPixelY;
}

template <class T>
bool HasSameBits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

auto SmallRecordsOf(const PointStore& store) {
  return std::tie(store.CaptureCount, store.ListCount, store.MaxPoints, store.ListIsCaptured,
                  store.ListRows, store.Saved, store.LastPixelX, store.LastPixelY, store.Page,
                  store.NPoints);
}

bool IsSameCurve(const PointStore& a, const PointStore& b) {
  return SmallRecordsOf(a) == SmallRecordsOf(b) && HasSameBits(a.CaptureX, b.CaptureX) &&
         HasSameBits(a.CaptureY, b.CaptureY) && HasSameBits(a.CaptureId, b.CaptureId) &&
         HasSameBits(a.ListX, b.ListX) && HasSameBits(a.ListY, b.ListY) &&
         HasSameBits(a.ListId, b.ListId) && HasSameBits(a.Places, b.Places) &&
         HasSameBits(a.Certainties, b.Certainties) && HasSameBits(a.Rests, b.Rests);
}

/// No points; as many can be captured.
std::shared_ptr<const PointStore> EmptyCurve(const PointStore& like) {
  PointStore empty;
  empty.MaxPoints = like.MaxPoints;
  return std::make_shared<const PointStore>(std::move(empty));
}

/// Other points become active. The first ones in a command to leave are what the history takes.
std::shared_ptr<const PointStore> Leave(CurveList& list, PointStore& active,
                                        std::shared_ptr<const PointStore> next) {
  auto left = ExchangePoints(list, active, std::move(next));
  if (list.Left == nullptr) list.Left = left;
  return left;
}

}  // namespace

std::string CurveNameOf(std::string_view typed) {
  typed.remove_prefix(std::min(typed.find_first_not_of(' '), typed.size()));
  return TrimRight(typed);
}

std::string CurveNameFault(const CurveList& list, std::string_view name, int current) {
  if (CurveNameOf(name).empty()) return Tr("A curve needs a name.");
  if (HasControlCharacter(name))
    return Tr("A curve's name is one line without tabs and other control characters.");
  if (name.size() > kLongestCurveName)
    return Tr("A curve's name has at most %1 bytes.", static_cast<long long>(kLongestCurveName));
  const int same = FindCurve(list, name);
  if (same >= 0 && same != current)
    return Tr("There is a curve \"%1\" already.", std::string(name));
  return {};
}

std::string FreeCurveName(const CurveList& list) {
  for (std::size_t number = list.Curves.size() + 1;; ++number) {
    std::string name = "curve " + std::to_string(number);
    if (FindCurve(list, name) < 0) return name;
  }
}

int FindCurve(const CurveList& list, std::string_view name) {
  const auto found = std::find_if(list.Curves.begin(), list.Curves.end(),
                                  [&](const Curve& curve) { return curve.Name == name; });
  return found == list.Curves.end() ? -1 : static_cast<int>(found - list.Curves.begin());
}

const PointStore& PointsOf(const CurveList& list, const PointStore& active, int curve) {
  return curve == list.Active ? active : *list.Curves[curve].Points;
}

std::shared_ptr<const PointStore> ExchangePoints(CurveList& list, PointStore& active,
                                                 std::shared_ptr<const PointStore> points) {
  PointStore next = *points;
  KeepCursor(next, active);
  auto left = list.Origin != nullptr && IsSameCurve(*list.Origin, active)
                  ? std::move(list.Origin)
                  : std::make_shared<const PointStore>(std::move(active));
  active = std::move(next);
  list.Origin = std::move(points);
  return left;
}

void ChangePoints(CurveList& list, PointStore& active,
                  const std::function<void(PointStore& points, std::size_t curve)>& change) {
  for (std::size_t i = 0; i < list.Curves.size(); ++i) {
    if (static_cast<int>(i) == list.Active) {
      change(active, i);
    } else if (list.Curves[i].Points->Places.size() > 1) {
      auto points = std::make_shared<PointStore>(*list.Curves[i].Points);
      change(*points, i);
      list.Curves[i].Points = std::move(points);
    }
  }
}

void SelectCurve(CurveList& list, PointStore& active, int curve) {
  if (curve == list.Active) return;
  Curve& next = list.Curves[curve];
  ActiveCurve(list).Points = Leave(list, active, std::exchange(next.Points, nullptr));
  list.Active = curve;
}

void AddCurve(CurveList& list, PointStore& active, const std::string& name) {
  ActiveCurve(list).Points = Leave(list, active, EmptyCurve(active));
  const Colour colour = FreeColour(list);
  list.Curves.push_back({.Name = name, .MarkColour = colour});
  list.Active = static_cast<int>(list.Curves.size()) - 1;
}

void DeleteCurve(CurveList& list, PointStore& active) {
  list.Curves.erase(list.Curves.begin() + list.Active);
  list.Active = std::min(list.Active, static_cast<int>(list.Curves.size()) - 1);
  Curve& next = ActiveCurve(list);
  Leave(list, active, std::exchange(next.Points, nullptr));
}

void ResetCurves(CurveList& list, PointStore& active) {
  if (list.Curves.size() > 1) Leave(list, active, EmptyCurve(active));
  list.Curves = CurveList().Curves;
  list.Active = 0;
}

void ReplaceCurves(CurveList& list, PointStore& active, std::vector<Curve> curves,
                   int activeCurve) {
  Leave(list, active, std::exchange(curves[static_cast<std::size_t>(activeCurve)].Points, nullptr));
  list.Curves = std::move(curves);
  list.Active = activeCurve;
}

std::vector<int> UnsavedCurves(const CurveList& list, const PointStore& active) {
  std::vector<int> unsaved;
  for (int i = 0; i < static_cast<int>(list.Curves.size()); ++i)
    if (HasUnsaved(PointsOf(list, active, i))) unsaved.push_back(i);
  return unsaved;
}

bool AnyPoints(const CurveList& list, const PointStore& active) {
  for (int i = 0; i < static_cast<int>(list.Curves.size()); ++i) {
    const PointStore& points = PointsOf(list, active, i);
    if (points.CaptureCount > 0 || points.ListCount > 0) return true;
  }
  return false;
}

}  // namespace graphize
