#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace graphize {

/// The middle value, the upper of two; at least one.
inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace graphize
