#include "workspace/picture_map.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "workspace/workspace.h"

namespace graphize {

namespace {

Place Mapped(const AffineMap& map, const Place& place) {
  if (place == kNoPlace) return place;
  const double x = place.Column, y = place.Row;
  return {static_cast<float>(map.XX * x + map.XY * y + map.X),
          static_cast<float>(map.YX * x + map.YY * y + map.Y)};
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

}  // namespace

bool AxesFitPicture(const Workspace& ws) {
  return std::all_of(ws.map.OfAxisPoints.begin(), ws.map.OfAxisPoints.end(),
                     [&](const AffineMap& map) { return map == ws.map.Shown; });
}

void CarryAlong(Workspace& ws, const AffineMap& map, int height) {
  BeforeImageTool& before = ws.beforeImageTool;
  before = {map, ws.map.Shown, {}, ws.blockers};
  before.Places.resize(ws.curves.Curves.size());
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t curve) {
    before.Places[curve] = points.Places;
    for (std::size_t id = 1; id < points.Places.size(); ++id)
      points.Places[id] = Mapped(map, points.Places[id]);
    FollowLastPoint(points, height);
  });
  for (int i = 1; i <= ws.blockers.Count; ++i)
    ws.blockers.Blockers[i] = Mapped(map, ws.blockers.Blockers[i]);
  ws.map.Shown = Then(ws.map.Shown, map);
}

void CarryBack(Workspace& ws, int height) {
  BeforeImageTool before = std::exchange(ws.beforeImageTool, {});
  before.Places.resize(ws.curves.Curves.size());
  const AffineMap back = Inverse(before.Map);
  // Mapped back, what has come with the tool would not be the same to the last bit.
  const auto carryBack = [&](auto& now, const auto* was) {
    now = was != nullptr && Mapped(before.Map, *was) == now ? *was : Mapped(back, now);
  };
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t curve) {
    const std::vector<Place>& places = before.Places[curve];
    for (std::size_t id = 1; id < points.Places.size(); ++id)
      carryBack(points.Places[id], id < places.size() ? &places[id] : nullptr);
    FollowLastPoint(points, height);
  });
  for (int i = 1; i <= ws.blockers.Count; ++i)
    carryBack(ws.blockers.Blockers[i],
              i <= before.Blockers.Count ? &before.Blockers.Blockers[i] : nullptr);
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
  });
  ws.map = {};
}

void ForgetPlaces(Workspace& ws) {
  ChangePoints(ws.curves, ws.store,
               [](PointStore& points, std::size_t) { points.Places.resize(1); });
}

}  // namespace graphize
