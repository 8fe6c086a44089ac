#include "grid/grid_search.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "grid/grid_evidence.h"
#include "grid/line_following.h"
#include "grid/line_paths.h"
#include "grid/line_thickness.h"
#include "grid/plot_frame.h"
#include "grid/sheared_map.h"

namespace graphize {

namespace {

Span SpanOf(int a, int b) {
  return {std::min(a, b), std::max(a, b)};
}

/// The greatest thickness of a line, pixels: what scanners make of half a millimetre.
int ThickestLine(const BitMap& map) {
  return std::clamp(std::min(map.Width(), map.Height()) / 200, 6, 24);
}

constexpr double kSolid = 0.9;  // coverage

struct MapPosition {
  int Column = 0;
  double Row = 0;
};

/// The paths and lines of one map.
class Search {
 public:
  Search(const BlackMap& map, const AxisCalibration& calibration, GridDirection direction,
         const KeepGoing& keepGoing)
      : map_(map),
        keepGoing_(keepGoing),
        thickest_(ThickestLine(map.Bits)),
        level_(LevelOfThinRuns()) {
    const MapPixel origin = Reference(calibration, 0);
    const MapPixel across = Reference(calibration, direction == GridDirection::Y ? 2 : 1);
    const MapPixel alongLevel =
        level_.OfMap(Reference(calibration, direction == GridDirection::Y ? 1 : 2));
    const MapPixel acrossLevel = level_.OfMap(across), originLevel = level_.OfMap(origin);
    const Span columns = SpanOf(originLevel.Column, alongLevel.Column);
    place_ = {columns, columns, SpanOf(originLevel.Row, acrossLevel.Row), origin, across};
    originRow_ = originLevel.Row;
  }

  const PlotPlace& Place() const { return place_; }
  Span AllRows() const { return {0, level_.Bits.Height() - 1}; }
  int LevelRow(MapPixel pixel) const { return level_.OfMap(pixel).Row; }

  std::vector<LinePath> Paths(Span rows, double presence) const {
    return FindLinePaths(level_, place_.Columns, rows, presence, keepGoing_);
  }
  GridLine Follow(const LinePath& path) const {
    return FollowLine(map_, level_, path, place_.Columns, thickest_);
  }
  /// Where a thicker curve runs along a line for most of the plot, the usual thickness is the
  /// curve's: what is no line so may be one of less thickness.
  GridLine FollowGridLine(const LinePath& path) const {
    GridLine line = Follow(path);
    if (line.Thickness == 1 || line.Coverage < kSolid || IsGridLine(map_, line)) return line;
    return FollowLine(map_, level_, path, place_.Columns, line.Thickness - 1);
  }
  /// Where a path runs in the middle of the plot, on the sheared map.
  int MiddleRow(const LinePath& path) const { return path.Rows[Strip()]; }
  bool KeepGoing() const { return keepGoing_(); }

  /// The axis line shows how far the plot goes beyond the reference points.
  void WidenPlot(const std::vector<LinePath>& paths) {
    for (const LinePath& path : paths) {
      if (std::abs(path.Rows[Strip()] - originRow_) > 4) continue;
      std::vector<GridLine> axis{Follow(path)};
      if (axis[0].Pieces.empty() || !IsAxis(place_, axis[0])) continue;
      EndAtFrame(map_, place_, axis);
      if (axis.empty()) continue;
      const auto levelColumn = [&](int column) {
        return level_
            .OfMap({column, std::clamp(static_cast<int>(std::lround(axis[0].RowAt(column))), 0,
                                       map_.Bits.Height() - 1)})
            .Column;
      };
      place_.Columns.First = std::min(place_.Columns.First, levelColumn(axis[0].Columns.First));
      place_.Columns.Last = std::max(place_.Columns.Last, levelColumn(axis[0].Columns.Last));
      return;
    }
  }

  const BlackMap& Map() const { return map_; }
  /// Where a path runs in the middle of the plot, on the map.
  MapPosition Middle(const LinePath& path) const {
    const int row = MiddleRow(path);
    const int column = MiddleColumn(row);
    return {column, level_.RowOfMap(column, row)};
  }

