#include "support/points.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/scripted_desktop.h"

namespace graphize::test {

namespace {

RowList Rows(const std::vector<float>& xs, const std::vector<float>& ys, int count) {
  RowList rows;
  if (count < 0 || static_cast<int>(xs.size()) <= count || static_cast<int>(ys.size()) <= count) {
    ADD_FAILURE() << count << " points in arrays of " << xs.size() << " and " << ys.size();
    return rows;
  }
  for (int i = 1; i <= count; ++i) rows.push_back({xs[i], ys[i]});
  return rows;
}

bool IsSame(float a, float b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

bool operator==(const Row& a, const Row& b) {
  return IsSame(a.X, b.X) && IsSame(a.Y, b.Y);
}

PointStore MakeStore(const RowList& points) {
  PointStore store;
  CommandStates commands;
  const ScriptedDesktop desktop;
  for (const Row& row : points) {
    store.CurrentPlace = {row.X, row.Y};
    AddValuePoint(store, commands, desktop, false, row.X, row.Y);
  }
  ShowNewest(store);
  return store;
}

RowList ListRows(const PointStore& store) {
  return Rows(store.ListX, store.ListY, store.ListCount);
}

RowList CapturedRows(const PointStore& store) {
  return Rows(store.CaptureX, store.CaptureY, store.CaptureCount);
}

}  // namespace graphize::test
