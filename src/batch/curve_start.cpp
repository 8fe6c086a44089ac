#include "batch/curve_start.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "base/bit_map.h"

namespace graphize {

namespace {

constexpr float kSameInk = 0.9f;    // cosine of the angle between two differences to the paper
constexpr float kLeastInk = 0.45f;  // of the full ink
constexpr int kFollowed = 60;       // columns to either side
constexpr int kFewest = 8;          // columns that a curve can be followed over
constexpr int kBeside = 12;         // columns from the wanted one to the farthest that is tried
constexpr int kLargestSymbol = 80;  // pixels

/// Which pixels are the curve's.
class InkTest {
 public:
  InkTest(const Raster& picture, const std::optional<Ink>& ink) : picture_(picture), ink_(ink) {
    if (ink_) paper_ = PaperOf(picture);
  }
  bool At(int x, int y) const {
    if (x < 0 || y < 0 || x >= picture_.Width() || y >= picture_.Height()) return false;
    const std::uint32_t pixel = picture_.Row(y)[x];
    if (!ink_) return IsBlackPixel(pixel);
    const Rgb difference = paper_.At(x, y) - RgbOf(pixel);
    const float along = Dot(difference, ink_->Direction);
    return along >= kLeastInk * ink_->Strength && along >= kSameInk * Length(difference);
  }

 private:
  const Raster& picture_;
  std::optional<Ink> ink_;
  Paper paper_;
};

enum class Cell { Paper, Ink, Line };

/// The plot as it stands upright, pixel by pixel of the calibrated picture: ink of the curve,
/// paper, and what frame and grid cover.
class UprightPlot {
 public:
  UprightPlot(const PageView& page, const std::optional<Ink>& ink)
      : page_(page), ink_(page.Picture, ink) {
    const double unit = 1 / page.LineScale;
    toPage_ = Then(AffineMap{unit, 0, 0, 0, unit, 0}, page.FromUpright);
    Left = Top = std::numeric_limits<double>::infinity();
    Right = Bottom = -Left;
    for (const HeldLine& line : page.Lines.Lines) {
      const double across = line.Across * page.LineScale;
      double& first = line.IsLevel ? Top : Left;
      double& last = line.IsLevel ? Bottom : Right;
      first = std::min(first, across);
      last = std::max(last, across);
    }
    for (const HeldLine& line : page.Lines.Lines)
      if (IsDrawn(line)) drawn_.push_back(line);
  }

  double Left, Top, Right, Bottom;

  MappedPlace Here(double x, double y) const {
    const MappedPlace there = Mapped(page_.FromCalibrated, x, y);
    return Mapped(Inverse(toPage_), there.X, there.Y);
  }
  PlotPixel PixelAt(double u, double v) const {
    const MappedPlace at = Mapped(toPage_, u, v);
    return {static_cast<int>(std::lround(at.X)), static_cast<int>(std::lround(at.Y))};
  }
  /// Whether a level line lies there, be it drawn or taken out: what is left of it is no curve.
  bool IsOnLine(double v) const {
    return std::any_of(
        page_.Lines.Lines.begin(), page_.Lines.Lines.end(), [&](const HeldLine& line) {
          return line.IsLevel &&
                 std::fabs(v - line.Across * page_.LineScale) <= line.Reach * page_.LineScale;
        });
  }
  Cell At(double u, double v) const {
    for (const HeldLine& line : drawn_)
      if (std::fabs((line.IsLevel ? v : u) - line.Across * page_.LineScale) <=
          line.Reach * page_.LineScale)
        return Cell::Line;
    return IsInk(u, v) ? Cell::Ink : Cell::Paper;
  }

