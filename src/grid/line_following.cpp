#include "grid/line_following.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/median.h"
#include "grid/line_pattern.h"
#include "grid/line_thickness.h"
#include "grid/theil_sen.h"

namespace graphize {

namespace {

constexpr int kNeighbourStrips = 4;  // on either side: what the local course is fitted to

/// The local course: through every strip the robust line of the nearest strips that know a row.
std::vector<float> SmoothCourse(const std::vector<FitPoint>& known, int width) {
  const int strips = (width + kStripColumns - 1) / kStripColumns;
  std::vector<double> rows(static_cast<std::size_t>(strips));
  const auto count = static_cast<int>(known.size());
  int nearest = 0;
  for (int strip = 0; strip < strips; ++strip) {
    const double x = MiddleOfStrip(strip);
    while (nearest + 1 < count &&
           std::abs(known[nearest + 1].X - x) <= std::abs(known[nearest].X - x))
      ++nearest;
    const int first =
        std::max(0, std::min(nearest - kNeighbourStrips, count - 2 * kNeighbourStrips - 1));
    const int last = std::min(count - 1, first + 2 * kNeighbourStrips);
    rows[strip] = FitTheilSenLine({known.begin() + first, known.begin() + last + 1}).At(x);
  }
  std::vector<float> course(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) {
    const double at = (x - MiddleOfStrip(0)) / kStripColumns;
    const int left = std::clamp(static_cast<int>(std::floor(at)), 0, std::max(0, strips - 2));
    const int right = std::min(left + 1, strips - 1);
    course[x] = static_cast<float>(rows[left] + (at - left) * (rows[right] - rows[left]));
  }
  return course;
}

std::vector<float> StraightCourse(const std::vector<FitPoint>& known, int width) {
  const FitLine line = FitTheilSenLine(known);
  std::vector<float> course(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) course[x] = static_cast<float>(line.At(x));
  return course;
}

/// Where the line runs in every strip of the plot in which it shows its usual thickness: the mean
/// of what lies near the median.
std::vector<FitPoint> RowsOfStrips(const GridLine& line, double slope, bool cleanOnly) {
  std::vector<FitPoint> known;
  std::vector<FitPoint> points;
  std::vector<double> rows;
  for (int first = line.Plot.First; first <= line.Plot.Last; first += kStripColumns) {
    points.clear();
    rows.clear();
    for (int x = first; x <= std::min(first + kStripColumns - 1, line.Plot.Last); ++x) {
      const BlackRun& run = line.Runs[x];
      if (run.Thickness() != line.Thickness || (cleanOnly && !line.IsClean(x))) continue;
      points.push_back({static_cast<double>(x), run.Middle() - slope * (x - first)});
      rows.push_back(points.back().Y);
    }
    if (points.empty()) continue;
    const double median = Median(rows);
    FitPoint sum;
    int near = 0;
    for (const FitPoint& point : points) {
      if (std::abs(point.Y - median) > 0.8) continue;
      sum.X += point.X;
      sum.Y += point.Y;
      ++near;
    }
    const double x = sum.X / near;
    known.push_back({x, sum.Y / near + slope * (x - first)});
  }
  return known;
}

/// Follows from a first course; false when nothing is there.
bool Refine(const BlackMap& map, int thickest, std::vector<float> course, GridLine& line) {
  line.Centre = std::move(course);
  ReadRuns(map.Bits, 2.5, thickest, line);
  MeasureThickness(thickest, line);
  for (int round = 0; round < 2; ++round) {
    const std::vector<FitPoint> known = RowsOfStrips(line, map.Slope, round > 0);
    if (known.empty()) return false;
    line.Centre = SmoothCourse(known, map.Bits.Width());
    ReadRuns(map.Bits, 0.5 * line.Thickness + 1, thickest, line);
    MeasureThickness(thickest, line);
  }
  return true;
}

int CleanColumns(const GridLine& line) {
  int clean = 0;
  for (int x = line.Plot.First; x <= line.Plot.Last; ++x) clean += line.IsClean(x) ? 1 : 0;
  return clean;
}

void MeasureBend(GridLine& line) {
  std::vector<FitPoint> points;
  for (int x = line.Columns.First; x <= line.Columns.Last; x += kStripColumns)
    points.push_back({static_cast<double>(x), line.RowAt(x)});
  const FitLine straight = FitTheilSenLine(points);
  line.Slope = straight.Slope;
  for (const FitPoint& point : points)
    line.Bend = std::max(line.Bend, std::abs(point.Y - straight.At(point.X)));
}

}  // namespace

GridLine FollowLine(const BlackMap& map, const ShearedMap& level, const LinePath& path, Span plot,
                    int thickest) {
  const int width = map.Bits.Width();
  std::vector<FitPoint> inPlot;
  const Span strips{plot.First / kStripColumns, plot.Last / kStripColumns};
  for (int strip = strips.First; strip <= strips.Last; ++strip) {
    if (path.Black[strip] == 0) continue;
    const int row = path.Rows[strip];
    const int column = level.ColumnOfMap(static_cast<int>(MiddleOfStrip(strip)), row);
    inPlot.push_back({static_cast<double>(column), level.RowOfMap(column, row)});
  }
  if (inPlot.empty()) return {};

  GridLine straight;
  straight.Plot = {std::clamp(level.ColumnOfMap(plot.First, path.Rows[strips.First]), 0, width - 1),
                   std::clamp(level.ColumnOfMap(plot.Last, path.Rows[strips.Last]), 0, width - 1)};
  GridLine bent = straight;
  // A path may have followed a curve for a while: the straight course does not. A scan may be bent
  // more than a straight course allows: the path is not. The better of the two is kept.
  const bool foundStraight = Refine(map, thickest, StraightCourse(inPlot, width), straight);
  const bool foundBent = Refine(map, thickest, SmoothCourse(inPlot, width), bent);
  if (!foundStraight && !foundBent) return {};
  const bool bentIsBetter =
      !foundStraight || (foundBent && CleanColumns(bent) > 1.05 * CleanColumns(straight));
  GridLine line = std::move(bentIsBetter ? bent : straight);
  FindPieces(line);
  if (!line.Pieces.empty()) MeasureBend(line);
  return line;
}

}  // namespace graphize
