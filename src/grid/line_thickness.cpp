#include "grid/line_thickness.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "grid/line_paths.h"

namespace graphize {

namespace {

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

constexpr int kLasting = 4;  // columns; a rough edge changes the thickness for less

/// Whether a stretch of one thickness is the line alone. Where another thickness than the usual
/// one lasts it is, if the line's middle stays on its course: else a stroke runs along the line.
bool IsLineAlone(const GridLine& line, Span stretch, int thickness) {
  if (thickness == line.Thickness || stretch.Length() < kLasting) return true;
  double off = 0;
  for (int x = stretch.First; x <= stretch.Last; ++x) off += line.Runs[x].Middle() - line.RowAt(x);
  return std::abs(off) <= 0.3 * stretch.Length();
}

/// The most frequent thickness of the runs in the plot.
int UsualThickness(const GridLine& line, int thickest) {
  std::vector<int> count(static_cast<std::size_t>(thickest) + 1, 0);
  for (int x = line.Plot.First; x <= line.Plot.Last; ++x) {
    const int thickness = line.Runs[x].Thickness();
    if (thickness >= 1 && thickness <= thickest) ++count[thickness];
  }
  return static_cast<int>(std::max_element(count.begin() + 1, count.end()) - count.begin());
}

}  // namespace

void ReadRuns(const BitMap& map, double reach, int thickest, GridLine& line) {
  line.Runs.resize(line.Centre.size());
  for (int x = 0; x < map.Width(); ++x)
    line.Runs[x] = RunNear(map, x, line.RowAt(x), reach, 2 * thickest);
}

void ClassifyColumns(GridLine& line) {
  const double tolerance = 0.8 + 0.5 * (line.Thickest - line.Thinnest);
  line.Kinds.assign(line.Runs.size(), ColumnKind::Other);
  const Span everywhere{0, static_cast<int>(line.Runs.size()) - 1};
  VisitStretches(line, everywhere, [&](Span stretch, int thickness) {
    if (thickness < line.Thinnest || thickness > line.Thickest) return;
    if (!IsLineAlone(line, stretch, thickness)) return;
    const bool ragged = thickness != line.Thickness && stretch.Length() < kLasting;
    for (int x = stretch.First; x <= stretch.Last; ++x) {
      if (std::abs(line.Runs[x].Middle() - line.RowAt(x)) <= tolerance)
        line.Kinds[x] = ragged ? ColumnKind::Ragged : ColumnKind::Clean;
    }
  });
}

void MeasureThickness(int thickest, GridLine& line) {
  line.Thickness = UsualThickness(line, thickest);
  // Its own thickness is found all along the line, a stroke beside it in some place.
  struct Found {
    int Brief = 0, Lasting = 0;  // columns
    int Strips = 0, LastStrip = -1;
  };
  std::vector<Found> found(static_cast<std::size_t>(thickest) + 2);
  int all = 0;
  VisitStretches(line, line.Plot, [&](Span stretch, int thickness) {
    if (thickness < 1 || thickness > thickest || !IsLineAlone(line, stretch, thickness)) return;
    all += stretch.Length();
    Found& ofThickness = found[thickness];
    if (stretch.Length() < kLasting) {
      ofThickness.Brief += stretch.Length();
      return;
    }
    ofThickness.Lasting += stretch.Length();
    for (int x = stretch.First; x <= stretch.Last; ++x) {
      const int strip = x / kStripColumns;
      if (std::exchange(ofThickness.LastStrip, strip) != strip) ++ofThickness.Strips;
    }
  });
  line.Thinnest = line.Thickest = line.Thickness;
  const auto usual = [&](int thickness) {
    const Found& of = found[thickness];
    const bool rough = of.Brief > 0 && of.Brief * 8 >= all;
    const bool lasting = of.Lasting > 0 && (of.Lasting + of.Brief) * 8 >= all &&
                         of.Strips * kStripColumns * 5 >= line.Plot.Length() * 2;
    return rough || lasting;
  };
  while (line.Thinnest > 1 && usual(line.Thinnest - 1)) --line.Thinnest;
  while (line.Thickest < thickest && usual(line.Thickest + 1)) ++line.Thickest;

  ClassifyColumns(line);
}

}  // namespace graphize
