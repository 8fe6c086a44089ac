#include "extraction/grid_lines.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "extraction/grid_evidence.h"
#include "extraction/grid_line.h"
#include "extraction/line_paths.h"
#include "extraction/plot_frame.h"
#include "extraction/stroke_protection.h"

namespace graphize {

namespace {

/// Shows how far the work is and asks whether it may go on; once stopped it stays so.
class Progress {
 public:
  Progress(const Desktop& desktop, StatusBar& status) : desktop_(desktop), status_(status) {
    status_.Status = "Removing grid lines please wait...";
    status_.ProgressVisible = true;
    status_.ProgressValue = 0;
  }
  ~Progress() { status_.ProgressVisible = false; }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void At(int percent) { status_.ProgressValue = percent; }
  bool GoOn() {
    stopped_ = stopped_ || desktop_.EscapeHeld();
    desktop_.Pump();
    return !stopped_;
  }
  bool Stopped() const { return stopped_; }

 private:
  const Desktop& desktop_;
  StatusBar& status_;
  bool stopped_ = false;
};

/// The greatest thickness of a line, pixels: what scanners make of half a millimetre.
int ThickestLine(const BitMap& map) {
  return std::clamp(std::min(map.Width(), map.Height()) / 200, 6, 24);
}

Span SpanOf(int a, int b) {
  return {std::min(a, b), std::max(a, b)};
}

PlotPlace PlaceOfPlot(const UprightMap& upright, const PlotImage& image,
                      const AxisCalibration& calibration, GridDirection direction) {
  const auto reference = [&](int i) {
    return upright.OfPicture(
        std::clamp<int>(calibration.PixelX[i], 0, image.Width() - 1),
        std::clamp<int>(image.Height() - calibration.PixelY[i], 0, image.Height() - 1));
  };
  const UprightMap::Place origin = reference(0);
  const UprightMap::Place along = reference(direction == GridDirection::Y ? 1 : 2);
  const UprightMap::Place across = reference(direction == GridDirection::Y ? 2 : 1);
  return {SpanOf(origin.X, along.X), SpanOf(origin.Y, across.Y), origin.X, origin.Y};
}

/// Whether the line runs through ground that another one holds.
bool IsSameLine(const GridLine& a, const GridLine& b, int column) {
  return std::abs(a.RowAt(column) - b.RowAt(column)) < 0.5 * (a.Thickness + b.Thickness) + 0.5;
}

/// A path whose middle lies on a line that is known already need not be followed again.
bool IsKnown(const std::vector<GridLine>& lines, const LinePath& path, int column) {
  const int row = path.Rows[column / kStripColumns];
  return std::any_of(lines.begin(), lines.end(), [&](const GridLine& line) {
    return std::abs(line.RowAt(column) - row) < 0.5 * line.Thickness + 0.6;
  });
}

struct Search {
  const UprightMap& Upright;
  BitMap Thin;
  PlotPlace Place;
  int Thickest = 6;

