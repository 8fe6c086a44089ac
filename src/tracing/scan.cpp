#include "tracing/scan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/translation.h"
#include "raster/row_marks.h"

namespace graphize {

namespace {

/// Pixels between two looks at the Escape key and the window: some milliseconds at most.
constexpr int kPixelsPerLook = 1 << 18;
/// Marks that a scan which is stopped may have to take back, and pixels that it may have to mark.
constexpr std::size_t kMarksPerStrip = 1 << 22;
constexpr int kNarrowestStrip = 64;  // columns; narrower ones take long for each row

/// The columns or rows that are looked at, within the picture.
struct GridRange {
  int First, Last, Step;

  int Count() const { return (Last - First) / Step + 1; }
};

GridRange RangeOf(std::int32_t low, std::int32_t high, int step, int size) {
  long long first = low + 2LL;
  const long long last = std::min(high - 2LL, size - 1LL);
  if (first < 0) first += (-first + step - 1) / step * step;
  if (first > last) return {0, -step, step};
  return {ToInt16(static_cast<double>(first)), ToInt16(static_cast<double>(last)), step};
}

/// The status panel and the progress bar during the scan.
class ScanStatus {
 public:
  explicit ScanStatus(StatusBar& status) : status_(status) {
    status_.Status = Tr("To stop the Scan hold down the ESC key");
    status_.ProgressValue = 0;
    status_.ProgressVisible = true;
  }
  ~ScanStatus() { status_.ProgressVisible = false; }
  ScanStatus(const ScanStatus&) = delete;
  ScanStatus& operator=(const ScanStatus&) = delete;

  void Show(double percent) {
    status_.ProgressValue = static_cast<int>(std::clamp(percent, 0.0, 100.0));
  }

 private:
  StatusBar& status_;
};

constexpr int kBlock = 32;
/// A bit for each place in a block: the compiler makes no vectors of a shift for each pixel.
constexpr std::array<std::uint32_t, kBlock> kPlaceBits = [] {
  std::array<std::uint32_t, kBlock> bits{};
  for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = 1u << i;
  return bits;
}();

/// Whether a block of neighbouring pixels has a black one.
bool AnyBlack(const std::uint32_t* pixels) {
  unsigned black = 0;
  for (int i = 0; i < kBlock; ++i) black += static_cast<unsigned>(IsBlackPixel(pixels[i]));
  return black != 0;
}

/// A bit for each black one of them.
std::uint32_t BlackBits(const std::uint32_t* pixels) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kPlaceBits.size(); ++i)
    bits |= kPlaceBits[i] & -static_cast<std::uint32_t>(IsBlackPixel(pixels[i]));
  return bits;
}

/// Takes the column of every black pixel of a row that the grid meets.
template <typename Take>
void FindBlack(const std::uint32_t* row, const GridRange& columns, Take take) {
  int x = columns.First;
  if (columns.Step == 1) {
    // Most of a page is paper.
    for (; x + kBlock - 1 <= columns.Last; x += kBlock) {
      if (!AnyBlack(row + x)) continue;
      for (std::uint32_t bits = BlackBits(row + x); bits != 0; bits &= bits - 1)
        take(x + std::countr_zero(bits));
    }
  }
  for (; x <= columns.Last; x += columns.Step)
    if (IsBlackPixel(row[x])) take(x);
}

/// The positions found, whatever the order in which they come: at least the first so many in the
/// order column by column.
class FoundPositions {
 public:
  explicit FoundPositions(int wanted) : wanted_(wanted), limit_(wanted > 0 ? UINT32_MAX : 0) {}

  void Take(int x, int y) {
    const auto key = static_cast<std::uint32_t>(x) << 16 | static_cast<std::uint32_t>(y);
    any_ = true;
    if (key >= limit_) return;
    keys_.push_back(key);
    if (keys_.size() >= 2 * wanted_ + 1000) DropLast();
  }
  /// Forgets what lies right of the column before `x`, as if nobody had looked there.
  void DropColumnsFrom(int x) {
    const auto first = static_cast<std::uint32_t>(x) << 16;
    std::erase_if(keys_, [first](std::uint32_t key) { return key >= first; });
    if (complete_ || limit_ <= first) return;
    limit_ = UINT32_MAX;
    complete_ = true;
  }
  void Sort() { std::sort(keys_.begin(), keys_.end()); }