 private:
  bool IsInk(double u, double v) const {
    const PlotPixel at = PixelAt(u, v);
    return ink_.At(at.X, at.Y);
  }
  /// Whether the line is there in the curve's ink: the grid may have been taken out.
  bool IsDrawn(const HeldLine& line) const {
    constexpr int kPlaces = 100;
    const double across = line.Across * page_.LineScale;
    int inked = 0;
    for (int i = 1; i < kPlaces; ++i) {
      const double part = static_cast<double>(i) / kPlaces;
      const double along =
          line.IsLevel ? Left + part * (Right - Left) : Top + part * (Bottom - Top);
      bool any = false;
      for (int d = -1; d <= 1; ++d)
        any = any || (line.IsLevel ? IsInk(along, across + d) : IsInk(across + d, along));
      inked += any ? 1 : 0;
    }
    return 2 * inked > kPlaces;
  }

  const PageView& page_;
  InkTest ink_;
  AffineMap toPage_;
  std::vector<HeldLine> drawn_;
};

struct Run {
  double First, Last;
};

/// How many columns a run can be followed over beside the level lines; lines that cross it hide it
/// for a while.
int Followed(const UprightPlot& plot, double u, Run run, int direction) {
  constexpr int kMissing = 4, kLongest = 200;
  int count = 0, missing = 0;
  for (int i = 1; i <= kFollowed; ++i) {
    const double column = u + direction * i;
    if (column <= plot.Left || column >= plot.Right) break;
    double first = run.First - 1 - missing, last = run.Last + 1 + missing;
    bool hidden = false, found = false;
    Run next{};
    for (double v = first; v <= last; ++v) {
      const Cell cell = plot.At(column, v);
      hidden = hidden || cell == Cell::Line;
      if (cell != Cell::Ink) continue;
      if (!found) next.First = v;
      next.Last = v;
      found = true;
    }
    if (!found) {
      if (hidden || ++missing <= kMissing) continue;
      break;
    }
    while (next.Last - next.First < kLongest && plot.At(column, next.First - 1) == Cell::Ink)
      --next.First;
    while (next.Last - next.First < kLongest && plot.At(column, next.Last + 1) == Cell::Ink)
      ++next.Last;
    run = next;
    missing = 0;
    if (!plot.IsOnLine(0.5 * (run.First + run.Last))) ++count;
  }
  return count;
}

struct Candidate {
  double Middle;
  int Length;
};

std::vector<Candidate> CandidatesIn(const UprightPlot& plot, double u, double top, double bottom) {
  std::vector<Candidate> found;
  for (double v = top; v <= bottom; ++v) {
    if (plot.At(u, v) != Cell::Ink) continue;
    Run run{v, v};
    while (run.Last + 1 <= bottom && plot.At(u, run.Last + 1) == Cell::Ink) ++run.Last;
    v = run.Last;
    // What fills the column is a line of its own.
    if (run.Last - run.First > 0.6 * (plot.Bottom - plot.Top)) continue;
    const int length = Followed(plot, u, run, 1) + Followed(plot, u, run, -1);
    if (length >= kFewest) found.push_back({0.5 * (run.First + run.Last), length});
  }
  return found;
}

/// The ink that hangs together with a pixel, 8-connected, taken off `left`.
struct Blob {
  SymbolBlob Size;
  PlotPixel Middle;  // one of its own pixels
};
Blob TakeBlob(BitMap& left, int x, int y) {
  Blob blob;
  int first[2] = {x, y}, last[2] = {x, y};
  std::vector<PlotPixel> pixels = {{x, y}};
  left.Clear(x, y);
  for (std::size_t i = 0; i < pixels.size(); ++i)
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const int u = pixels[i].X + dx, v = pixels[i].Y + dy;
        if (!left.Get(u, v)) continue;
        left.Clear(u, v);
        pixels.push_back({u, v});
        first[0] = std::min(first[0], u);
        first[1] = std::min(first[1], v);
        last[0] = std::max(last[0], u);
        last[1] = std::max(last[1], v);
      }
  blob.Size = {last[0] - first[0] + 1, last[1] - first[1] + 1, static_cast<int>(pixels.size())};
  const auto off = [&](const PlotPixel& p) {
    return std::abs(2 * p.X - first[0] - last[0]) + std::abs(2 * p.Y - first[1] - last[1]);
  };
  blob.Middle =
      *std::min_element(pixels.begin(), pixels.end(),
                        [&](const PlotPixel& a, const PlotPixel& b) { return off(a) < off(b); });
  return blob;
}

bool IsSymbol(const SymbolBlob& blob) {
  return blob.Width >= 3 && blob.Height >= 3 && blob.Width <= kLargestSymbol &&
         blob.Height <= kLargestSymbol;
}

}  // namespace

