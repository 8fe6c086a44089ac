#include "reading/narrow_peaks.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "base/median.h"
#include "reading/stroke_tips.h"

namespace graphize {

namespace {

/// The way up and down.
struct NarrowPeak {
  std::size_t First = 0, Last = 0;  // of the course's points, which its own take the place of
  std::vector<CurvePoint> Points;
};

/// A row of the joint ink.
struct Row {
  int Y = 0, First = 0, Last = 0;    // its pixels with a share of ink
  double Left = 0, Right = 0;        // edges
  bool IsSure = true;                // nothing hides a part of it
  bool IsSplit = false;              // paper shows between two sides
  double LeftInk = 0, RightInk = 0;  // each side's, where there is nothing but paper between

  double Width() const { return Right - Left; }
  double Middle() const { return 0.5 * (Left + Right); }
};

/// What ink there is in a row from column `first` to `last` or right beside that, and what hangs on
/// to it: at most `most` pixels.
std::optional<Row> RowAt(const InkMap& map, int first, int last, int y, int most) {
  --first, ++last;
  while (first <= last && !map.IsClear(first, y)) ++first;
  while (first <= last && !map.IsClear(last, y)) --last;
  if (first > last) return std::nullopt;
  Row row{.Y = y, .First = first, .Last = last};
  while (map.Share(row.First - 1, y) > 0 && row.Last - row.First < most) --row.First;
  while (map.Share(row.Last + 1, y) > 0 && row.Last - row.First < most) ++row.Last;
  if (row.Last - row.First >= most) return std::nullopt;
  const auto isUnknown = [&](int at) { return map.At(at, y) > InkMap::kFull; };
  row.IsSure = !isUnknown(row.First - 1) && !isUnknown(row.Last + 1);
  // From each end to where the ink is fullest; what is less behind that is paper between.
  const auto edge = [&](int from, int step, int end) {
    double ink = map.Share(from, y);
    int at = from;
    while (at != end && map.Share(at + step, y) > map.Share(at, y)) {
      at += step;
      ink += map.Share(at, y);
    }
    return std::pair(at + 0.5 * step - step * ink, at);
  };
  const auto [left, leftFull] = edge(row.First, 1, row.Last);
  const auto [right, rightFull] = edge(row.Last, -1, row.First);
  row.Left = left;
  row.Right = right;
  std::optional<int> gap;
  for (int at = leftFull; at < rightFull; ++at) {
    if (isUnknown(at))
      row.IsSure = false;
    else if (!map.IsClear(at, y))
      row.IsSplit = true;
    if (map.At(at, y) == 0) gap = at;
  }
  for (int at = row.First; gap && at <= row.Last; ++at)
    (at < *gap ? row.LeftInk : row.RightInk) += map.Share(at, y);
  return row;
}

class Peak {
 public:
  Peak(const InkMap& map, const std::vector<CurvePoint>& points, const StrokeKind& kind,
       const InkBeyondTurn& turn)
      : map_(map),
        points_(points),
        stroke_(kind.Width),
        width_(kind.Width),
        isHard_(kind.IsHard),
        turn_(turn),
        out_(turn.OutY > 0 ? 1 : -1) {}

  std::optional<NarrowPeak> Climb() {
    if (!FindRows() || !IsOnlyPeak() || !FindSides()) return std::nullopt;
    return UpAndDown();
  }

 private:
  int Reach() const { return static_cast<int>(std::lround(std::max(6.0, 3 * width_))); }
  /// Whether `y` lies farther out than `other`.
  bool IsBeyond(double y, double other) const { return (y - other) * out_ > 0; }

  /// From where the sides have parted to the tip.
  bool FindRows() {
    if (std::fabs(turn_.OutX) > std::fabs(turn_.OutY)) return false;
    const int most = static_cast<int>(std::ceil(2 * width_)) + 2 * Reach();
    const CurvePoint* crest = &points_[turn_.First];
    for (std::size_t i = turn_.First; i <= turn_.Last; ++i)
      if (IsBeyond(points_[i].Y, crest->Y)) crest = &points_[i];
    const int x = static_cast<int>(std::lround(crest->X));
    auto row = RowAt(map_, x, x, static_cast<int>(std::lround(crest->Y)), most);
    if (!row) return false;
    while (const auto next = RowAt(map_, row->First, row->Last, row->Y + out_, most)) row = next;
    // A course may cross to the other side far below.
    constexpr std::ptrdiff_t kLeastParted = 3, kMostParted = 200;
    std::ptrdiff_t parted = 0;
    for (; row && parted < kMostParted;
         row = RowAt(map_, row->First, row->Last, row->Y - out_, most)) {
      if (!row->IsSplit && parted >= kLeastParted) break;
      rows_.push_back(*row);
      parted = row->IsSplit ? parted + 1 : 0;
    }
    if (parted < kLeastParted || parted == std::ssize(rows_)) return false;
    std::ranges::reverse(rows_);
    joint_ = parted;
    std::vector<double> sides;
    for (std::ptrdiff_t i = joint_ - 1; i >= 0 && sides.size() < 16; --i)
      if (const Row& apart = rows_[static_cast<std::size_t>(i)]; apart.LeftInk > 0)
        sides.insert(sides.end(), {apart.LeftInk, apart.RightInk});
    if (!sides.empty()) width_ = Median(std::move(sides));
    return true;
  }

