#include "extraction/line_band.h"

#include <algorithm>
#include <cmath>

namespace graphize {

namespace {

/// The middle one of `values`, which is reordered.
int MiddleOf(std::vector<int>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The line's rows between two clean columns.
class Bridge {
 public:
  /// `left` and `right` are the nearest clean columns on either side, not both empty.
  Bridge(const GridLine& line, const std::vector<int>& left, const std::vector<int>& right)
      : line_(line) {
    std::vector<int> thicknesses;
    for (const auto* columns : {&left, &right})
      for (const int x : *columns) thicknesses.push_back(line.Runs[x].Thickness());
    thickness_ = MiddleOf(thicknesses);
    const int leftTop = TopInPicture(left.empty() ? right : left);
    const int rightTop = TopInPicture(right.empty() ? left : right);
    highest_ = std::min(leftTop, rightTop);
    lowest_ = std::max(leftTop, rightTop);
    oneSided_ = left.empty() || right.empty();
  }

  /// A line of the picture goes from one row to the next only in between.
  BlackRun At(int x) const {
    int top =
        static_cast<int>(std::lround(line_.RowAt(x) - 0.5 * (thickness_ - 1))) - line_.Shift[x];
    if (!oneSided_) top = std::clamp(top, highest_, lowest_);
    top += line_.Shift[x];
    return {top, top + thickness_ - 1};
  }

 private:
  int TopInPicture(const std::vector<int>& columns) const {
    std::vector<int> tops;
    for (const int x : columns) tops.push_back(line_.Runs[x].Top - line_.Shift[x]);
    return MiddleOf(tops);
  }

  const GridLine& line_;
  int thickness_ = 1;
  int highest_ = 0, lowest_ = 0;  // tops on the picture
  bool oneSided_ = false;
};

}  // namespace

LineBand BandOf(const GridLine& line) {
  constexpr int kNeighbours = 5;
  LineBand band{line.Columns, {}, line.Shift.front() != line.Shift.back()};
  std::vector<int> clean;
  for (int x = line.Columns.First; x <= line.Columns.Last; ++x)
    if (line.IsClean(x)) clean.push_back(x);
  const auto count = static_cast<std::ptrdiff_t>(clean.size());

  std::ptrdiff_t next = 0;  // the first clean column not left of x
  for (int x = line.Columns.First; x <= line.Columns.Last;) {
    if (next < count && clean[next] == x) {
      band.Rows.push_back(line.Runs[x++]);
      ++next;
      continue;
    }
    const int end = next < count ? clean[next] : line.Columns.Last + 1;
    if (count == 0) {
      for (; x < end; ++x) {
        const int top = static_cast<int>(std::lround(line.RowAt(x) - 0.5 * (line.Thickness - 1)));
        band.Rows.push_back({top, top + line.Thickness - 1});
      }
      continue;
    }
    const std::vector<int> left(clean.begin() + std::max<std::ptrdiff_t>(0, next - kNeighbours),
                                clean.begin() + next);
    const std::vector<int> right(clean.begin() + next,
                                 clean.begin() + std::min(count, next + kNeighbours));
    const Bridge bridge(line, left, right);
    for (; x < end; ++x) band.Rows.push_back(bridge.At(x));
  }
  return band;
}

}  // namespace graphize
