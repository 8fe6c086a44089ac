#include "reading/stroke_path.h"

#include <algorithm>
#include <limits>

namespace graphize {

namespace {

constexpr double kNever = -1e30;

/// One column: how much the best path has gained that leaves it in each row, and how it came there.
struct Column {
  int Top = 0;
  std::vector<double> Gain;
  std::vector<signed char> Across;  // row in the column before, less this one
  std::vector<signed char> Along;   // 0: entered here, else the row in this column it came from

  int Bottom() const { return Top + static_cast<int>(Gain.size()) - 1; }
  double At(int y) const {
    return y < Top || y > Bottom() ? kNever : Gain[static_cast<std::size_t>(y - Top)];
  }
};

class Search {
 public:
  Search(const InkMap& map, const PathCosts& costs) : map_(map), costs_(costs) {}

  /// What a path gains by a column that it enters here; kNever on a wall.
  double Entry(int x, int y) const {
    const std::uint8_t value = map_.At(x, y);
    if (value == InkMap::kWall) return kNever;
    if (value >= InkMap::kBeside) return -0.03;
    // A thin line's ink lies in two rows.
    const double share =
        std::min(1.0, map_.Share(x, y) + 0.5 * (map_.Share(x, y - 1) + map_.Share(x, y + 1)));
    return share * (0.7 + costs_.Paper) - costs_.Paper;
  }
  double Climb(int x, int y) const {
    const std::uint8_t value = map_.At(x, y);
    if (value == InkMap::kWall) return -kNever;
    if (value >= InkMap::kBeside) return 0.5 * costs_.Leap;
    const double share =
        std::min(1.0, map_.Share(x, y) + 0.5 * (map_.Share(x - 1, y) + map_.Share(x + 1, y)));
    return 0.002 + costs_.Leap * std::max(0.0, 1 - 1.5 * share);
  }

  /// The column behind `before`; without rows when nothing there is within reach of `best`.
  Column Next(const Column& before, int x, double best) const {
    const double least = best - costs_.Reach;
    Column next;
    if (x < 0 || x >= map_.Width) return next;
    next.Top = std::max(before.Top - 1, 0);
    const int bottom = std::min(before.Bottom() + 1, map_.Height - 1);
    for (int y = next.Top; y <= bottom; ++y) {
      double gain = before.At(y);
      int across = 0;
      for (const int dy : {-1, 1})
        if (before.At(y + dy) - 0.01 > gain) {
          gain = before.At(y + dy) - 0.01;
          across = dy;
        }
      Append(next, gain <= kNever / 2 ? kNever : gain + Entry(x, y), across, 0);
    }
    Sweep(next, x, least);
    Trim(next, least);
    return next;
  }

  /// Leaves only paths near that row; false where there is none, and nothing is changed.
  static bool Confine(Column& column, int y) {
    const int top = std::max(column.Top, y - kThroughReach);
    const int bottom = std::min(column.Bottom(), y + kThroughReach);
    const auto row = [&](int at) { return column.Gain.begin() + (at - column.Top); };
    if (top > bottom ||
        std::all_of(row(top), row(bottom) + 1, [](double gain) { return gain <= kNever / 2; }))
      return false;
    std::fill(column.Gain.begin(), row(top), kNever);
    std::fill(row(bottom) + 1, column.Gain.end(), kNever);
    return true;
  }

  /// Lets paths go up and down in the column.
  void Sweep(Column& column, int x, double least) const {
    for (int y = column.Top + 1; y < map_.Height; ++y) {
      const double gain = column.At(y - 1) - Climb(x, y);
      if (y > column.Bottom()) {
        if (gain < least) break;
        Append(column, gain, 0, -1);
      } else {
        Improve(column, y, gain, -1);
      }
    }
    // Entered further down: the rows above the first are a way on from there.
    for (int y = column.Bottom() - 1; y >= column.Top; --y)
      Improve(column, y, column.At(y + 1) - Climb(x, y), 1);
    std::vector<double> above;
    double gain = column.At(column.Top);
    for (int y = column.Top - 1; y >= 0; --y) {
      gain -= Climb(x, y);
      if (gain < least) break;
      above.push_back(gain);
    }
    if (above.empty()) return;
    std::reverse(above.begin(), above.end());
    column.Top -= static_cast<int>(above.size());
    column.Gain.insert(column.Gain.begin(), above.begin(), above.end());
    column.Across.insert(column.Across.begin(), above.size(), 0);
    column.Along.insert(column.Along.begin(), above.size(), 1);
  }

