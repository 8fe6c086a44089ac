#include "reading/symbol_cutting.h"

#include <numbers>

namespace graphize {

Box BoxOf(const Cutting& cutting, const Area& area) {
  Box box;
  cutting.ForEach([&](int x, int y) {
    if (area[cutting.Index(x, y)]) box.Add(x, y);
  });
  return box;
}

Area WithoutHoles(const Cutting& cutting, const Area& area, int largest) {
  Area filled = area, seen = area;
  std::vector<Spot> hole;
  cutting.ForEach([&](int x, int y) {
    Box box;
    hole.clear();
    const auto take = [&](int u, int v) {
      if (!cutting.Contains(u, v) || seen[cutting.Index(u, v)]) return;
      seen[cutting.Index(u, v)] = true;
      box.Add(u, v);
      hole.push_back({u, v});
    };
    take(x, y);
    for (std::size_t next = 0; next < hole.size(); ++next) {
      const Spot at = hole[next];
      take(at.X - 1, at.Y);
      take(at.X + 1, at.Y);
      take(at.X, at.Y - 1);
      take(at.X, at.Y + 1);
    }
    const bool closed = box.Left > -cutting.Radius() && box.Right < cutting.Radius() &&
                        box.Top > -cutting.Radius() && box.Bottom < cutting.Radius() &&
                        box.Extent() <= largest;
    if (closed)
      for (const Spot& at : hole) filled[cutting.Index(at.X, at.Y)] = true;
  });
  return filled;
}

std::vector<float> DepthsIn(const Cutting& cutting, const Area& area) {
  const auto far = static_cast<float>(4 * cutting.Radius());
  std::vector<float> depth(cutting.Count(), far);
  const auto at = [&](int x, int y) {
    return cutting.Contains(x, y) ? depth[cutting.Index(x, y)] : far;
  };
  const auto pass = [&](int step) {
    const int r = cutting.Radius();
    for (int v = -r; v <= r; ++v)
      for (int u = -r; u <= r; ++u) {
        const int x = step * u, y = step * v;
        float& here = depth[cutting.Index(x, y)];
        if (!area[cutting.Index(x, y)]) {
          here = 0;
          continue;
        }
        constexpr float kDiagonal = std::numbers::sqrt2_v<float>;
        here = std::min({here, at(x - step, y) + 1, at(x, y - step) + 1,
                         at(x - step, y - step) + kDiagonal, at(x + step, y - step) + kDiagonal});
      }
  };
  pass(1);
  pass(-1);
  return depth;
}

Area Grown(const Cutting& cutting, const Area& area, double by) {
  Area grown = area;
  const int reach = static_cast<int>(by);
  cutting.ForEach([&](int x, int y) {
    if (!area[cutting.Index(x, y)]) return;
    for (int dy = -reach; dy <= reach; ++dy)
      for (int dx = -reach; dx <= reach; ++dx)
        if (dx * dx + dy * dy <= by * by && cutting.Contains(x + dx, y + dy))
          grown[cutting.Index(x + dx, y + dy)] = true;
  });
  return grown;
}

}  // namespace graphize
