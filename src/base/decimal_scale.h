#pragma once

namespace graphize {

/// The smallest power of ten, up to 10^15, that makes whole numbers of both decimal fractions: with
/// those, sums and products are exact and one division gives the nearest number. 0 when there is
/// none, or when the whole numbers would not be exact.
double DecimalScale(double a, double b);

}  // namespace graphize
