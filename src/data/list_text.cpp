#include "data/list_text.h"

#include <string_view>

#include "base/numbers.h"
#include "base/translation.h"
#include "data/waiting_points.h"

namespace graphize {

namespace {

std::string PairText(float X, float Y, const NumberFormats& formats, std::string_view separator,
                     bool decimalPoint) {
  std::string text = FormatValue(X, formats.X, decimalPoint);
  text += separator;
  text += FormatValue(Y, formats.Y, decimalPoint);
  return text;
}

}  // namespace

std::string PointLine(float X, float Y, const NumberFormats& formats, bool decimalPoint) {
  return PairText(X, Y, formats, formats.Delimiter, decimalPoint);
}

std::string ListText(float X, float Y, const NumberFormats& formats, bool decimalPoint) {
  const bool tab = formats.Delimiter == "\t";
  return PairText(X, Y, formats, tab ? "  " : std::string_view(formats.Delimiter), decimalPoint);
}

std::string LineText(const PointStore& store, int point, const NumberFormats& formats,
                     bool decimalPoint) {
  if (point < 1 || point > store.ListCount) return "";
  const PointId id = store.ListId[point];
  if (IsWaiting(id, store.ListX[point], store.ListY[point]) && HasPlace(store, id))
    return Tr("column %1, row %2", ShortestText(store.Places[id].Column),
              ShortestText(store.Places[id].Row));
  return ListText(store.ListX[point], store.ListY[point], formats, decimalPoint);
}

}  // namespace graphize
