#pragma once

#include <ostream>
#include <vector>

#include "capture/point_store.h"

namespace graphize::test {

struct Row {
  float X = 0, Y = 0;
};
/// Equal numbers; what is not a number equals itself.
bool operator==(const Row& a, const Row& b);
inline void PrintTo(const Row& row, std::ostream* out) {
  *out << '(' << row.X << ", " << row.Y << ')';
}
using RowList = std::vector<Row>;

/// A store that holds these points as if they had been captured one by one, each at the place that
/// has its values as column and row.
PointStore MakeStore(const RowList& points);

/// The data list and the captured points of a store; a test failure when it claims more points
/// than it has.
RowList ListRows(const PointStore& store);
RowList CapturedRows(const PointStore& store);

}  // namespace graphize::test
