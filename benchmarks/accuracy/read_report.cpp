#include "read_report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "calibration/transform.h"
#include "data/row_errors.h"
#include "digitizer.h"
#include "measure.h"
#include "raster/black_white.h"
#include "read_plots.h"
#include "reading/read_curve.h"

namespace graphize::accuracy {

namespace {

constexpr double kNothing = 99;  // rms of a curve that was not read

/// How far above or below the course, in pixels; the shortest distance beyond its ends.
double HeightAbove(PixelPosition point, const std::vector<PixelPosition>& course, double shortest) {
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

/// A point, and how many of its standard uncertainties it is off; tracers tell none.
struct Judged {
  PixelPosition At;
  double SigmasOff = 0;
};

/// What one way makes of a family's plots.
struct WayResult {
  std::vector<double> Rms;  // of each plot
  double Coverage = 1, FalsePart = 0;
  int Points = 0, WithinOne = 0, WithinTwo = 0;
  double Vertical = 0;  // sum of squares
  int Silent = 0;       // plots with false points and no doubt told

  void Add(const ReadPlot& plot, const std::vector<Judged>& points, bool isDoubted) {
    double sum = 0;
    int wrong = 0;
    std::vector<bool> isCovered(static_cast<std::size_t>(plot.Picture.Width()));
    for (const Judged& point : points) {
      const double distance = DistanceTo(point.At, plot.Course);
      sum += distance * distance;
      WithinOne += point.SigmasOff <= 1 ? 1 : 0;
      WithinTwo += point.SigmasOff <= 2 ? 1 : 0;
      Vertical += std::pow(HeightAbove(point.At, plot.Course, distance), 2);
      ++Points;
      const auto column = static_cast<std::size_t>(std::max(std::lround(point.At.X), 0L));
      if (distance > kNear)
        ++wrong;
      else if (column < isCovered.size())
        isCovered[column] = true;
    }
    const auto count = static_cast<double>(points.size());
    Rms.push_back(points.empty() ? kNothing : std::sqrt(sum / count));
    if (wrong > 0) FalsePart = std::max(FalsePart, wrong / count);
    Silent += wrong > 0 && !isDoubted ? 1 : 0;
    const auto [left, right] =
        std::minmax_element(plot.Course.begin(), plot.Course.end(),
                            [](PixelPosition a, PixelPosition b) { return a.X < b.X; });
    const int first = static_cast<int>(std::ceil(left->X));
    const int last = static_cast<int>(std::floor(right->X));
    const auto covered = std::count(isCovered.begin() + first, isCovered.begin() + last + 1, true);
    Coverage = std::min(Coverage, static_cast<double>(covered) / (last - first + 1));
  }
  double Middle() {
    std::sort(Rms.begin(), Rms.end());
    return Rms[Rms.size() / 2];
  }
  double Worst() const { return *std::max_element(Rms.begin(), Rms.end()); }
};

void AddReading(WayResult& result, const ReadPlot& plot) {
  PictureOperation operation;
  const CurveReading reading =
      ReadCurve(plot.Picture, FrameOf(plot.Axes, plot.Picture.Width(), plot.Picture.Height()), {},
                {plot.Click.X, plot.Click.Y}, operation);
  std::vector<Judged> points;
  for (const CurvePoint& point : reading.Points)
    points.push_back({{point.X, point.Y},
                      plot.Value ? SigmasOff(plot, point)
                                 : DistanceTo({point.X, point.Y}, plot.Course) / point.Sigma});
  result.Add(plot, points, !reading.Doubts.empty());
}

/// As a user traces it: reduced to black and white, from its first black pixel on.
void AddTrace(WayResult& result, const ReadPlot& plot, Tracer tracer) {
  Raster reduced = plot.Picture.Clone();
  ReduceToBlackAndWhite(reduced);
  const int height = reduced.Height();
  const auto start = std::find_if(plot.Course.begin(), plot.Course.end(), [&](PixelPosition at) {
    const auto x = std::lround(at.X), y = std::lround(at.Y);
    return x >= 0 && y >= 0 && x < reduced.Width() && y < height &&
           IsBlackPixel(reduced.Row(static_cast<int>(y))[x]);
  });
  std::vector<Judged> points;
  if (start != plot.Course.end()) {
    Digitizer digitizer(plot.Picture);
    const AxisCalibration& axes = plot.Axes;
    std::array<ReferencePoint, 3> references;
    for (std::size_t i = 0; i < references.size(); ++i)
      references[i] = {
          {static_cast<double>(axes.PixelX[i]), static_cast<double>(height - axes.PixelY[i])},
          ShortestText(axes.ValueX[i]),
          ShortestText(axes.ValueY[i])};
    digitizer.Calibrate(references);
    digitizer.Trace(tracer, *start);
    for (const PixelPosition& at : digitizer.Points(axes)) points.push_back({at});
  }
  result.Add(plot, points, false);
}

}  // namespace

int PrintReadTable(unsigned firstSeed, std::string_view part) {
  std::puts(
      "<!-- read -->\n| plot, clicked once | by | rms, middle | rms, worst | target | upright | "
      "coverage | false | within 1 sigma | within 2 | false and not told | met |\n"
      "|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---|");
  int missed = 0;
  for (const ReadFamily& family : ReadFamilies()) {
    if (family.Name.find(part) == std::string::npos) continue;
    WayResult read, edges, smooth;
    for (unsigned seed = firstSeed; seed < firstSeed + family.Plots; ++seed) {
      const ReadPlot plot = family.Draw(seed);
      AddReading(read, plot);
      // A page that no axes can be clicked on in whole pixels of 16 bits is for the reading alone.
      if (!plot.Axes.IsComplete()) continue;
      AddTrace(edges, plot, Tracer::Edges);
      AddTrace(smooth, plot, Tracer::Smooth);
    }
    const double middle = read.Middle(), worst = read.Worst();
    const bool met = middle <= family.Middle && worst <= family.Worst &&
                     read.Coverage >= family.Coverage && read.FalsePart == 0;
    missed += met ? 0 : 1;
    const auto percent = [&](int points) { return 100.0 * points / std::max(read.Points, 1); };
    const auto upright = [](const WayResult& way) {
      return std::sqrt(way.Vertical / std::max(way.Points, 1));
    };
    std::printf(
        "| %s | reading | %.3f | %.3f | %.2f / %.2f | %.3f | %.1f %% | %.1f %% | %.0f %% | %.0f %% "
        "| %d | %s |\n",
        family.Name.c_str(), middle, worst, family.Middle, family.Worst, upright(read),
        100 * read.Coverage, 100 * read.FalsePart, percent(read.WithinOne), percent(read.WithinTwo),
        read.Silent, met ? "yes" : "**no**");
    for (auto& [name, way] : {std::pair("edges", &edges), std::pair("smooth", &smooth)})
      if (!way->Rms.empty())
        std::printf("| | %s | %.2f | %.2f | - | %.2f | %.1f %% | %.1f %% | - | - | - | - |\n", name,
                    way->Middle(), way->Worst(), upright(*way), 100 * way->Coverage,
                    100 * way->FalsePart);
  }
  return missed;
}

}  // namespace graphize::accuracy
