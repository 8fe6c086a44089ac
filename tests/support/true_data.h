#pragma once

#include <filesystem>
#include <vector>

namespace graphize::test {

struct TruePoint {
  double X = 0, Y = 0;
};

/// The last two numbers of every line of a delimited text file, below `headLines` lines of text.
std::vector<TruePoint> ReadPoints(const std::filesystem::path& path, char delimiter, int headLines);

/// The curve's Y at X, between two of its points.
double TrueY(const std::vector<TruePoint>& curve, double x);

/// The middle one of the values.
double Median(std::vector<double> values);

}  // namespace graphize::test