std::optional<CurveStart> FindCurveStart(const PageView& page, const StartColumn& column,
                                         const std::optional<Ink>& ink) {
  const UprightPlot plot(page, ink);
  const MappedPlace wanted = plot.Here(column.Column, column.Row);
  const double top = column.Top ? plot.Here(column.Column, *column.Top).Y : plot.Top + 1;
  const double bottom =
      column.Bottom ? plot.Here(column.Column, *column.Bottom).Y : plot.Bottom - 1;
  for (int i = 0; i <= 2 * kBeside; ++i) {
    const double u = wanted.X + (i % 2 == 1 ? (i + 1) / 2 : -i / 2);
    std::vector<Candidate> candidates = CandidatesIn(plot, u, top, bottom);
    if (candidates.empty()) continue;
    int longest = 0;
    for (const Candidate& candidate : candidates) longest = std::max(longest, candidate.Length);
    std::erase_if(candidates, [&](const Candidate& c) { return 2 * c.Length < longest; });
    const auto nearest = std::min_element(
        candidates.begin(), candidates.end(), [&](const Candidate& a, const Candidate& b) {
          return std::fabs(a.Middle - wanted.Y) < std::fabs(b.Middle - wanted.Y);
        });
    return CurveStart{plot.PixelAt(u, nearest->Middle), candidates.size() > 1};
  }
  return std::nullopt;
}

std::optional<SymbolBlob> SymbolAt(const Raster& picture, const Ink& ink, PlotPixel at) {
  const InkTest test(picture, ink);
  const int left = at.X - kLargestSymbol, top = at.Y - kLargestSymbol;
  BitMap part(2 * kLargestSymbol + 1, 2 * kLargestSymbol + 1);
  for (int y = 0; y < part.Height(); ++y)
    for (int x = 0; x < part.Width(); ++x)
      if (test.At(left + x, top + y)) part.Set(x, y);
  // An open symbol is clicked in its middle.
  for (int reach = 0; reach <= 12; ++reach)
    for (int y = kLargestSymbol - reach; y <= kLargestSymbol + reach; ++y)
      for (int x = kLargestSymbol - reach; x <= kLargestSymbol + reach; ++x)
        if (part.Get(x, y)) {
          const SymbolBlob blob = TakeBlob(part, x, y).Size;
          return IsSymbol(blob) ? std::optional(blob) : std::nullopt;
        }
  return std::nullopt;
}

std::optional<PlotPixel> FindSymbolLike(const PageView& page, const Ink& ink,
                                        const SymbolBlob& like) {
  const UprightPlot plot(page, ink);
  const int width = static_cast<int>(plot.Right - plot.Left) - 1;
  const int height = static_cast<int>(plot.Bottom - plot.Top) - 1;
  if (width < 3 || height < 3) return std::nullopt;
  BitMap left(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (plot.At(plot.Left + 1 + x, plot.Top + 1 + y) == Cell::Ink) left.Set(x, y);
  constexpr double kMostUnlike = 0.5;
  double least = kMostUnlike;
  std::optional<PlotPixel> best;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      if (!left.Get(x, y)) continue;
      const Blob blob = TakeBlob(left, x, y);
      const auto off = [](int a, int b) { return std::fabs(static_cast<double>(a) / b - 1); };
      const double unlike = off(blob.Size.Width, like.Width) + off(blob.Size.Height, like.Height) +
                            off(blob.Size.Area, like.Area);
      if (!IsSymbol(blob.Size) || unlike >= least) continue;
      least = unlike;
      best = plot.PixelAt(plot.Left + 1 + blob.Middle.X, plot.Top + 1 + blob.Middle.Y);
    }
  return best;
}

}  // namespace graphize
