#include "extraction/grid_line.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "extraction/robust_fit.h"

namespace graphize {

namespace {

constexpr int kNeighbourStrips = 4;  // on either side: what the local course is fitted to

double MiddleOfStrip(int strip) {
  return strip * kStripColumns + 0.5 * (kStripColumns - 1);
}

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
    rows[strip] = FitRobustLine({known.begin() + first, known.begin() + last + 1}).At(x);
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
  const FitLine line = FitRobustLine(known);
  std::vector<float> course(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) course[x] = static_cast<float>(line.At(x));
  return course;
}

void ReadRuns(const BitMap& map, double reach, int limit, GridLine& line) {
  line.Runs.resize(line.Centre.size());
  for (int x = 0; x < map.Width(); ++x) line.Runs[x] = RunNear(map, x, line.RowAt(x), reach, limit);
}

/// The stretches of columns in `columns` where the run keeps one thickness.
template <typename Visit>
void VisitStretches(const GridLine& line, Span columns, const Visit& visit) {
  for (int first = columns.First; first <= columns.Last;) {
    int last = first;
    const int thickness = line.Runs[first].Thickness();
    while (last < columns.Last && line.Runs[last + 1].Thickness() == thickness) ++last;
    visit(Span{first, last}, thickness);
    first = last + 1;
  }
}

/// The usual thickness, the range around it that is no exception, and which columns are clean.
///
/// A rough edge changes the thickness for a few columns only. Where another one lasts, it is the
/// line's only if the line's middle stays on its course: else a stroke runs along the line.
void MeasureThickness(Span plot, int thickest, GridLine& line) {
  constexpr int kLasting = 16;
  const auto columns = static_cast<int>(line.Runs.size());
  std::vector<int> count(static_cast<std::size_t>(thickest) + 2, 0);
  const auto possible = [&](int thickness) { return thickness >= 1 && thickness <= thickest; };
  for (int x = plot.First; x <= plot.Last; ++x)
    if (possible(line.Runs[x].Thickness())) ++count[line.Runs[x].Thickness()];
  const auto most = std::max_element(count.begin() + 1, count.end());
  line.Thickness = static_cast<int>(most - count.begin());
  const auto offCourse = [&](int x, double tolerance) {
    return std::abs(line.Runs[x].Middle() - line.RowAt(x)) > tolerance;
  };

  int all = 0;
  std::fill(count.begin(), count.end(), 0);
  VisitStretches(line, plot, [&](Span stretch, int thickness) {
    if (!possible(thickness)) return;
    for (int x = stretch.First; x <= stretch.Last; ++x) {
      if (thickness != line.Thickness && stretch.Length() >= kLasting && offCourse(x, 0.35))
        continue;
      ++count[thickness];
      ++all;
    }
  });
  line.Thinnest = line.Thickest = line.Thickness;
  const auto usual = [&](int thickness) { return count[thickness] * 8 >= all && all > 0; };
  while (line.Thinnest > 1 && usual(line.Thinnest - 1)) --line.Thinnest;
  while (line.Thickest < thickest && usual(line.Thickest + 1)) ++line.Thickest;

  line.Clean.assign(line.Runs.size(), 0);
  const double tolerance = 0.8 + 0.5 * (line.Thickest - line.Thinnest);
  VisitStretches(line, {0, columns - 1}, [&](Span stretch, int thickness) {
    if (thickness < line.Thinnest || thickness > line.Thickest) return;
    const bool lasting = thickness != line.Thickness && stretch.Length() >= kLasting;
    for (int x = stretch.First; x <= stretch.Last; ++x)
      line.Clean[x] = offCourse(x, lasting ? 0.35 : tolerance) ? 0 : 1;
  });
}

/// Where the line runs in every strip in which it shows its usual thickness, the rounding of the
/// map's shifts undone: the mean of what lies near the median.
std::vector<FitPoint> RowsOfStrips(const GridLine& line, const std::vector<float>& rounding,
                                   bool cleanOnly) {
  std::vector<FitPoint> known;
  std::vector<FitPoint> points;
  std::vector<double> rows;
  const auto width = static_cast<int>(line.Runs.size());
  for (int first = 0; first < width; first += kStripColumns) {
    points.clear();
    rows.clear();
    for (int x = first; x < std::min(first + kStripColumns, width); ++x) {
      const BlackRun& run = line.Runs[x];
      if (run.Thickness() != line.Thickness) continue;
      if (cleanOnly && !line.IsClean(x)) continue;
      points.push_back({static_cast<double>(x), run.Middle() + rounding[x]});
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
    known.push_back({sum.X / near, sum.Y / near});
  }
  return known;
}

int CleanColumns(const GridLine& line, Span plot) {
  int clean = 0;
  for (int x = plot.First; x <= plot.Last; ++x) clean += line.IsClean(x) ? 1 : 0;
  return clean;
}

/// What a map's followers need to know of it for one line.
struct Ground {
  const BitMap& Map;
  Span Plot;
  int Thickest = 1;
  std::vector<float> Rounding;  // per column: added to a row it undoes the rounding of the shifts
};

void SetCourse(const Ground& ground, std::vector<float> course, GridLine& line) {
  line.Centre = std::move(course);
  for (std::size_t x = 0; x < line.Centre.size(); ++x) line.Centre[x] -= ground.Rounding[x];
}

/// Follows from a first course; false when nothing is there.
bool Refine(const Ground& ground, std::vector<float> course, GridLine& line) {
  SetCourse(ground, std::move(course), line);
  ReadRuns(ground.Map, 2.5, 2 * ground.Thickest, line);
  MeasureThickness(ground.Plot, ground.Thickest, line);
  for (int round = 0; round < 2; ++round) {
    const std::vector<FitPoint> known = RowsOfStrips(line, ground.Rounding, round > 0);
    if (known.empty()) return false;
    SetCourse(ground, SmoothCourse(known, ground.Map.Width()), line);
    ReadRuns(ground.Map, 0.5 * line.Thickness + 1, 2 * ground.Thickest, line);
    MeasureThickness(ground.Plot, ground.Thickest, line);
  }
  return true;
}

bool IsBlackOnLine(const GridLine& line, int x) {
  const BlackRun& run = line.Runs[x];
  const double half = 0.5 * line.Thickness + 0.5;
  return !run.IsEmpty() && run.Top <= line.RowAt(x) + half && run.Bottom >= line.RowAt(x) - half;
}

/// The black stretches of the line's course over the whole map, those left out in which only
/// something else is seen, such as an upright line.
std::vector<Span> Dashes(const GridLine& line) {
  std::vector<Span> dashes;
  bool clean = false;
  for (int x = 0; x < static_cast<int>(line.Runs.size()); ++x) {
    if (!IsBlackOnLine(line, x)) continue;
    if (!dashes.empty() && dashes.back().Last == x - 1) {
      dashes.back().Last = x;
    } else {
      if (!dashes.empty() && !clean) dashes.pop_back();
      dashes.push_back({x, x});
      clean = false;
    }
    clean = clean || line.IsClean(x);
  }
  if (!dashes.empty() && !clean) dashes.pop_back();
  return dashes;
}

/// How long a break may be to count as the line's pattern: from the breaks inside the plot.
int LongestBreak(const std::vector<Span>& dashes, Span plot) {
  std::vector<double> breaks;
  for (std::size_t i = 1; i < dashes.size(); ++i) {
    if (dashes[i - 1].Last >= plot.First && dashes[i].First <= plot.Last)
      breaks.push_back(dashes[i].First - dashes[i - 1].Last - 1);
  }
  if (breaks.size() < 4) return 4;
  std::sort(breaks.begin(), breaks.end());
  return std::clamp(static_cast<int>(2 * breaks[breaks.size() * 3 / 4]), 4, 64);
}

/// Dashes joined over the breaks of the pattern; lone bits between long breaks are not the line's.
void FindPieces(Span plot, GridLine& line) {
  const std::vector<Span> dashes = Dashes(line);
  const int longest = LongestBreak(dashes, plot);
  std::vector<double> lengths, breaks;
  for (const Span& dash : dashes) {
    if (!line.Pieces.empty() && dash.First - line.Pieces.back().Last - 1 <= longest)
      line.Pieces.back().Last = dash.Last;
    else
      line.Pieces.push_back(dash);
  }
  std::erase_if(line.Pieces, [&](const Span& piece) {
    return piece.Length() < std::max(12, 2 * longest) || piece.Last < plot.First ||
           piece.First > plot.Last;
  });
  if (line.Pieces.empty()) return;
  line.Columns = {line.Pieces.front().First, line.Pieces.back().Last};

  int drawn = 0, black = 0;
  for (const Span& piece : line.Pieces) drawn += piece.Length();
  std::vector<double> periods;
  for (std::size_t i = 0; i < dashes.size(); ++i) {
    const auto inPiece = [&](const Span& piece) { return piece.Contains(dashes[i].First); };
    if (std::none_of(line.Pieces.begin(), line.Pieces.end(), inPiece)) continue;
    black += dashes[i].Length();
    if (i > 0 && dashes[i].First - dashes[i - 1].Last - 1 <= longest)
      periods.push_back(dashes[i].First - dashes[i - 1].First);
  }
  line.Coverage = static_cast<double>(black) / drawn;
  line.Periods = static_cast<int>(periods.size());
  if (periods.empty()) return;
  const double usual = Median(periods);
  const auto alike = std::count_if(periods.begin(), periods.end(), [&](double period) {
    return std::abs(period - usual) <= std::max(1.0, 0.15 * usual);
  });
  line.Regularity = static_cast<double>(alike) / static_cast<double>(periods.size());
}

double BendOf(const GridLine& line) {
  std::vector<FitPoint> points;
  for (int x = line.Columns.First; x <= line.Columns.Last; x += kStripColumns)
    points.push_back({static_cast<double>(x), line.RowAt(x)});
  const FitLine straight = FitRobustLine(points);
  double bend = 0;
  for (const FitPoint& point : points)
    bend = std::max(bend, std::abs(point.Y - straight.At(point.X)));
  return bend;
}

}  // namespace

BlackRun RunNear(const BitMap& map, int column, double row, double reach, int limit) {
  const int middle = static_cast<int>(std::lround(row));
  const int first = static_cast<int>(std::ceil(row - reach));
  const int last = static_cast<int>(std::floor(row + reach));
  const bool upFirst = middle > row;
  for (int distance = 0; middle - distance >= first || middle + distance <= last; ++distance) {
    for (const int at : {upFirst ? middle - distance : middle + distance,
                         upFirst ? middle + distance : middle - distance}) {
      if (at < first || at > last || !map.Get(column, at)) continue;
      BlackRun run{at, at};
      while (at - run.Top < limit && map.Get(column, run.Top - 1)) --run.Top;
      while (run.Bottom - at < limit && map.Get(column, run.Bottom + 1)) ++run.Bottom;
      return run;
    }
  }
  return {};
}

GridLine FollowLine(const UprightMap& upright, const LinePath& path, Span plot, int thickest) {
  const BitMap& map = upright.Bits;
  const int width = map.Width();
  plot = {std::clamp(plot.First, 0, width - 1), std::clamp(plot.Last, 0, width - 1)};
  std::vector<FitPoint> inPlot;
  for (int strip = plot.First / kStripColumns; strip <= plot.Last / kStripColumns; ++strip) {
    if (path.Black[strip] > 0)
      inPlot.push_back({MiddleOfStrip(strip), static_cast<double>(path.Rows[strip])});
  }
  if (inPlot.empty()) return {};

  Ground ground{map, plot, thickest, {}};
  GridLine straight;
  const int row = path.Rows[(plot.First + plot.Last) / 2 / kStripColumns];
  for (int x = 0; x < width; ++x) {
    straight.Shift.push_back(upright.ShiftAt(x, row));
    ground.Rounding.push_back(
        static_cast<float>(upright.ExactShiftAt(x, row) - straight.Shift.back()));
  }
  GridLine bent = straight;
  // A path may have followed a curve for a while: the straight course does not. A scan may be bent
  // more than a straight course allows: the path is not. The better of the two is kept.
  const bool foundStraight = Refine(ground, StraightCourse(inPlot, width), straight);
  const bool foundBent = Refine(ground, SmoothCourse(inPlot, width), bent);
  if (!foundStraight && !foundBent) return {};
  const bool bentIsBetter =
      !foundStraight ||
      (foundBent && CleanColumns(bent, plot) > 1.05 * CleanColumns(straight, plot));
  GridLine line = std::move(bentIsBetter ? bent : straight);
  FindPieces(plot, line);
  if (!line.Pieces.empty()) line.Bend = BendOf(line);
  return line;
}

}  // namespace graphize
