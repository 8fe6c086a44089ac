#include "grid/grid_line.h"

#include <cmath>

namespace graphize {

BlackRun RunNear(const BitMap& map, int column, double row, double reach, int limit) {
  const int middle = static_cast<int>(std::lround(row));
  const int first = static_cast<int>(std::ceil(row - reach));
  const int last = static_cast<int>(std::floor(row + reach));
  const bool upFirst = middle > row;
  for (int distance = 0; middle - distance >= first || middle + distance <= last; ++distance) {
    for (const int at : {upFirst ? middle - distance : middle + distance,
                         upFirst ? middle + distance : middle - distance}) {
      if (at < first || at > last || !map.Get(column, at)) continue;
      BlackRun run{at, at};
      while (at - run.Top < limit && map.Get(column, run.Top - 1)) --run.Top;
      while (run.Bottom - at < limit && map.Get(column, run.Bottom + 1)) ++run.Bottom;
      return run;
    }
  }
  return {};
}

}  // namespace graphize
