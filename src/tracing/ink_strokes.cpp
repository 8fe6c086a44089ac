#include "tracing/ink_strokes.h"

namespace graphize {

void InkFront::Advance(int column) {
  const InkColumn ink(ink_, column);
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

int ExtentOfInk(const TracedInk& ink, const Stroke& stroke, int column, int direction,
                int longestBreak, int yIncrement, int enough) {
  InkFront front(ink, stroke, yIncrement);
  int extent = 0;
  for (int distance = 1; distance <= enough; ++distance) {
    front.Advance(column + direction * distance);
    if (front.Missing() > longestBreak) break;
    if (front.Missing() == 0) extent = distance;
  }
  return extent;
}

}  // namespace graphize
