#pragma once

#include <array>
#include <optional>
#include <span>

namespace graphize {

struct PolynomialNode {
  double T = 0, F = 0;
};

inline constexpr int kHighestDegree = 5;

/// A least-squares polynomial in t.
struct Polynomial {
  std::array<double, kHighestDegree + 1> C{};  // of the powers of t
  double Rms = 0, Largest = 0;  // of the residuals; the rms with the degrees of freedom left
  double Leverage = 1;          // the variance at t = 0 is that of a residual times this

  double At(double t) const {
    double value = 0;
    for (auto c = C.rbegin(); c != C.rend(); ++c) value = value * t + *c;
    return value;
  }
};

/// By the normal equations, of a degree up to kHighestDegree; absent where they have no one
/// solution.
std::optional<Polynomial> FitPolynomial(std::span<const PolynomialNode> nodes, int degree);

}  // namespace graphize
