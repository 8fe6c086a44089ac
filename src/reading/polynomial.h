#pragma once

#include <array>
#include <optional>
#include <span>

namespace graphize {

struct PolynomialNode {
  double T = 0, F = 0;
};

/// A least-squares polynomial in t.
struct Polynomial {
  std::array<double, 4> C{};    // of t^0 to t^3
  double Rms = 0, Largest = 0;  // of the residuals; the rms with the degrees of freedom left
  double Leverage = 1;          // the variance at t = 0 is that of a residual times this

  double At(double t) const { return C[0] + t * (C[1] + t * (C[2] + t * C[3])); }
};

/// By the normal equations, of a degree from 0 to 3; absent where they have no one solution.
std::optional<Polynomial> FitPolynomial(std::span<const PolynomialNode> nodes, int degree);

}  // namespace graphize
