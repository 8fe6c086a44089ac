#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace graphize {

template <std::size_t Count>
using SquareMatrix = std::array<std::array<double, Count>, Count>;

/// The solution of `matrix` x = `right` by elimination with row pivots; absent where there is not
/// exactly one.
template <std::size_t Count>
std::optional<std::array<double, Count>> Solution(SquareMatrix<Count> matrix,
                                                  std::array<double, Count> right) {
  double largest = 0;
  for (const auto& row : matrix)
    for (const double value : row) largest = std::fmax(largest, std::fabs(value));
  for (std::size_t i = 0; i < Count; ++i) {
    std::size_t pivot = i;
    for (std::size_t k = i + 1; k < Count; ++k)
      if (std::fabs(matrix[k][i]) > std::fabs(matrix[pivot][i])) pivot = k;
    if (!(std::fabs(matrix[pivot][i]) > 1e-12 * largest)) return std::nullopt;
    std::swap(matrix[i], matrix[pivot]);
    std::swap(right[i], right[pivot]);
    for (std::size_t k = i + 1; k < Count; ++k) {
      const double factor = matrix[k][i] / matrix[i][i];
      for (std::size_t j = i; j < Count; ++j) matrix[k][j] -= factor * matrix[i][j];
      right[k] -= factor * right[i];
    }
  }
  for (std::size_t i = Count; i-- > 0;) {
    for (std::size_t j = i + 1; j < Count; ++j) right[i] -= matrix[i][j] * right[j];
    right[i] /= matrix[i][i];
  }
  return right;
}

}  // namespace graphize