 private:
  static void Append(Column& column, double gain, int across, int along) {
    column.Gain.push_back(gain);
    column.Across.push_back(static_cast<signed char>(across));
    column.Along.push_back(static_cast<signed char>(along));
  }
  static void Improve(Column& column, int y, double gain, int along) {
    const auto i = static_cast<std::size_t>(y - column.Top);
    if (gain <= column.Gain[i]) return;
    column.Gain[i] = gain;
    column.Along[i] = static_cast<signed char>(along);
  }
  static void Trim(Column& column, double least) {
    const auto isOut = [&](double gain) { return gain < least; };
    const auto first = std::find_if_not(column.Gain.begin(), column.Gain.end(), isOut);
    const auto last = std::find_if_not(column.Gain.rbegin(), column.Gain.rend(), isOut).base();
    const auto skipped = first - column.Gain.begin(),
               kept = std::max(last - first, std::ptrdiff_t{0});
    const auto cut = [&](auto& values) {
      values = {values.begin() + skipped, values.begin() + skipped + kept};
    };
    column.Top += static_cast<int>(skipped);
    cut(column.Across);
    cut(column.Along);
    cut(column.Gain);
    // What is out of reach in between stays for its index, but no path goes on from there.
    for (double& gain : column.Gain)
      if (isOut(gain)) gain = kNever;
  }

  const InkMap& map_;
  const PathCosts& costs_;
};

}  // namespace

std::vector<PathPixel> FindHalfPath(const InkMap& map, PathPixel start, int step,
                                    const PathCosts& costs, std::span<const PathPixel> through,
                                    const PictureOperation& operation, int mostColumns) {
  std::vector<PathPixel> ahead;
  for (const PathPixel& at : through)
    if ((at.X - start.X) * step > 0) ahead.push_back(at);
  std::ranges::sort(ahead, {}, [&](const PathPixel& at) { return at.X * step; });
  auto next = ahead.begin();

  const Search search(map, costs);
  std::vector<Column> columns(1);
  columns[0] = {start.Y, {0}, {0}, {0}};
  search.Sweep(columns[0], start.X, -costs.Reach);
  double best = 0;
  std::size_t bestColumn = 0;
  int bestRow = start.Y;
  for (int x = start.X + step; !operation.Stopped && mostColumns-- > 0; x += step) {
    // On the way to a place nothing is given up.
    Column column = search.Next(columns.back(), x, next == ahead.end() ? best : kNever);
    if (column.Gain.empty()) break;
    bool isBest = false;
    for (; next != ahead.end() && next->X == x; ++next)
      if (Search::Confine(column, next->Y)) isBest = true;
    const auto most = std::max_element(column.Gain.begin(), column.Gain.end());
    if (isBest || *most > best) {
      best = *most;
      bestColumn = columns.size();
      bestRow = column.Top + static_cast<int>(most - column.Gain.begin());
    }
    columns.push_back(std::move(column));
    columns[columns.size() - 2].Gain = {};  // the way back asks for the steps alone
  }
  std::vector<PathPixel> path;
  int y = bestRow;
  for (std::size_t i = bestColumn + 1; i-- > 0;) {
    const Column& column = columns[i];
    const int x = start.X + step * static_cast<int>(i);
    path.push_back({x, y});
    for (;;) {
      const auto along = column.Along[static_cast<std::size_t>(y - column.Top)];
      if (along == 0) break;
      y += along;
      path.push_back({x, y});
    }
    if (i > 0) y += column.Across[static_cast<std::size_t>(y - column.Top)];
  }
  std::reverse(path.begin(), path.end());
  return path;
}

std::vector<PathPixel> FindPath(const InkMap& map, PathPixel start, const PathCosts& costs,
                                std::span<const PathPixel> through,
                                const PictureOperation& operation) {
  std::vector<PathPixel> path = FindHalfPath(map, start, -1, costs, through, operation);
  std::reverse(path.begin(), path.end());
  const std::vector<PathPixel> right = FindHalfPath(map, start, 1, costs, through, operation);
  path.insert(path.end(), right.begin() + 1, right.end());
  return path;
}

}  // namespace graphize
