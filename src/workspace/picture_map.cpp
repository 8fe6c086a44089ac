#include "workspace/picture_map.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "workspace/workspace.h"

namespace graphize {

namespace {

bool IsSingle(double value) {
  return static_cast<float>(value) == value;
}

/// A place of single precision stays one.
RealPlace Mapped(const AffineMap& map, const RealPlace& place) {
  const double x = place.Column, y = place.Row;
  const RealPlace at{map.XX * x + map.XY * y + map.X, map.YX * x + map.YY * y + map.Y};
  if (!IsSingle(x) || !IsSingle(y)) return at;
  return {static_cast<float>(at.Column), static_cast<float>(at.Row)};
}

/// visit(id, place&) may give any point another place that has one.
template <class Visit>
void ForEachPlace(PointStore& points, const Visit& visit) {
  for (PointId id = 1; id < points.Places.size(); ++id) {
    if (!HasPlace(points, id)) continue;
    RealPlace place = RealPlaceOf(points, id);
    visit(id, place);
    SetPlace(points, id, place);
  }
}

/// The uncertainty across a stroke that goes along with its picture: across the new direction.
Certainty Mapped(const AffineMap& map, const Certainty& certainty) {
  if (!certainty.IsKnown()) return certainty;
  const double x = certainty.AcrossColumns, y = certainty.AcrossRows;
  const double sigma = std::hypot(x, y);
  const double alongX = -map.XX * y + map.XY * x, alongY = -map.YX * y + map.YY * x;
  const double acrossX = map.XX * x + map.XY * y, acrossY = map.YX * x + map.YY * y;
  const double along = std::hypot(alongX, alongY);
  if (!(along > 0 && sigma > 0)) return certainty;
  const double length = (acrossY * alongX - acrossX * alongY) / along;
  return {static_cast<float>(-length * alongY / along), static_cast<float>(length * alongX / along),
          certainty.IsBridged};
}

std::int16_t Within16Bits(double position) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(
      std::clamp<double>(std::nearbyint(position), Limits::min(), Limits::max()));
}

Blocker Mapped(const AffineMap& map, const Blocker& blocker) {
  const double x = blocker.X, y = blocker.Y;
  const double size = blocker.Size * std::sqrt(std::abs(Determinant(map)));
  return {Within16Bits(map.XX * x + map.XY * y + map.X),
          Within16Bits(map.YX * x + map.YY * y + map.Y),
          blocker.Size == 0 ? 0 : std::max(static_cast<std::int32_t>(std::nearbyint(size)), 1)};
}

/// The references of the axes go along. The rows do not: the axes are theirs alone again.
void CarryReferences(Workspace& ws, const AffineMap& map, int height) {
  AxisRefinement& refined = ws.calibration.Refined;
  if (map == AffineMap{} && height == ws.plot.Height()) return;
  const auto oldHeight = static_cast<float>(ws.plot.Height());
  for (AxisReference& reference : refined.References) {
    const RealPlace at =
        Mapped(map, RealPlace{reference.At.Column, oldHeight - reference.At.RowUp});
    reference.At = {static_cast<float>(at.Column),
                    static_cast<float>(height) - static_cast<float>(at.Row)};
  }
  refined.On = false;
  refined.Scale = {};
  refined.Rows = {};
}

}  // namespace

bool AxesFitPicture(const Workspace& ws) {
  return std::all_of(ws.map.OfAxisPoints.begin(), ws.map.OfAxisPoints.end(),
                     [&](const AffineMap& map) { return map == ws.map.Shown; });
}

void CarryAlong(Workspace& ws, const AffineMap& map, int height) {
  BeforeImageTool& before = ws.beforeImageTool;
  before = {map, ws.map.Shown, {}, ws.blockers};
  before.Curves.resize(ws.curves.Curves.size());
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t curve) {
    std::vector<RealPlace>& was = before.Curves[curve].Places;
    was.resize(points.Places.size());
    before.Curves[curve].Certainties = points.Certainties;
    ForEachPlace(points, [&](PointId id, RealPlace& place) {
      was[id] = place;
      place = Mapped(map, place);
    });
    for (Certainty& certainty : points.Certainties) certainty = Mapped(map, certainty);
    FollowLastPoint(points, height);
  });
  for (int i = 1; i <= ws.blockers.Count; ++i)
    ws.blockers.Blockers[i] = Mapped(map, ws.blockers.Blockers[i]);
  CarryReferences(ws, map, height);
  ws.map.Shown = Then(ws.map.Shown, map);
}

void CarryBack(Workspace& ws, int height) {
  BeforeImageTool before = std::exchange(ws.beforeImageTool, {});
  before.Curves.resize(ws.curves.Curves.size());
  const AffineMap back = Inverse(before.Map);
  // Mapped back, what has come with the tool would not be the same to the last bit.
  const auto carryBack = [&](auto& now, const auto* was) {
    now = was != nullptr && Mapped(before.Map, *was) == now ? *was : Mapped(back, now);
  };
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t curve) {
    const auto at = [](const auto& all, std::size_t id) {
      return id < all.size() ? &all[id] : nullptr;
    };
    const BeforeImageTool::Points& was = before.Curves[curve];
    ForEachPlace(points,
                 [&](PointId id, RealPlace& place) { carryBack(place, at(was.Places, id)); });
    for (std::size_t id = 1; id < points.Certainties.size(); ++id)
      carryBack(points.Certainties[id], at(was.Certainties, id));
    FollowLastPoint(points, height);
  });
  for (int i = 1; i <= ws.blockers.Count; ++i)
    carryBack(ws.blockers.Blockers[i],
              i <= before.Blockers.Count ? &before.Blockers.Blockers[i] : nullptr);
  CarryReferences(ws, back, height);
  ws.map.Shown = before.Shown;
}

void CarryToOpened(Workspace& ws, int height) {
  if (ws.map.Shown == AffineMap{}) return;
  CarryAlong(ws, Inverse(ws.map.Shown), height);
  ws.map.Shown = {};
}

void LosePlaces(Workspace& ws) {
  ChangePoints(ws.curves, ws.store, [](PointStore& points, std::size_t) {
    std::fill(points.Places.begin() + 1, points.Places.end(), kNoPlace);
    points.Certainties.clear();
    points.Rests.clear();
  });
  ws.map = {};
}

void ForgetPlaces(Workspace& ws) {
  ChangePoints(ws.curves, ws.store, [](PointStore& points, std::size_t) {
    points.Places.resize(1);
    points.Certainties.clear();
    points.Rests.clear();
  });
}

}  // namespace graphize
