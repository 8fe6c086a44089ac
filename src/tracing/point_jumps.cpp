#include "tracing/point_jumps.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace graphize {

namespace {

constexpr float kColumnsApart = 12;        // pixels between neighbours of one run at most
constexpr std::size_t kMostPerColumn = 3;  // a trace's centre and edges
constexpr std::size_t kRun = 12;           // columns that are no symbol or letter
constexpr std::size_t kPaper = 5;          // columns that are more than grain or a hole in the ink
constexpr double kFar = 6;       // pixels from one point to the next that are a jump behind paper
constexpr double kVeryFar = 40;  // those that are one anyway

/// The points of one column, by their numbers.
struct Column {
  std::size_t First = 0, End = 0;

  std::size_t Count() const { return End - First; }
};
using Run = std::span<const Column>;

class Jumps {
 public:
  Jumps(InkSight& sight, std::span<const PlotPosition> points, std::vector<InkVerdict>& verdicts)
      : sight_(sight), points_(points), verdicts_(verdicts) {}

  /// Columns that follow each other in one direction.
  void Judge(Run run) const {
    std::size_t paper = 0;  // columns before this one
    for (std::size_t i = 1; i < run.size(); ++i) {
      paper = IsOnPaper(run[i - 1]) ? paper + 1 : 0;
      if (paper >= kPaper && IsJump(run[i - 1], run[i], kFar)) return Doubt(run.subspan(i));
      if (i >= kRun && run.size() - i >= kRun && IsJump(run[i - 1], run[i], kVeryFar))
        Doubt(run.subspan(i - 1, 2));
    }
  }

 private:
  bool IsOnPaper(const Column& column) const {
    return std::all_of(verdicts_.begin() + static_cast<std::ptrdiff_t>(column.First),
                       verdicts_.begin() + static_cast<std::ptrdiff_t>(column.End),
                       [](InkVerdict verdict) { return verdict == InkVerdict::NotOnInk; });
  }
  /// Aside rather than on, by more than `far`, and mostly over paper.
  bool IsJump(const Column& from, const Column& to, double far) const {
    const PlotPosition a = points_[from.First], b = points_[to.First];
    const double dx = b.Column - a.Column, dy = b.Row - a.Row, length = std::hypot(dx, dy);
    if (length <= far || std::abs(dy) < std::abs(dx)) return false;
    int ink = 0, all = 0;
    for (double k = 2; k < length - 1; ++k, ++all)
      ink += sight_.HasInkNear(a.Column + k * dx / length, a.Row + k * dy / length, 1) ? 1 : 0;
    return 2 * ink < all;
  }
  void Doubt(Run run) const {
    for (std::size_t i = run.front().First; i < run.back().End; ++i)
      if (verdicts_[i] == InkVerdict::OnInk) verdicts_[i] = InkVerdict::Leap;
  }

  InkSight& sight_;
  std::span<const PlotPosition> points_;
  std::vector<InkVerdict>& verdicts_;
};

}  // namespace

void CheckJumps(InkSight& sight, std::span<const PlotPosition> points,
                std::vector<InkVerdict>& verdicts) {
  std::vector<Column> columns;
  for (std::size_t first = 0, end = 0; first < points.size(); first = end) {
    for (end = first + 1; end < points.size() && points[end].Column == points[first].Column;) ++end;
    columns.push_back({first, end});
  }
  const Jumps jumps(sight, points, verdicts);
  const auto step = [&](std::size_t i) {  // to this column
    return points[columns[i].First].Column - points[columns[i - 1].First].Column;
  };
  for (std::size_t first = 0, end = 0; first < columns.size(); first = end) {
    for (end = first + 1; end < columns.size(); ++end) {
      const bool turns = end > first + 1 && (step(end) > 0) != (step(end - 1) > 0);
      if (turns || std::abs(step(end)) > kColumnsApart ||
          columns[end].Count() != columns[first].Count())
        break;
    }
    if (columns[first].Count() <= kMostPerColumn)
      jumps.Judge(Run(columns).subspan(first, end - first));
  }
}

}  // namespace graphize
