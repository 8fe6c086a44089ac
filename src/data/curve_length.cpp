#include "data/curve_length.h"

#include <algorithm>
#include <cmath>

#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/translation.h"
#include "data/list_edit.h"

namespace graphize {

CurveSums CurveLength(PointStore& store, StatusBar& status, const Desktop& desktop) {
  status.Status = Tr("Converting X,Y to Curve length");
  desktop.ShowNow();
  ClearList(store);

  const int segments = std::max(store.CaptureCount - 1, 0);
  GrowList(store, segments);
  CurveSums sums;
  for (int i = 1; i <= segments; ++i) {
    const float x1 = store.CaptureX[i], x2 = store.CaptureX[i + 1];
    const float y1 = store.CaptureY[i], y2 = store.CaptureY[i + 1];
    sums.XLength += std::fabs(x2 - x1);
    sums.YLength += std::fabs(y2 - y1);
    const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
    const auto length = static_cast<float>(std::sqrt(dx * dx + dy * dy));
    sums.Length += length;
    store.ListX[i] = static_cast<float>(i);
    store.ListY[i] = length;
    store.ListId[i] = 0;
  }
  store.ListCount = ToInt16(segments);
  store.ListIsCaptured = store.CaptureCount == 0;
  store.ListRows = PointStore::Rows::Other;
  ShowNewest(store);
  status.Status = Tr("Curve length calculated successfully");

  const auto shown = [](float value) { return FormatNumber(value, kReadingPattern); };
  Tell(desktop, Tr("X,Y List-box now containes distance between points \r\n\r\n"
                   "Total curve length = %1\r\nX-length = %2\r\nY-length = %3\r\n",
                   shown(sums.Length), shown(sums.XLength), shown(sums.YLength)));
  return sums;
}

}  // namespace graphize