 private:
  ShearedMap LevelOfThinRuns() const {
    const BitMap thin = ThinRuns(map_.Bits, thickest_);
    keepGoing_();  // on a large page either takes a while
    return ShearMap(thin, map_.Slope);
  }
  MapPixel Reference(const AxisCalibration& calibration, int i) const {
    const int height = map_.Transposed ? map_.Bits.Width() : map_.Bits.Height();
    const MapPixel pixel = map_.OfPicture(calibration.PixelX[i], height - calibration.PixelY[i]);
    return {std::clamp(pixel.Column, 0, map_.Bits.Width() - 1),
            std::clamp(pixel.Row, 0, map_.Bits.Height() - 1)};
  }
  int Strip() const { return (place_.Columns.First + place_.Columns.Last) / 2 / kStripColumns; }
  int MiddleColumn(int row) const {
    return std::clamp(level_.ColumnOfMap(static_cast<int>(MiddleOfStrip(Strip())), row), 0,
                      map_.Bits.Width() - 1);
  }

  const BlackMap& map_;
  const graphize::KeepGoing& keepGoing_;
  const int thickest_;
  const ShearedMap level_;  // of what may belong to a line
  PlotPlace place_;
  int originRow_ = 0;  // on the sheared map
};

/// A path whose middle lies on a line that is known already need not be followed again.
bool IsKnown(const std::vector<GridLine>& lines, const Search& search, const LinePath& path) {
  const MapPosition middle = search.Middle(path);
  return std::any_of(lines.begin(), lines.end(), [&](const GridLine& line) {
    return std::abs(line.RowAt(middle.Column) - middle.Row) < 0.5 * line.Thickness + 0.6;
  });
}

/// Which of `lines` is the same line.
std::vector<GridLine>::iterator FindKnown(std::vector<GridLine>& lines, const GridLine& line) {
  const int column = (line.Plot.First + line.Plot.Last) / 2;
  return std::find_if(lines.begin(), lines.end(), [&](const GridLine& known) {
    return std::abs(line.RowAt(column) - known.RowAt(column)) <
           0.5 * (line.Thickness + known.Thickness) + 0.5;
  });
}

/// Every line on the search's map that looks like one of the grid or frame. None when stopped.
std::vector<GridLine> LinesOn(Search& search, const std::function<void(double)>& progress) {
  const std::vector<LinePath> paths = search.Paths(search.AllRows(), 0.55);
  search.WidenPlot(paths);
  std::vector<GridLine> lines;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!search.KeepGoing()) return {};
    progress(static_cast<double>(i) / static_cast<double>(paths.size()));
    if (IsKnown(lines, search, paths[i])) continue;
    GridLine line = search.FollowGridLine(paths[i]);
    if (IsGridLine(search.Map(), line) && FindKnown(lines, line) == lines.end())
      lines.push_back(std::move(line));
  }
  return lines;
}

/// A line found with its faint pixels as it is seen in black alone; false when next to nothing of
/// it is black: it is none, or was wiped out.
bool ReadBlack(const BlackMap& map, GridLine& line) {
  const int thickest = ThickestLine(map.Bits);
  ReadRuns(map.Bits, 0.5 * line.Thickness, thickest, line);
  MeasureThickness(thickest, line);
  int alone = 0, strips = 0, lastStrip = -1;
  for (int x = line.Plot.First; x <= line.Plot.Last; ++x) {
    if (!line.IsClean(x)) continue;
    ++alone;
    if (std::exchange(lastStrip, x / kStripColumns) != lastStrip) ++strips;
  }
  return alone * 25 >= line.Plot.Length() && strips * kStripColumns * 4 >= line.Plot.Length();
}

/// How much of the plot the line's pieces cover, in columns.
int DrawnColumns(const GridLine& line) {
  int columns = 0;
  for (const Span& piece : line.Pieces)
    columns += std::max(
        0, std::min(piece.Last, line.Plot.Last) - std::max(piece.First, line.Plot.First) + 1);
  return columns;
}

/// Adds the lines of the grid among `more`, found with their faint pixels; one that is known may
/// turn out longer. `frame` tells which of `more` are the frame's.
void AddFaint(const BlackMap& map, std::vector<GridLine> more, const std::vector<bool>& frame,
              std::vector<GridLine>& lines) {
  for (std::size_t i = 0; i < more.size(); ++i) {
    GridLine& line = more[i];
    const auto known = FindKnown(lines, line);
    if (known != lines.end()) {
      if (DrawnColumns(line) <= DrawnColumns(*known) + line.Plot.Length() / 20) continue;
      known->Pieces = line.Pieces;
      known->Columns = line.Columns;
    } else if (!frame[i] && ReadBlack(map, line)) {
      lines.push_back(std::move(line));
    }
  }
}

void SortByRow(const PlotPlace& place, std::vector<GridLine>& lines) {
  std::sort(lines.begin(), lines.end(), [&](const GridLine& a, const GridLine& b) {
    return a.RowAt(place.Origin.Column) < b.RowAt(place.Origin.Column);
  });
}

