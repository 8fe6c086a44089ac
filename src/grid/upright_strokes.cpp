#include "grid/upright_strokes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace graphize {

namespace {

constexpr int kLong = 14;    // rows that an upright stroke is followed
constexpr int kWidest = 24;  // columns

}  // namespace

UprightStrokes::UprightStrokes(const BitMap& map, const LineBand& band, BandSide side, double slope)
    : map_(map),
      band_(band),
      side_(side),
      lean_(side == BandSide::Above ? slope : -slope),
      upright_(band.Rows.size(), 0),
      passed_(band.Rows.size(), 0) {
  for (int x = band.Columns.First; x <= band.Columns.Last; ++x) Follow(x);
}

void UprightStrokes::Follow(int column) {
  const auto isBlack = [&](int x, int distance) {
    return IsBlackBeside(map_, band_, side_, x, distance);
  };
  if (!isBlack(column, 1)) return;
  int columns[kLong + 1];
  columns[1] = column;
  for (int distance = 2; distance <= kLong; ++distance) {
    const int expected = column + static_cast<int>(std::lround(lean_ * (distance - 1)));
    const int before = columns[distance - 1];
    columns[distance] = before;
    for (const int candidate : {before, before - 1, before + 1}) {
      if (std::abs(candidate - expected) > 1 || !isBlack(candidate, distance)) continue;
      columns[distance] = candidate;
      break;
    }
    if (!isBlack(columns[distance], distance)) return;
  }
  // One that steps aside at once only touches the upright stroke there.
  if (columns[2] != column && isBlack(columns[2], 1)) return;

  // Where it is wider than elsewhere it is not alone; where it is alone it must not lean.
  Span runs[kLong + 1];
  int narrowest = kWidest;
  for (int distance = 2; distance <= kLong; ++distance) {
    runs[distance] = RunAt(columns[distance], distance);
    narrowest = std::min(narrowest, runs[distance].Length());
  }
  const auto isAlone = [&](int distance) { return runs[distance].Length() <= narrowest + 1; };
  int first = 2, last = kLong;
  while (!isAlone(first)) ++first;
  while (!isAlone(last)) --last;
  const auto middle = [&](int distance) {
    return 0.5 * (runs[distance].First + runs[distance].Last);
  };
  const double off = middle(last) - middle(first) - lean_ * (last - first);
  if (last - first >= 5 && std::abs(off) > 0.5 + 0.1 * (last - first)) return;

  upright_[column - band_.Columns.First] = 1;
  passed_[column - band_.Columns.First] = 1;
  for (int distance = 2; distance <= kLong; ++distance) {
    if (!isAlone(distance)) continue;
    for (int x = runs[distance].First; x <= runs[distance].Last; ++x)
      passed_[x - band_.Columns.First] = 1;
  }
}

Span UprightStrokes::RunAt(int column, int distance) const {
  Span run{column, column};
  while (run.Length() < kWidest && IsBlackBeside(map_, band_, side_, run.First - 1, distance))
    --run.First;
  while (run.Length() < kWidest && IsBlackBeside(map_, band_, side_, run.Last + 1, distance))
    ++run.Last;
  return run;
}

}  // namespace graphize