  /// Whether anything was found, wanted or not.
  bool Any() const { return any_; }
  /// Whether nothing was left out for being more than wanted.
  bool IsComplete() const { return complete_; }
  std::size_t Count() const { return keys_.size(); }
  int X(std::size_t i) const { return static_cast<int>(keys_[i] >> 16); }
  int Y(std::size_t i) const { return static_cast<int>(keys_[i] & 0xffffu); }

 private:
  void DropLast() {
    const auto end = keys_.begin() + static_cast<std::ptrdiff_t>(wanted_);
    std::nth_element(keys_.begin(), end, keys_.end());
    limit_ = *end;
    complete_ = false;
    keys_.erase(end, keys_.end());
  }

  std::size_t wanted_;
  bool any_ = false, complete_ = true;
  std::uint32_t limit_;              // what lies from here on is not wanted
  std::vector<std::uint32_t> keys_;  // column in the upper half, row in the lower
};

/// Read once.
struct ScanOptions {
  Colour MarkColour;
  std::optional<PlotBox> Inside;
};

/// Marks the black pixels of one row on the grid and notes them in `found`.
void SearchRow(PlotImage& image, const ScanOptions& options, const GridRange& columns, int y,
               FoundPositions& found) {
  RowMarks marks(image, y, options.MarkColour);
  FindBlack(image.Pixels.Row(y), columns, [&](int x) {
    if (options.Inside && !options.Inside->Contains(x, y)) return;
    marks.Set(x);
    found.Take(x, y);
  });
}

/// Columns that are searched together, row by row.
struct Strip {
  GridRange Columns;
  std::size_t MarksBefore, MarksBeforeLast;  // before this strip and before the one left of it
};

/// The black pixels of the strip's rows before `done` have been found, and all left of it. Turns
/// that into the whole columns before `end`, which is what a stopped scan has to show: takes back
/// what lies right of them and finds what is missing in them.
void FinishColumns(PlotImage& image, const ScanOptions& options, const Strip& strip,
                   const GridRange& rows, int done, int end, FoundPositions& found) {
  const GridRange& columns = strip.Columns;
  TakeBackMarks(image, end < columns.First ? strip.MarksBeforeLast : strip.MarksBefore, end);
  found.DropColumnsFrom(end);
  const GridRange missing{columns.First, end - columns.Step, columns.Step};
  for (int i = done; i < rows.Count(); ++i)
    SearchRow(image, options, missing, rows.First + i * rows.Step, found);
}

/// Searches all columns; false when Escape ended it: then the first columns alone, as many as make
/// up the share that was done.
///
/// The raster is read row by row, the order of its memory: column by column takes many times as
/// long. Where there is so much black that it would take long to make that good after Escape, it
/// goes on in strips of columns.
bool Search(const ExtractionContext& context, const ScanOptions& options, const GridRange& columns,
            const GridRange& rows, FoundPositions& found, ScanStatus& status) {
  PlotImage& image = context.Image;
  const int width = columns.Count(), height = rows.Count();
  const long long perLook = std::max(kPixelsPerLook / std::max(width, 1), 1) * 1LL * width;
  const auto column = [&](long long number) {
    return columns.First + static_cast<int>(number) * columns.Step;
  };
  long long done = 0, look = 0;  // pixels, and of the next look
  std::size_t marks = image.Marks.size();
  int stripWidth = width;
  for (int left = 0; left < width;) {
    int right = std::min(left + stripWidth, width);
    const Strip strip{{column(left), column(right - 1), columns.Step}, image.Marks.size(), marks};
    for (int i = 0; i < height; ++i, done += right - left) {
      if (done >= look) {
        if (context.Callbacks.EscapeHeld()) {
          FinishColumns(image, options, strip, rows, i, column(look / height), found);
          return false;
        }
        status.Show(100.0 * static_cast<double>(look) / width / height);
        context.Callbacks.Pump();
        look += perLook;
      }
      if (image.Marks.size() - strip.MarksBefore > kMarksPerStrip &&
          right - left > kNarrowestStrip) {
        const int whole = static_cast<int>(static_cast<long long>(right - left) * i / height);
        FinishColumns(image, options, strip, rows, i, column(left + whole), found);
        stripWidth = std::max(whole / 2, kNarrowestStrip);
        right = left + whole;
        done = static_cast<long long>(right) * height;
        break;
      }
      SearchRow(image, options, strip.Columns, rows.First + i * rows.Step, found);
    }
    left = right;
    marks = strip.MarksBefore;
  }
  return true;
}

