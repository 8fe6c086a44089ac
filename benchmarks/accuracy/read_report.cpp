#include "read_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "calibration/transform.h"
#include "data/row_errors.h"
#include "measure.h"
#include "read_plots.h"
#include "reading/read_curve.h"

namespace graphize::accuracy {

namespace {

constexpr unsigned kSeeds = 6;
constexpr double kNothing = 99;  // rms of a curve that was not read

/// How far above or below the course, in pixels; the shortest distance beyond its ends.
double HeightAbove(const CurvePoint& point, const std::vector<PixelPosition>& course,
                   double shortest) {
  double least = -1;
  for (std::size_t i = 1; i < course.size(); ++i) {
    const PixelPosition a = course[i - 1], b = course[i];
    if ((a.X - point.X) * (b.X - point.X) > 0 || a.X == b.X) continue;
    const double y = a.Y + (point.X - a.X) / (b.X - a.X) * (b.Y - a.Y);
    const double height = std::fabs(y - point.Y);
    if (least < 0 || height < least) least = height;
  }
  return least < 0 ? shortest : least;
}

/// The error of Y at the point's X, in standard uncertainties of what is exported.
double SigmasOff(const ReadPlot& plot, const CurvePoint& point) {
  const int height = plot.Picture.Height();
  const RealPoint real = RealPointAt(plot.Axes, point.X, height - point.Y);
  const Certainty certainty{static_cast<float>(point.Sigma * point.AcrossX),
                            static_cast<float>(point.Sigma * point.AcrossY)};
  const RowError error =
      StandardErrorAt(plot.Axes, height, {static_cast<float>(point.X), static_cast<float>(point.Y)},
                      certainty, static_cast<float>(real.X), static_cast<float>(real.Y));
  return std::fabs(real.Y - plot.Value(real.X)) / error.Y;
}

struct FamilyResult {
  std::vector<double> Rms;  // of each plot
  double Coverage = 1, FalsePart = 0;
  int Points = 0, WithinOne = 0, WithinTwo = 0;
  double Vertical = 0;  // sum of squares
  int Silent = 0;       // plots with false points and no doubt told

  void Add(const ReadPlot& plot) {
    PictureOperation operation;
    const CurveReading reading =
        ReadCurve(plot.Picture, plot.Axes, {plot.Click.X, plot.Click.Y}, operation);
    double sum = 0;
    int wrong = 0;
    std::vector<bool> isCovered(static_cast<std::size_t>(plot.Picture.Width()));
    for (const CurvePoint& point : reading.Points) {
      const double distance = DistanceTo({point.X, point.Y}, plot.Course);
      sum += distance * distance;
      const double sigmas = plot.Value ? SigmasOff(plot, point) : distance / point.Sigma;
      WithinOne += sigmas <= 1 ? 1 : 0;
      WithinTwo += sigmas <= 2 ? 1 : 0;
      Vertical += std::pow(HeightAbove(point, plot.Course, distance), 2);
      ++Points;
      const auto column = static_cast<std::size_t>(std::max(std::lround(point.X), 0L));
      if (distance > kNear)
        ++wrong;
      else if (column < isCovered.size())
        isCovered[column] = true;
    }
    const auto count = static_cast<double>(reading.Points.size());
    Rms.push_back(reading.Points.empty() ? kNothing : std::sqrt(sum / count));
    if (wrong > 0) FalsePart = std::max(FalsePart, wrong / count);
    Silent += wrong > 0 && reading.Doubts.empty() ? 1 : 0;
    const auto [left, right] =
        std::minmax_element(plot.Course.begin(), plot.Course.end(),
                            [](PixelPosition a, PixelPosition b) { return a.X < b.X; });
    const int first = static_cast<int>(std::ceil(left->X));
    const int last = static_cast<int>(std::floor(right->X));
    const auto covered = std::count(isCovered.begin() + first, isCovered.begin() + last + 1, true);
    Coverage = std::min(Coverage, static_cast<double>(covered) / (last - first + 1));
  }
};

}  // namespace

int PrintReadTable() {
  std::puts(
      "\n| plot, clicked once | rms, middle | rms, worst | target | upright | coverage | false | "
      "within 1 sigma | within 2 | false and not told | met |\n"
      "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---|");
  int missed = 0;
  for (const ReadFamily& family : ReadFamilies()) {
    FamilyResult result;
    for (unsigned seed = 1; seed <= kSeeds; ++seed) result.Add(family.Draw(seed));
    std::sort(result.Rms.begin(), result.Rms.end());
    const double middle = result.Rms[kSeeds / 2], worst = result.Rms.back();
    const bool met = middle <= family.Middle && worst <= family.Worst &&
                     result.Coverage >= family.Coverage && result.FalsePart == 0;
    missed += met ? 0 : 1;
    const auto part = [&](int points) { return 100.0 * points / std::max(result.Points, 1); };
    std::printf(
        "| %s | %.3f | %.3f | %.2f / %.2f | %.3f | %.1f %% | %.1f %% | %.0f %% | %.0f %% | %d | %s "
        "|\n",
        family.Name.c_str(), middle, worst, family.Middle, family.Worst,
        std::sqrt(result.Vertical / std::max(result.Points, 1)), 100 * result.Coverage,
        100 * result.FalsePart, part(result.WithinOne), part(result.WithinTwo), result.Silent,
        met ? "yes" : "**no**");
  }
  return missed;
}

}  // namespace graphize::accuracy
