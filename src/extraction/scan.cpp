#include "extraction/scan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/number_pattern.h"
#include "base/numbers.h"

namespace graphize {

namespace {

/// Columns are searched in tiles of this many pixels, row after row: the raster is read in order of
/// its memory, and a tile takes less than the time in which a held Escape must be seen.
constexpr int kTileWidth = 128;

struct FoundPixel {
  std::int16_t X, Y;
};

/// The columns or rows that are looked at, within the picture.
struct GridRange {
  int First, Last, Step;

  bool IsEmpty() const { return First > Last; }
};

GridRange RangeOf(std::int32_t low, std::int32_t high, int step, int size) {
  long long first = low + 2LL;
  const long long last = std::min(high - 2LL, size - 1LL);
  if (first < 0) first += (-first + step - 1) / step * step;
  if (first > last) return {0, -1, step};
  return {ToInt16(static_cast<double>(first)), ToInt16(static_cast<double>(last)), step};
}

/// The step in an increment box; what is no step becomes 1, also in the box.
int StepOf(std::string& text) {
  const int step = IncrementOf(text);
  if (step >= 1) return step;
  text = "1";
  return 1;
}

/// The status panel and the progress bar during the scan; afterwards they are as before.
class ScanStatus {
 public:
  explicit ScanStatus(StatusBar& status) : status_(status), before_(status.Status) {
    status_.Status = "To stop the Scan hold down the ESC key";
    status_.ProgressValue = 0;
    status_.ProgressVisible = true;
  }
  ~ScanStatus() {
    status_.Status = std::move(before_);
    status_.ProgressVisible = false;
  }
  ScanStatus(const ScanStatus&) = delete;
  ScanStatus& operator=(const ScanStatus&) = delete;

  void Show(double percent) {
    status_.ProgressValue = static_cast<int>(std::clamp(percent, 0.0, 100.0));
  }

 private:
  StatusBar& status_;
  std::string before_;
};

/// Appends the offsets of the black pixels among `count` that lie `step` apart.
template <typename Take>
void FindBlack(const std::uint32_t* pixels, int count, int step, Take take) {
  int i = 0;
  if (step == 1) {
    // Most of a page is paper: eight pixels at once tell that there is nothing to take.
    for (; i + 8 <= count; i += 8) {
      unsigned black = 0;
      for (int j = 0; j < 8; ++j) black |= static_cast<unsigned>(IsBlackPixel(pixels[i + j]));
      if (black == 0) continue;
      for (int j = i; j < i + 8; ++j)
        if (IsBlackPixel(pixels[j])) take(j);
    }
  }
  for (; i < count; ++i)
    if (IsBlackPixel(pixels[static_cast<std::size_t>(i) * step])) take(i);
}

/// The search. `Found` holds the first `Wanted` black pixels in the order of a walk column by
/// column; all of them are marked.
class Search {
 public:
  Search(const ExtractionContext& context, const GridRange& columns, const GridRange& rows,
         std::size_t wanted)
      : context_(context),
        columns_(columns),
        rows_(rows),
        wanted_(wanted),
        colour_(PaletteColour(context.Options.TraceColor)) {}

  /// False when Escape ended it.
  bool Run(ScanStatus& status) {
    const int tileColumns = std::max(kTileWidth / columns_.Step, 1);
    const double total = static_cast<double>(rows_.Last) * columns_.Last;
    for (int x = columns_.First; x <= columns_.Last; x += tileColumns * columns_.Step) {
      if (context_.Verbs.EscapeHeld()) return false;
      if (total > 0)
        status.Show((static_cast<double>(x - 1) * rows_.Last + rows_.First) / total * 100);
      context_.Verbs.Pump();
      SearchTile(x, std::min(tileColumns, (columns_.Last - x) / columns_.Step + 1));
    }
    return true;
  }

  std::vector<FoundPixel> Found;

