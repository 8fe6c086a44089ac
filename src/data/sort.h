#pragma once

#include <vector>

#include "capture/point_store.h"

namespace graphize {

enum class SortOrder { Ascending, Descending };

/// The row order that an exchange sort of `keys` leaves: element i of the result is the index, from
/// 0, of the row that comes to stand at i. Not a stable order. The exchange sort is
///
///     for i = 0 .. n-1, for j = i+1 .. n-1: when keys[i] > keys[j] (descending: <) exchange them.
///
/// Not-a-number compares false and so keeps its place. Costs n log n.
std::vector<int> ExchangeSortOrder(const std::vector<float>& keys, SortOrder order);

/// Orders the list by X and shows its newest rows. As many rows as there are captured points take
/// part, also where lengths or resampled points make the list shorter or longer.
///
/// A list of captured points that is shorter, because selected rows were cleared, is ordered alone:
/// behind it stand its last points a second time, and these would drive others out.
void SortList(PointStore& store, SortOrder order);

}  // namespace graphize
