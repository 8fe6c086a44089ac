#include "tracing/ink_strokes.h"

#include <cmath>
#include <cstdlib>

namespace graphize {

int NearestInk(const InkColumn& column, double wanted, bool lowerFirst, int top, int bottom) {
  top = std::max(top, 0);
  bottom = std::min(bottom, column.Rows() - 1);
  const int middle = static_cast<int>(std::lround(wanted));
  const int first = std::max({top - middle, middle - bottom, 0});
  const int last = std::max(middle - top, bottom - middle);
  for (int distance = first; distance <= last; ++distance) {
    const int step = lowerFirst ? distance : -distance;
    for (const int row : {middle + step, middle - step})
      if (row >= top && row <= bottom && column[row]) return row;
  }
  return -1;
}

Stroke CollectStroke(const InkColumn& column, int start, int yIncrement) {
  double sum = start;
  int count = 1;
  const auto walk = [&](int direction) {
    int last = start;
    for (int row = start + direction;
         row >= 0 && row < column.Rows() && std::abs(row - last) <= yIncrement + 1;
         row += direction) {
      if (!column[row]) continue;
      sum += row;
      ++count;
      last = row;
    }
    return last;
  };
  const int bottom = walk(1), top = walk(-1);
  return {top, bottom, sum / count};
}

void InkFront::Advance(int column) {
  const InkColumn ink(image_, column);
  const int reach = missing_ == 0 ? 1 : 1 + yIncrement_;
  next_.clear();
  for (const Stroke& from : strokes_) {
    const int top =
        next_.empty() ? from.Top - reach : std::max(from.Top - reach, next_.back().Bottom + 1);
    ForEachStroke(ink, top, from.Bottom + reach, yIncrement_,
                  [&](const Stroke& stroke) { next_.push_back(stroke); });
  }
  missing_ = next_.empty() ? missing_ + 1 : 0;
  if (missing_ == 0) strokes_.swap(next_);
}

bool InkFront::Holds(int row) const {
  return missing_ == 0 && std::any_of(strokes_.begin(), strokes_.end(),
                                      [row](const Stroke& stroke) { return stroke.Holds(row); });
}

int ExtentOfInk(const PlotImage& image, const Stroke& stroke, int column, int direction,
                int longestBreak, int yIncrement, int enough) {
  InkFront front(image, stroke, yIncrement);
  int extent = 0;
  for (int distance = 1; distance <= enough; ++distance) {
    front.Advance(column + direction * distance);
    if (front.Missing() > longestBreak) break;
    if (front.Missing() == 0) extent = distance;
  }
  return extent;
}

}  // namespace graphize
