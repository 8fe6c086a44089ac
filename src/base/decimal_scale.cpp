#include "base/decimal_scale.h"

#include <cmath>

namespace graphize {

double DecimalScale(double a, double b) {
  constexpr double kExact = 9007199254740992;  // 2^53
  double scale = 1;
  for (int decimals = 0; decimals <= 15; ++decimals, scale *= 10) {
    const auto isWhole = [&](double value) {
      const double whole = std::nearbyint(value * scale);
      return std::fabs(whole) < kExact && whole / scale == value;
    };
    if (isWhole(a) && isWhole(b)) return scale;
  }
  return 0;
}

}  // namespace graphize