struct Added {
  std::size_t Count = 0;
  bool Stopped = false;  // by Escape
};

/// Captures what was found. A key still held from stopping the search does not stop this, too.
Added AddFound(const ExtractionContext& context, const FoundPositions& found, bool escapeIsOld,
               ScanStatus& status) {
  PointStore& store = context.Store;
  const bool refreshList = context.Options.RefreshList != 0;
  for (std::size_t i = 1; i <= found.Count(); ++i) {
    const bool held = context.Callbacks.EscapeHeld();
    escapeIsOld = escapeIsOld && held;
    if (held && !escapeIsOld) return {i - 1, true};
    if (i % 10 == 0) {
      status.Show(static_cast<double>(i) / static_cast<double>(found.Count()) * 100);
      PumpProgress(context);
    }
    MoveCursor(context, static_cast<float>(found.X(i - 1)), static_cast<float>(found.Y(i - 1)));
    if (AddValuePoint(store, context.Commands, context.Callbacks, refreshList, store.CurrentX,
                      store.CurrentY))
      return {i - 1};
    if (refreshList) PumpProgress(context);
  }
  return {found.Count()};
}

/// What the status panel says afterwards, where there is something to say that the picture and the
/// number of points do not show.
std::string ResultText(const std::string& before, const FoundPositions& found, bool searchStopped,
                       const Added& added, bool adds, bool onlyInside) {
  const auto count = static_cast<long long>(added.Count);
  if (added.Stopped && found.IsComplete() && !searchStopped)
    return TrCount("Stopped: %2 of %1 point captured", "Stopped: %2 of %1 points captured",
                   static_cast<long long>(found.Count()), count);
  if (added.Stopped || (searchStopped && adds)) return Tr("Stopped: %1", CapturedCount(count));
  if (searchStopped) return Tr("Stopped");
  if (found.Any()) return before;
  return onlyInside ? Tr("No black pixels here inside of the axes, and the scan finds nothing else")
                    : Tr("No black pixels here: the scan finds nothing else");
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
  const int stepX = IncrementAtLeast(context.Control.Xrange, 1),
            stepY = IncrementAtLeast(context.Control.Yrange, 1);
  const GridRange columns = RangeOf(rectangle.Left, rectangle.Right, stepX, context.Image.Width());
  const GridRange rows = RangeOf(rectangle.Top, rectangle.Bottom, stepY, context.Image.Height());
  const bool adds = context.Adds();
  // One more than there is room for: the store then says that it is full.
  const int wanted = adds ? std::max(store.MaxPoints - store.CaptureCount, 0) + 1 : 0;

  const std::string before = context.Status.Status;
  ScanStatus status(context.Status);
  context.Callbacks.Pump();
  const ScanOptions options{PaletteColour(context.Options.TraceColor), BoxToStayIn(context)};
  FoundPositions found(wanted);
  const bool stopped = !Search(context, options, columns, rows, found, status);
  found.Sort();
  status.Show(100);
  const Added added = adds ? AddFound(context, found, stopped, status) : Added{};
  status.Show(100);
  ShowResult(context);
  context.Store.NPoints = store.ListCount;
  context.Status.Status =
      ResultText(before, found, stopped, added, adds, options.Inside.has_value());
}

}  // namespace graphize