struct NearLine {
  GridLine Line;
  double Distance = 0;  // from the click, rows
};

/// The line on the search's map that is nearest to the click.
std::optional<NearLine> NearestOn(Search& search, MapPixel click) {
  const int hit = ReachOfClick(search.Map());
  const int row = search.LevelRow(click);
  const std::vector<LinePath> paths = search.Paths(search.AllRows(), 0.3);
  search.WidenPlot(paths);
  std::optional<NearLine> best;
  // To follow a path takes its time: those near the click first, and no farther than needed. A
  // line may lie some rows off its path's middle.
  constexpr int kOffPath = 5;
  int near = -1;
  for (int far = 20; near < search.Map().Bits.Height(); near = far, far *= 2) {
    for (const LinePath& path : paths) {
      const int away = std::abs(search.MiddleRow(path) - row);
      if (away <= near || away > far) continue;
      if (!search.KeepGoing()) return std::nullopt;
      std::vector<GridLine> line{search.Follow(path)};
      if (!IsPlausibleLine(line[0])) continue;
      const double distance = std::max(
          0.0, std::abs(line[0].RowAt(click.Column) - click.Row) - 0.5 * line[0].Thickness);
      if (best && distance >= best->Distance) continue;
      if (distance > hit && !IsGridLine(search.Map(), line[0])) continue;
      EndAtFrame(search.Map(), search.Place(), line);
      if (line.empty()) continue;
      if (distance > hit && !ReachBothEnds(search.Map(), search.Place(), line)[0]) continue;
      best = NearLine{std::move(line[0]), distance};
    }
    if (best && best->Distance + kOffPath <= far) break;
  }
  return best;
}

}  // namespace

int ReachOfClick(const BlackMap& map) {
  return 3 + map.Bits.Width() / 400;
}

std::vector<GridLine> FindGridLines(const SearchMaps& maps, const AxisCalibration& calibration,
                                    GridDirection direction, MapPixel click,
                                    const KeepGoing& keepGoing,
                                    const std::function<void(double)>& progress) {
  const double half = maps.WithFaint ? 0.5 : 1;
  Search search(*maps.Black, calibration, direction, keepGoing);
  std::vector<GridLine> lines = LinesOn(search, [&](double part) { progress(half * part); });
  const BlackMap& map = *maps.Black;
  const PlotPlace& place = search.Place();
  SortByRow(place, lines);
  EndAtFrame(map, place, lines);
  std::vector<bool> frame = FindFrame(map, place, lines);
  if (maps.WithFaint) {
    Search faint(*maps.WithFaint, calibration, direction, keepGoing);
    std::vector<GridLine> more = LinesOn(faint, [&](double part) { progress(half + half * part); });
    SortByRow(place, more);
    EndAtFrame(map, place, more);
    const std::vector<bool> faintFrame = FindFrame(*maps.WithFaint, place, more);
    AddFaint(map, std::move(more), faintFrame, lines);
    frame.resize(lines.size(), false);
  }
  if (!keepGoing()) return {};
  const std::vector<bool> whole =
      ReachBothEnds(maps.WithFaint ? *maps.WithFaint : map, place, lines);
  const int hit = ReachOfClick(map);
  bool frameClicked = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double distance = std::abs(lines[i].RowAt(click.Column) - click.Row);
    if (frame[i] && distance <= hit + 0.5 * lines[i].Thickness) frameClicked = true;
  }
  std::vector<GridLine> wanted;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (frame[i] ? frameClicked : whole[i]) wanted.push_back(std::move(lines[i]));
  return wanted;
}

std::vector<GridLine> FindNearestLine(const SearchMaps& maps, const AxisCalibration& calibration,
                                      GridDirection direction, MapPixel click,
                                      const KeepGoing& keepGoing) {
  std::vector<GridLine> nearest;
  Search search(*maps.Black, calibration, direction, keepGoing);
  std::optional<NearLine> best = NearestOn(search, click);
  if (maps.WithFaint) {
    Search withFaint(*maps.WithFaint, calibration, direction, keepGoing);
    std::optional<NearLine> faint = NearestOn(withFaint, click);
    // The same line, or one that is farther away, is better known by what is black.
    if (faint && (!best || faint->Distance + 2 < best->Distance) &&
        ReadBlack(*maps.Black, faint->Line))
      best = std::move(faint);
  }
  if (best && keepGoing()) nearest.push_back(std::move(best->Line));
  return nearest;
}

}  // namespace graphize
