#pragma once

#include <string>
#include <string_view>

#include "capture/point_store.h"

namespace graphize {

// The rows of a point store as CSV: a header "id,column,row,x,y", a line each; with the header
// "id,column,row,x,y,across_columns,across_rows,bridged" where points are known with their
// uncertainty. Numbers are the shortest that read back as the same value; a row that is no captured
// point has id 0; where there is no place, there are no column and row, and where there is no
// uncertainty, there is none of the last three.

/// The captured points, in capture order.
std::string CapturedText(const PointStore& store);
/// The list; empty when it is the captured points.
std::string ListText(const PointStore& store);
/// What the list's arrays hold behind its rows, up to the last that is not empty: sorting may bring
/// it back. Empty when there is nothing.
std::string BehindListText(const PointStore& store);

/// Read into a store whose counts and number of ids are set. Whatever is wrong, such as another
/// number of rows, an id that the store does not have or two places for one, is a RunTimeError that
/// names the line.
void ReadCaptured(PointStore& store, std::string_view text);
void ReadList(PointStore& store, std::string_view text);
/// The list is the captured points; there are as many rows.
void TakeCapturedAsList(PointStore& store);
void ReadBehindList(PointStore& store, std::string_view text);

}  // namespace graphize