  int Middle() const { return (Place.Columns.First + Place.Columns.Last) / 2; }
  const BitMap& Map() const { return Upright.Bits; }
  std::vector<LinePath> Paths(Span rows, double presence, const KeepGoing& keepGoing) const {
    return FindLinePaths(Thin, Upright.ColumnShift.front() != Upright.ColumnShift.back(),
                         Place.Columns, rows, presence, keepGoing);
  }
};

/// All lines of the grid, from top to bottom, without the frame unless the click is on it.
std::vector<GridLine> FindAll(Search& search, UprightMap::Place click, Progress& progress) {
  const KeepGoing keepGoing = [&] { return progress.GoOn(); };
  const std::vector<LinePath> paths = search.Paths({0, search.Map().Height() - 1}, 0.55, keepGoing);
  std::vector<GridLine> lines;
  int followed = 0;
  for (const LinePath& path : paths) {
    if (!keepGoing()) return {};
    progress.At(40 + 30 * followed++ / static_cast<int>(paths.size()));
    if (IsKnown(lines, path, search.Middle())) continue;
    GridLine line = FollowLine(search.Upright, path, search.Place.Columns, search.Thickest);
    if (!IsGridLine(search.Map(), line, search.Place.Columns)) continue;
    const auto same = [&](const GridLine& known) {
      return IsSameLine(line, known, search.Middle());
    };
    if (std::none_of(lines.begin(), lines.end(), same)) lines.push_back(std::move(line));
  }
  std::sort(lines.begin(), lines.end(), [&](const GridLine& a, const GridLine& b) {
    return a.RowAt(search.Middle()) < b.RowAt(search.Middle());
  });
  EndAtFrame(search.Map(), search.Place, lines);

  const std::vector<bool> frame = FindFrame(search.Map(), search.Place, lines);
  const double nearby = 3 + search.Map().Width() / 400.0;
  bool frameClicked = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double distance = std::abs(lines[i].RowAt(click.X) - click.Y);
    if (frame[i] && distance <= nearby + 0.5 * lines[i].Thickness) frameClicked = true;
  }
  if (frameClicked) return lines;
  std::vector<GridLine> inner;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (!frame[i]) inner.push_back(std::move(lines[i]));
  return inner;
}

/// The one line nearest to the click, if any is near. A line that would not pass as one of the grid
/// by itself must have been hit.
std::vector<GridLine> FindNearest(Search& search, UprightMap::Place click, Progress& progress) {
  const KeepGoing keepGoing = [&] { return progress.GoOn(); };
  const int near = std::max(20, search.Map().Height() / 20);
  const int hit = 3 + search.Map().Width() / 400;
  std::vector<GridLine> best;
  double bestDistance = near + 1;
  for (const LinePath& path :
       search.Paths({click.Y - near - 5, click.Y + near + 5}, 0.3, keepGoing)) {
    if (!keepGoing()) return {};
    std::vector<GridLine> line{
        FollowLine(search.Upright, path, search.Place.Columns, search.Thickest)};
    if (!IsPlausibleLine(line[0], search.Place.Columns)) continue;
    double distance =
        std::max(0.0, std::abs(line[0].RowAt(click.X) - click.Y) - 0.5 * line[0].Thickness);
    if (distance > hit) {
      if (!IsGridLine(search.Map(), line[0], search.Place.Columns)) continue;
    }
    if (distance >= bestDistance) continue;
    EndAtFrame(search.Map(), search.Place, line);
    if (line.empty()) continue;
    bestDistance = distance;
    best = std::move(line);
  }
  return best;
}

std::string ResultText(const GridRemoval& removal, GridDirection direction, bool all) {
  const std::string name = direction == GridDirection::X ? "X grid line" : "Y grid line";
  const std::string lines =
      std::to_string(removal.Lines) + " " + name + (removal.Lines == 1 ? "" : "s") + " removed";
  if (removal.Stopped) return "Stopped: " + lines;
  if (removal.Lines > 0) return lines;
  return all ? "No " + name + "s found" : "No " + name + " near the click";
}

}  // namespace

GridRemoval RemoveGridLines(PlotImage& image, const AxisCalibration& calibration,
                            const Desktop& desktop, StatusBar& status, GridDirection direction,
                            bool all, int x, int y) {
  GridRemoval removal;
  if (!image.IsPresent()) return removal;
  if (!calibration.IsComplete()) {
    Tell(desktop, "Please define the axes first: grid lines are looked for along them",
         MessageIcon::Exclamation);
    return removal;
  }
  x = std::clamp(x, 0, image.Width() - 1);
  y = std::clamp(y, 0, image.Height() - 1);

  Progress progress(desktop, status);
  UprightMap upright =
      MakeUprightMap(image, calibration, direction, [&] { return progress.GoOn(); });
  progress.At(30);
  std::vector<GridLine> lines;
  if (!progress.Stopped()) {
    const int thickest = ThickestLine(upright.Bits);
    Search search{upright, ThinRuns(upright.Bits, thickest),
                  PlaceOfPlot(upright, image, calibration, direction), thickest};
    const UprightMap::Place click = upright.OfPicture(x, y);
    lines = all ? FindAll(search, click, progress) : FindNearest(search, click, progress);
  }

  for (std::size_t i = 0; i < lines.size(); ++i) {
    progress.At(70 + static_cast<int>(30 * i / lines.size()));
    if (!progress.GoOn()) break;
    for (const MapPixel& pixel : PixelsOfLineOnly(upright.Bits, lines[i])) {
      if (removal.Pixels++ == 0) BeginEdit(image);
      upright.Bits.Clear(pixel.Column, pixel.Row);
      const UprightMap::Place place = upright.InPicture(pixel.Column, pixel.Row);
      EditPixel(image, place.X, place.Y, kWhite);
    }
    ++removal.Lines;
  }
  removal.Stopped = progress.Stopped();
  status.Status = ResultText(removal, direction, all);
  return removal;
}

}  // namespace graphize
