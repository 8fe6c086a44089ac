#include "grid/grid_search.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "grid/grid_evidence.h"
#include "grid/line_following.h"
#include "grid/line_paths.h"
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
    place_ = {SpanOf(originLevel.Column, alongLevel.Column),
              SpanOf(originLevel.Row, acrossLevel.Row), origin, across};
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

  /// A path whose middle lies on a line that is known already need not be followed again.
  bool IsKnown(const std::vector<GridLine>& lines, const LinePath& path) const {
    const int row = path.Rows[Strip()];
    const int column = MiddleColumn(row);
    const double rowOfMap = level_.RowOfMap(column, row);
    return std::any_of(lines.begin(), lines.end(), [&](const GridLine& line) {
      return std::abs(line.RowAt(column) - rowOfMap) < 0.5 * line.Thickness + 0.6;
    });
  }
  bool IsKnown(const std::vector<GridLine>& lines, const GridLine& line) const {
    const int column = (line.Plot.First + line.Plot.Last) / 2;
    return std::any_of(lines.begin(), lines.end(), [&](const GridLine& known) {
      return std::abs(line.RowAt(column) - known.RowAt(column)) <
             0.5 * (line.Thickness + known.Thickness) + 0.5;
    });
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

}  // namespace

int ReachOfClick(const BlackMap& map) {
  return 3 + map.Bits.Width() / 400;
}

std::vector<GridLine> FindGridLines(const BlackMap& map, const AxisCalibration& calibration,
                                    GridDirection direction, MapPixel click,
                                    const KeepGoing& keepGoing,
                                    const std::function<void(double)>& progress) {
  Search search(map, calibration, direction, keepGoing);
  const std::vector<LinePath> paths = search.Paths(search.AllRows(), 0.55);
  search.WidenPlot(paths);
  std::vector<GridLine> lines;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!search.KeepGoing()) return {};
    progress(static_cast<double>(i) / static_cast<double>(paths.size()));
    if (search.IsKnown(lines, paths[i])) continue;
    GridLine line = search.Follow(paths[i]);
    if (IsGridLine(map, line) && !search.IsKnown(lines, line)) lines.push_back(std::move(line));
  }
  const int column = search.Place().Origin.Column;
  std::sort(lines.begin(), lines.end(), [&](const GridLine& a, const GridLine& b) {
    return a.RowAt(column) < b.RowAt(column);
  });
  EndAtFrame(map, search.Place(), lines);

  const std::vector<bool> frame = FindFrame(map, search.Place(), lines);
  const int hit = ReachOfClick(map);
  bool frameClicked = false;
  std::vector<GridLine> inner;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double distance = std::abs(lines[i].RowAt(click.Column) - click.Row);
    if (frame[i] && distance <= hit + 0.5 * lines[i].Thickness) frameClicked = true;
    if (!frame[i]) inner.push_back(lines[i]);
  }
  return frameClicked ? lines : inner;
}

std::vector<GridLine> FindNearestLine(const BlackMap& map, const AxisCalibration& calibration,
                                      GridDirection direction, MapPixel click,
                                      const KeepGoing& keepGoing) {
  Search search(map, calibration, direction, keepGoing);
  const int hit = ReachOfClick(map);
  const int row = search.LevelRow(click);
  const std::vector<LinePath> paths = search.Paths(search.AllRows(), 0.3);
  std::vector<GridLine> best;
  double nearest = 0;
  // To follow a path takes its time: those near the click first, and no farther than needed. A
  // line may lie some rows off its path's middle.
  constexpr int kOffPath = 5;
  int near = -1;
  for (int far = 20; near < map.Bits.Height(); near = far, far *= 2) {
    for (const LinePath& path : paths) {
      const int away = std::abs(search.MiddleRow(path) - row);
      if (away <= near || away > far) continue;
      if (!search.KeepGoing()) return {};
      std::vector<GridLine> line{search.Follow(path)};
      if (!IsPlausibleLine(line[0])) continue;
      const double distance = std::max(
          0.0, std::abs(line[0].RowAt(click.Column) - click.Row) - 0.5 * line[0].Thickness);
      if (!best.empty() && distance >= nearest) continue;
      if (distance > hit && !IsGridLine(map, line[0])) continue;
      EndAtFrame(map, search.Place(), line);
      if (line.empty()) continue;
      nearest = distance;
      best = std::move(line);
    }
    if (!best.empty() && nearest + kOffPath <= far) break;
  }
  return best;
}

}  // namespace graphize