 private:
  void SearchTile(int left, int count) {
    hits_.clear();
    starts_.assign(static_cast<std::size_t>(count) + 1, 0);
    PlotImage& image = context_.Image;
    for (int y = rows_.First; y <= rows_.Last; y += rows_.Step) {
      FindBlack(image.Pixels.Row(y) + left, count, columns_.Step, [&](int i) {
        const int x = left + i * columns_.Step;
        SetPixel(image, x, y, colour_);
        if (Found.size() < wanted_) {
          hits_.push_back({static_cast<std::int16_t>(i), static_cast<std::int16_t>(y)});
          ++starts_[static_cast<std::size_t>(i) + 1];
        }
      });
    }
    AppendHits(left);
  }

  /// Sorts the tile's hits by column; within one they are in order already.
  void AppendHits(int left) {
    for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
    const std::size_t before = Found.size();
    Found.resize(before + hits_.size());
    for (const FoundPixel& hit : hits_)
      Found[before + starts_[static_cast<std::size_t>(hit.X)]++] = {
          static_cast<std::int16_t>(left + hit.X * columns_.Step), hit.Y};
    if (Found.size() > wanted_) Found.resize(wanted_);
  }

  const ExtractionContext& context_;
  const GridRange columns_, rows_;
  const std::size_t wanted_;
  const Colour colour_;
  std::vector<FoundPixel> hits_;     // of one tile; X counts the tile's columns
  std::vector<std::size_t> starts_;  // of each of its columns
};

/// Captures what was found. A key still held from stopping the search does not stop this, too.
void AddFound(const ExtractionContext& context, const std::vector<FoundPixel>& found,
              bool escapeIsOld, ScanStatus& status) {
  PointStore& store = context.Store;
  const bool refreshList = context.Options.RefreshList != 0;
  for (std::size_t i = 1; i <= found.size(); ++i) {
    const bool held = context.Verbs.EscapeHeld();
    escapeIsOld = escapeIsOld && held;
    if (held && !escapeIsOld) return;
    if (i % 10 == 0) {
      status.Show(static_cast<double>(i) / static_cast<double>(found.size()) * 100);
      PumpProgress(context);
    }
    MoveCursor(context, found[i - 1].X, found[i - 1].Y);
    if (AddValuePoint(store, context.Commands, context.Verbs, refreshList, store.CurrentX,
                      store.CurrentY))
      return;
  }
}

}  // namespace

void StartScanRectangle(ScanRectangle& rectangle, float x, float y) {
  const std::int32_t column = ToInt32(x), row = ToInt32(y);
  rectangle = {true, column, row, column, row};
}

void MoveScanCorner(ScanRectangle& rectangle, float x, float y) {
  if (!rectangle.Active) return;
  rectangle.Right = ToInt32(x);
  rectangle.Bottom = ToInt32(y);
}

bool ReleaseScanRectangle(ScanRectangle& rectangle) {
  return std::exchange(rectangle.Active, false) && rectangle.Left < rectangle.Right &&
         rectangle.Top < rectangle.Bottom;
}

void Scan(const ExtractionContext& context, const ScanRectangle& rectangle) {
  if (!HasValues(context)) return;
  PointStore& store = context.Store;
  const int stepX = StepOf(context.Control.Xrange), stepY = StepOf(context.Control.Yrange);
  const GridRange columns = RangeOf(rectangle.Left, rectangle.Right, stepX, context.Image.Width());
  const GridRange rows = RangeOf(rectangle.Top, rectangle.Bottom, stepY, context.Image.Height());
  const bool adds = context.Adds();
  // One more than there is room for: the store then says that it is full.
  const int wanted = adds ? std::max(store.MaxPoints - store.CaptureCount, 0) + 1 : 0;

  ScanStatus status(context.Status);
  context.Verbs.Pump();
  Search search(context, columns, rows, static_cast<std::size_t>(wanted));
  const bool stopped = !columns.IsEmpty() && !rows.IsEmpty() && !search.Run(status);
  status.Show(100);
  if (adds) AddFound(context, search.Found, stopped, status);
  status.Show(100);
  ShowResult(context);
  context.Status.Points = FormatNumber(static_cast<float>(store.ListCount), kCountPattern);
}

}  // namespace graphize
