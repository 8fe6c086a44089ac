#include "finding_axes/ticks.h"

#include <algorithm>
#include <cmath>

namespace graphize {

std::vector<Tick> TicksOn(const InkImage& upright, AxisCourse course, const LongLine& line,
                          int side, double reach) {
  const bool level = course == AxisCourse::Level;
  const auto at = [&](int along, int across) {
    return level ? upright.At(along, across) : upright.At(across, along);
  };
  const int end = level ? upright.Width : upright.Height;
  const int first = std::max(line.From - 3, 0), last = std::min(line.To + 3, end - 1);
  const int start = side > 0 ? line.Last + 1 : line.First - 1;
  const int most = std::max(static_cast<int>(reach), 3);
  const int edge = std::max(upright.Weak, upright.Full / 5);
  std::vector<int> lengths(std::max(last - first + 1, 0));
  for (int i = first; i <= last; ++i) {
    int length = 0;
    while (length < most && at(i, start + side * length) >= edge) ++length;
    lengths[i - first] = length;
  }
  const int shortest = 2 * upright.Enlarged, widest = std::max(4, 2 * line.Thickness() + 2);
  std::vector<Tick> ticks;
  for (int i = 0; i < static_cast<int>(lengths.size());) {
    if (lengths[i] < shortest) {
      ++i;
      continue;
    }
    const int from = i;
    int longest = 0;
    for (; i < static_cast<int>(lengths.size()) && lengths[i] >= shortest; ++i)
      longest = std::max(longest, lengths[i]);
    if (i - from > widest) continue;
    // Its middle by all of its length but the end, which is soft.
    double sum = 0, moment = 0;
    const int rows = std::max(longest - 1, 1);
    for (int j = 0; j < rows; ++j)
      for (int k = first + from - 1; k <= first + i; ++k) {
        const int value = at(k, start + side * j);
        if (value < upright.Weak / 2) continue;
        sum += value;
        moment += static_cast<double>(value) * k;
      }
    if (sum > 0) ticks.push_back({moment / sum, static_cast<double>(longest)});
  }
  return ticks;
}

std::vector<Tick> LinesAcross(const LineSet& lines, AxisCourse course, double across, double near) {
  std::vector<Tick> ticks;
  for (const LongLine& line : course == AxisCourse::Level ? lines.Upright : lines.Level)
    if (line.From <= across + near && line.To >= across - near)
      ticks.push_back({line.Across, static_cast<double>(line.Length())});
  return ticks;
}

std::optional<Tick> TickAt(const std::vector<Tick>& ticks, double position, double tolerance) {
  std::optional<Tick> best;
  for (const Tick& tick : ticks) {
    const double off = std::fabs(tick.Position - position);
    if (off > tolerance) continue;
    if (!best || tick.Length > 1.25 * best->Length + 1 ||
        (1.25 * tick.Length + 1 >= best->Length && off < std::fabs(best->Position - position)))
      best = tick;
  }
  return best;
}

}  // namespace graphize