  bool IsOnlyPeak() const {
    return IsSteep() && IsEmptyBetweenSides() && EndsOnPaper() && Tapers() && !StandsOnCrest();
  }

  /// Its sides, below the joint ink.
  bool IsSteep() const {
    const std::ptrdiff_t below = std::min<std::ptrdiff_t>(joint_, Reach());
    const Row &joint = rows_[static_cast<std::size_t>(joint_)],
              &base = rows_[static_cast<std::size_t>(joint_ - below)];
    const double most = 0.5 * static_cast<double>(below) + 1;
    return joint.Left - base.Left <= most && base.Right - joint.Right <= most;
  }

  bool IsEmptyBetweenSides() const {
    const double side = 1.6 * width_ + 1;  // with its soft edge
    return std::all_of(rows_.begin(), rows_.begin() + joint_, [&](const Row& row) {
      for (double x = std::ceil(row.Left + side); x <= row.Right - side; ++x)
        if (map_.IsClear(static_cast<int>(x), row.Y)) return false;
      return true;
    });
  }

  /// Nothing hides what lies around its tip.
  bool EndsOnPaper() const {
    const Row& tip = rows_.back();
    for (int k = 1; k <= 2; ++k)
      for (int x = tip.First - 1; x <= tip.Last + 1; ++x)
        if (map_.At(x, tip.Y + k * out_) > InkMap::kFull) return false;
    return true;
  }

  /// No row of the joint ink is wider than those farther in, but for the pixels' own steps.
  bool Tapers() const {
    constexpr int kMostUnsure = 3;  // rows in a row, as a line across hides them
    const double step = isHard_ ? 1.2 : 0.8;
    double least = 2 * width_ + 2;
    int unsure = 0;
    for (auto row = rows_.begin() + joint_; row != rows_.end(); ++row) {
      unsure = row->IsSure ? 0 : unsure + 1;
      const bool isTip = rows_.end() - row <= 2;
      if (unsure > (isTip ? 0 : kMostUnsure)) return false;
      if (!row->IsSure) continue;
      if (row->Width() > least + step) return false;
      least = std::min(least, row->Width());
    }
    return true;
  }

  /// Whether a line stands on a crest: thinner than the stroke, or as thin for a while, and then
  /// the sides part faster than those of a peak, whose width grows with the way from its tip or
  /// ever more slowly.
  bool StandsOnCrest() const {
    const auto widthAt = [&](std::ptrdiff_t below) {
      return rows_[static_cast<std::size_t>(std::ssize(rows_) - 1 - below)].Width();
    };
    const std::ptrdiff_t count = std::ssize(rows_);
    std::ptrdiff_t thinner = 0;
    while (thinner < count && widthAt(thinner) < 0.75 * stroke_) ++thinner;
    // A mitred tip tapers.
    if (static_cast<double>(thinner) > 0.5 * stroke_ + 2 &&
        widthAt(thinner / 3) > 0.7 * widthAt(2 * thinner / 3))
      return true;
    const double wider = isHard_ ? 0.6 : 0.4;
    std::ptrdiff_t thin = thinner;
    while (thin < count && widthAt(thin) <= stroke_ + wider) ++thin;
    constexpr std::ptrdiff_t kLeast = 4;
    if (thin - thinner < kLeast) return false;
    const std::ptrdiff_t below = std::min(2 * thin, count - 1);
    const double part = static_cast<double>(below) / static_cast<double>(thin);
    return widthAt(below) > stroke_ + part * wider + (isHard_ ? 1 : 0.4);
  }

  /// The course's points right below those rows, on steep sides.
  bool FindSides() {
    constexpr int kBeside = 2;  // rows in which they have hardly parted
    const auto isOn = [&](const CurvePoint& at, int side) {
      const auto row = (rows_.front().Y - std::lround(at.Y)) * -out_;
      if (row < 0 || row >= joint_ - kBeside) return false;
      const Row& here = rows_[static_cast<std::size_t>(row)];
      const double edge = side < 0 ? here.Left : here.Right;
      return here.IsSure && std::fabs(at.X - edge + side * 0.5 * width_) < 1;
    };
    // The last of them on the way to the turn: a course may change sides, or go back, before it.
    const auto find = [&](std::size_t i, int step, int side) -> std::optional<std::size_t> {
      const std::size_t beyond = i;
      while (i > 0 && i + 1 < points_.size() && !IsBeyond(rows_.front().Y, points_[i].Y))
        i += static_cast<std::size_t>(step);
      std::optional<std::size_t> found;
      for (i -= static_cast<std::size_t>(step); i > 0 && i + 1 < points_.size();
           i -= static_cast<std::size_t>(step)) {
        const bool goesOn =
            isOn(points_[i], side) && !(found && IsBeyond(points_[*found].Y, points_[i].Y));
        if (found && !goesOn) break;
        if (goesOn) found = i;
        if (i == beyond) break;
      }
      return found;
    };
    for (const int side : {-1, 1}) {  // a course begins at its left end, but may turn back
      const auto first = find(turn_.Last, -1, side), last = find(turn_.First, 1, -side);
      if (!first || !last || *first >= *last) continue;
      first_ = *first;
      last_ = *last;
      return true;
    }
    return false;
  }

