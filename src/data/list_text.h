#pragma once

#include <string>

#include "capture/point_store.h"
#include "data/number_format.h"

namespace graphize {

/// One point of the data file, without a line end: X, the delimiter, Y.
std::string PointLine(float X, float Y, const NumberFormats& formats, bool decimalPoint);

/// The same as one line of the window can show it: a TAB is two spaces.
std::string ListText(float X, float Y, const NumberFormats& formats, bool decimalPoint);

/// The data list panel's text for row `point`, counted from 1; empty outside the list.
std::string LineText(const PointStore& store, int point, const NumberFormats& formats,
                     bool decimalPoint);

}  // namespace graphize
