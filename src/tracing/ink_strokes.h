#pragma once

#include <algorithm>
#include <vector>

#include "raster/plot_image.h"
#include "tracing/ink_column.h"

namespace graphize {

/// Ink of one column that belongs together.
struct Stroke {
  int Top, Bottom;  // its first and last black row
  double Mean;      // of all its black rows

  int Height() const { return Bottom - Top + 1; }
  bool Holds(int row) const { return row >= Top && row <= Bottom; }
};

/// The black row nearest to `wanted`, from `top` to `bottom`; of two the lower one, or else the
/// upper one. -1 when there is none.
int NearestInk(const InkColumn& column, double wanted, bool lowerFirst, int top, int bottom);

/// The ink around the black row `start`, stepping over up to `yIncrement` other rows.
Stroke CollectStroke(const InkColumn& column, int start, int yIncrement);

/// Calls `take` for all strokes that have ink from row `top` to row `bottom`, downward.
template <class Take>
void ForEachStroke(const InkColumn& column, int top, int bottom, int yIncrement, const Take& take) {
  bottom = std::min(bottom, column.Rows() - 1);
  for (int row = std::max(top, 0); row <= bottom; ++row) {
    if (!column[row]) continue;
    const Stroke stroke = CollectStroke(column, row, yIncrement);
    take(stroke);
    row = stroke.Bottom;
  }
}

/// Follows all ink that hangs together with a stroke from column to column.
class InkFront {
 public:
  InkFront(const PlotImage& image, const Stroke& start, int yIncrement)
      : image_(image), strokes_{start}, yIncrement_(yIncrement) {}

  /// Goes on to `column`, beside the one before. Behind a break, ink within the Y increment counts.
  void Advance(int column);
  /// Columns without ink since the last with some.
  int Missing() const { return missing_; }
  /// Whether there is ink here and `row` lies in it.
  bool Holds(int row) const;

 private:
  const PlotImage& image_;
  std::vector<Stroke> strokes_, next_;
  int yIncrement_, missing_ = 0;
};

/// Over how many columns, at most `enough`, ink hangs together with the stroke of `column` to the
/// right (`direction` 1) or left (-1), across breaks of up to `longestBreak` columns.
int ExtentOfInk(const PlotImage& image, const Stroke& stroke, int column, int direction,
                int longestBreak, int yIncrement, int enough);

}  // namespace graphize