  /// How far out the tip is. A round end is half a disc beyond it, with the ink of pi / 8 of a
  /// stroke's length; a mitred one tapers over several rows from where it is.
  double Tip(double stroke) const {
    double beyond = 0;
    int rows = 0;
    auto row = rows_.rbegin();
    for (; row + 1 != rows_.rend() && row->Width() < 0.9 * stroke; ++row, ++rows)
      beyond += row->Width() / stroke;
    const double whole = row->Y + out_ * 0.5;
    return rows > 0.5 * stroke + 2 ? whole
                                   : whole + out_ * (beyond - std::numbers::pi / 8 * stroke);
  }

  NarrowPeak UpAndDown() const {
    double stroke = 0;  // what the tip itself says, where it is thinner than the rest
    const auto near = std::min(std::ssize(rows_), static_cast<std::ptrdiff_t>(Reach()));
    for (auto row = rows_.end() - near; row != rows_.end(); ++row)
      stroke = std::max(stroke, row->Width());
    stroke = std::min(stroke, width_);
    const double tip = Tip(stroke);
    NarrowPeak peak{.First = first_ + 1, .Last = last_ - 1, .Points = {}};
    std::vector<CurvePoint> up, down;
    double tipX = rows_.back().Middle();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const Row& row = rows_[i];
      if (!IsBeyond(tip, row.Y)) break;
      if (!row.IsSure) continue;
      double a = row.Left + 0.5 * width_, b = row.Right - 0.5 * width_;
      if (a > b) a = b = row.Middle();
      tipX = row.Middle();
      const auto at = [&](double x) {
        return CurvePoint{.X = x,
                          .Y = static_cast<double>(row.Y),
                          .Sigma = isHard_ ? 0.35 : 0.25,
                          .AcrossX = 1,
                          .AcrossY = 0};
      };
      const bool isLeftFirst = points_[first_].X <= points_[last_].X;
      if (IsBeyond(row.Y, points_[first_].Y)) up.push_back(at(isLeftFirst ? a : b));
      if (IsBeyond(row.Y, points_[last_].Y)) down.push_back(at(isLeftFirst ? b : a));
    }
    const CurvePoint top{.X = tipX, .Y = tip, .Sigma = std::hypot(0.3, 0.2 * stroke)};
    peak.Points = std::move(up);
    peak.Points.push_back(top);
    peak.Points.insert(peak.Points.end(), down.rbegin(), down.rend());
    return peak;
  }

  const InkMap& map_;
  const std::vector<CurvePoint>& points_;
  double stroke_;  // pixels across it
  double width_;   // pixels of its sides along a row
  bool isHard_;
  const InkBeyondTurn& turn_;
  int out_;                           // rows towards the tip
  std::vector<Row> rows_;             // towards the tip
  std::ptrdiff_t joint_ = 0;          // the first of them in which the sides are one
  std::size_t first_ = 0, last_ = 0;  // the course's points below it, on either side
};

}  // namespace

void ClimbNarrowPeaks(const InkMap& map, const StrokeKind& kind, std::vector<CurvePoint>& points,
                      std::vector<StrokeSample>& samples) {
  const std::vector<InkBeyondTurn> turns = FindInkBeyondTurns(map, points, kind);
  // From the last on: the places of those before stay what they are.
  std::size_t end = points.size();
  for (std::size_t i = turns.size(); i-- > 0;) {
    const auto peak = Peak(map, points, kind, turns[i]).Climb();
    const std::size_t before = i > 0 ? turns[i - 1].Last : 0;
    if (!peak || peak->First <= before || peak->Last >= end) {
      end = turns[i].First;
      continue;
    }
    for (const CurvePoint& at : peak->Points)
      samples.push_back(
          {.AlongRow = true, .At = static_cast<int>(std::lround(at.Y)), .Middle = at.X});
    const auto first = points.begin() + static_cast<std::ptrdiff_t>(peak->First);
    const auto last = points.begin() + static_cast<std::ptrdiff_t>(peak->Last) + 1;
    points.insert(points.erase(first, last), peak->Points.begin(), peak->Points.end());
    end = peak->First;
  }
}

}  // namespace graphize
