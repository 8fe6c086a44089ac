#include "grid/stroke_links.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace graphize {

namespace {

// Costs are sums of unlikenesses (logarithms of ratios) with these weights: 1 is a factor of e in
// the one length that tells most. Chosen on the plots of the tests and of the accuracy report,
// which show what a change does to the curves there.

constexpr double kLeastRun =
    0.05;  // columns per row: an upright stroke's, so that ratios are finite
// Columns per row by which a steep stroke may lean away from where it is to go on: single pixels of
// its edge make it lean as much.
constexpr double kLeansAway = 0.5;

// Crossings. Ends right opposite are almost certain: only their widths decide between them.
constexpr double kOppositeWeight = 0.05;
constexpr double kCrossing = 0.2;  // the least cost of a crossing that is not right opposite
constexpr double kTurnWeight = 0.3;
// The way through the line, beside what its lean wants: a curve bends, but not as far as this.
constexpr double kShortestWay = 0.3, kLongestWay = 12;
// A steep stroke, below so many columns per row, has no room to bend inside the line.
constexpr double kSteepRun = 3, kLongestSteepWay = 3;
// How much the lean may change inside the line: between two flat or two steep ends by an extreme's
// (a factor of 12), from steep to flat only by a little (3.3) unless they almost touch.
constexpr double kTurnOfSameKind = 2.5, kTurnOfOtherKind = 1.2;

// Touches: rarer than crossings, so they cost more to begin with.
constexpr double kTouch = 0.3;
constexpr double kUnevenWeight = 0.2;
// Columns of a gap, as a line's thickness times and plus, that is bridged whatever its depth.
constexpr int kGapThicknesses = 3, kGapColumns = 4;

constexpr int kBlackTenths = 8;  // of the way between two ends: a hidden stroke, but for grain
// Steep ends whose widths differ by more than this factor are not both the one stroke's alone.
constexpr double kWidthFactor = 4;

// What is left over is linked across as many times its run as these, and some columns of rounding.
constexpr int kShallowLeaps = 4, kSteepLeaps = 2, kLeapColumns = 2;
// An upright stroke may hide the other end: not of one that goes straight into the line, and as far
// as its lean takes it through the line, half as much again for its bend.
constexpr double kStraight = 0.1;
constexpr double kBendOfLean = 1.5;
constexpr int kUprightColumns = 3;

/// Columns per row of the stroke where it dips into the line on its right (step 1) or left side.
double RunOf(const StrokeEnd& end, int step) {
  const double run = step > 0 ? end.RightRun : end.LeftRun;
  return std::max(run > 0 ? run : std::abs(end.Lean), kLeastRun);
}

/// Whether the stroke may go on inside the line on its right (step 1) or left side.
bool Dips(const StrokeEnd& end, int step) {
  if (end.IsShallow()) return (step > 0 ? end.RightRun : end.LeftRun) > 0;
  return end.Lean * step <= kLeansAway;
}

/// How much two lengths differ, as the logarithm of their ratio.
double Unlikeness(double a, double b) {
  return std::abs(std::log(a / b));
}

/// Too small to tell where it leads.
bool IsSpeck(const StrokeEnd& end) {
  return end.Height == 1 && !end.IsShallow();
}

class Linker {
 public:
  Linker(const BitMap& map, const LineBand& band, int thickness, const std::vector<StrokeEnd>& ends)
      : map_(map), band_(band), thickness_(thickness), ends_(ends), linked_(ends.size()) {}

  StrokeLinks Run() {
    struct Candidate {
      StrokeLink Link;
      double Cost = 0;
    };
    std::vector<Candidate> candidates;
    for (std::size_t i = 0; i < ends_.size(); ++i) {
      for (std::size_t j = i + 1; j < ends_.size(); ++j) {
        const StrokeLink link =
            ends_[i].Columns.First <= ends_[j].Columns.First ? StrokeLink{i, j} : StrokeLink{j, i};
        const auto cost = Cost(ends_[link.Left], ends_[link.Right]);
        if (cost) candidates.push_back({link, *cost});
      }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.Cost < b.Cost; });
    for (const Candidate& candidate : candidates) Accept(candidate.Link);
    CloseTurnsBeside();
    for (std::size_t i = 0; i < ends_.size(); ++i) LinkLeftover(i);
    for (std::size_t i = 0; i < ends_.size(); ++i) LinkToUpright(i);
    links_.IsLinked.assign(ends_.size(), false);
    for (const StrokeLink& link : links_.Links)
      links_.IsLinked[link.Left] = links_.IsLinked[link.Right] = true;
    return links_;
  }

 private:
  struct Linked {
    bool Left = false, Right = false;
    bool Any() const { return Left || Right; }
  };

  /// How badly two ends match as one stroke; nothing: not at all.
  std::optional<double> Cost(const StrokeEnd& left, const StrokeEnd& right) const {
    const Span gap = Between(left, right);
    if (gap.Length() > 0 && (IsSpeck(left) || IsSpeck(right))) return std::nullopt;
    const auto cost =
        left.Side == right.Side ? TouchCost(left, right, gap) : CrossingCost(left, right, gap);
    if (!cost || !IsBlackBetween(gap)) return std::nullopt;
    return *cost + ShallowEndsIn(gap);
  }

  std::optional<double> CrossingCost(const StrokeEnd& left, const StrokeEnd& right,
                                     Span gap) const {
    if (gap.Length() < 1)
      return kOppositeWeight * Unlikeness(left.Columns.Length(), right.Columns.Length());
    if (!Dips(left, 1) || !Dips(right, -1)) return std::nullopt;
    const double leftRun = RunOf(left, 1), rightRun = RunOf(right, -1);
    const double run = std::max(1.0, 0.5 * (leftRun + rightRun));
    const double ratio = (right.Middle() - left.Middle() + 1) / (run * (thickness_ + 1) + 1);
    if (ratio > kLongestWay || ratio < kShortestWay) return std::nullopt;
    if (run < kSteepRun && ratio > kLongestSteepWay) return std::nullopt;
    // At an extreme a steep stroke becomes a flat one within a few columns, elsewhere it does not.
    const double turn = Unlikeness(leftRun + 1, rightRun + 1);
    const bool sameKind = left.IsShallow() == right.IsShallow();
    if (turn > (sameKind ? kTurnOfSameKind : kTurnOfOtherKind) && gap.Length() > thickness_ + 1)
      return std::nullopt;
    return kCrossing + Unlikeness(ratio, 1) + kTurnWeight * turn;
  }

  /// The stroke dips into the line between two ends on one side: by the depth of a parabola's arc.
  std::optional<double> TouchCost(const StrokeEnd& left, const StrokeEnd& right, Span gap) const {
    if (gap.Length() < 1) return std::nullopt;
    if (!Dips(left, 1) || !Dips(right, -1)) return std::nullopt;
    if (!left.IsShallow() && left.Lean >= 0) return std::nullopt;
    if (!right.IsShallow() && right.Lean <= 0) return std::nullopt;
    const double leftRun = RunOf(left, 1), rightRun = RunOf(right, -1);
    const double depth = gap.Length() / (4 * std::max(leftRun, rightRun));
    if (depth > thickness_ + 1 && gap.Length() > kGapThicknesses * thickness_ + kGapColumns)
      return std::nullopt;
    return kTouch + depth / (thickness_ + 1) + kUnevenWeight * Unlikeness(leftRun, rightRun);
  }

  /// Whether the way between two ends is black in the line's rows, as a hidden stroke must be.
  bool IsBlackBetween(Span columns) const {
    int black = 0;
    for (int x = columns.First; x <= columns.Last; ++x) black += IsBlackIn(map_, band_, x) ? 1 : 0;
    return columns.Length() <= 0 || black * 10 >= columns.Length() * kBlackTenths;
  }

  /// Other strokes that dip into the line on the way make it unlikely that two ends are one stroke.
  int ShallowEndsIn(Span columns) const {
    return static_cast<int>(std::count_if(ends_.begin(), ends_.end(), [&](const StrokeEnd& end) {
      return end.IsShallow() && columns.Contains(end.Columns.First) &&
             columns.Contains(end.Columns.Last);
    }));
  }

  void Accept(const StrokeLink& link) {
    const StrokeEnd& left = ends_[link.Left];
    const StrokeEnd& right = ends_[link.Right];
    Linked& ofLeft = linked_[link.Left];
    Linked& ofRight = linked_[link.Right];
    if (Between(left, right).Length() > 0) {
      if (ofLeft.Right || ofRight.Left) return;
      ofLeft.Right = ofRight.Left = true;
    } else if (left.IsShallow() != right.IsShallow()) {
      // An upright line that passes through a flat stroke has its own end opposite. Another steep
      // stroke is what the flat one turns into on this side.
      const bool leftIsSteep = right.IsShallow();
      Linked& ofSteep = leftIsSteep ? ofLeft : ofRight;
      Linked& ofFlat = leftIsSteep ? ofRight : ofLeft;
      if (ofSteep.Any()) return;
      ofSteep = {true, true};
      const StrokeEnd& flat = leftIsSteep ? right : left;
      if (flat.Height == 1) CloseTurn(leftIsSteep ? left : right, flat, ofFlat);
    } else if (!left.IsShallow()) {
      const Linked& ofNarrow = left.Columns.Length() < right.Columns.Length() ? ofLeft : ofRight;
      if (Unlikeness(left.Columns.Length(), right.Columns.Length()) > std::log(kWidthFactor) &&
          ofNarrow.Any())
        return;
      ofLeft = ofRight = {true, true};
    } else {
      // Two flat pieces side by side; either may go on on its other side.
      ofLeft.Right = ofRight.Left = true;
      if (left.Columns.Last >= right.Columns.Last) ofLeft.Left = ofRight.Right = true;
      if (left.Columns.First == right.Columns.First) ofLeft.Left = ofRight.Right = true;
    }
    links_.Links.push_back(link);
  }

  /// Where a flat end has a steep one at its edge, one is what the other turns into.
  static void CloseTurn(const StrokeEnd& steep, const StrokeEnd& flat, Linked& ofFlat) {
    if (steep.IsUpright && steep.Side != flat.Side) return;
    if (steep.Columns.First <= flat.Columns.First + 1) ofFlat.Left = true;
    if (steep.Columns.Last >= flat.Columns.Last - 1) ofFlat.Right = true;
  }

  /// The same beside the line: an upright stroke that does not go on behind the line turns flat.
  void CloseTurnsBeside() {
    for (std::size_t i = 0; i < ends_.size(); ++i) {
      if (ends_[i].IsShallow() || linked_[i].Any()) continue;
      for (std::size_t j = 0; j < ends_.size(); ++j) {
        if (!ends_[j].IsShallow() || ends_[j].Side != ends_[i].Side) continue;
        if (Between(ends_[i], ends_[j]).Length() == 0) CloseTurn(ends_[i], ends_[j], linked_[j]);
      }
    }
  }

  /// Whether a stroke must go on from the end into the line on its right (step 1) or left side.
  bool IsOpen(std::size_t i, int step) const {
    const StrokeEnd& end = ends_[i];
    if (!end.IsShallow()) return !linked_[i].Any();
    return Dips(end, step) && !(step < 0 ? linked_[i].Left : linked_[i].Right);
  }

  /// An end that matched nothing well is still a part of something: rather its nearest neighbour
  /// on the right than a gap.
  void LinkLeftover(std::size_t i) {
    if (!IsOpen(i, 1)) return;
    const StrokeEnd& left = ends_[i];
    std::optional<std::size_t> nearest;
    for (std::size_t j = 0; j < ends_.size(); ++j) {
      const StrokeEnd& right = ends_[j];
      if (i == j || left.IsShallow() != right.IsShallow() || !IsOpen(j, -1)) continue;
      if (left.Side == right.Side && !left.IsShallow()) continue;
      const Span gap{left.Columns.Last + 1, right.Columns.First - 1};
      if (gap.Length() < 0 || gap.Length() > LongestLeap(left, right)) continue;
      if (nearest && ends_[*nearest].Columns.First <= right.Columns.First) continue;
      if (IsBlackBetween(gap)) nearest = j;
    }
    if (!nearest) return;
    linked_[i].Right = linked_[*nearest].Left = true;
    links_.Links.push_back({i, *nearest});
  }

  /// An end that is still alone may go on behind an upright line: it is linked to the one ahead.
  void LinkToUpright(std::size_t i) {
    const StrokeEnd& end = ends_[i];
    if (linked_[i].Any() || end.IsUpright || end.Flattens || std::abs(end.Lean) < kStraight) return;
    const bool rightward = end.Lean < 0;
    std::optional<std::size_t> nearest;
    int shortest =
        static_cast<int>(kBendOfLean * std::abs(end.Lean) * thickness_) + kUprightColumns;
    for (std::size_t j = 0; j < ends_.size(); ++j) {
      if (!ends_[j].IsUpright) continue;
      if ((ends_[j].Middle() > end.Middle()) != rightward) continue;
      const Span gap = Between(end, ends_[j]);
      if (gap.Length() < 0 || gap.Length() >= shortest || !IsBlackBetween(gap)) continue;
      nearest = j;
      shortest = gap.Length();
    }
    if (!nearest) return;
    links_.Links.push_back(rightward ? StrokeLink{i, *nearest} : StrokeLink{*nearest, i});
  }

  int LongestLeap(const StrokeEnd& left, const StrokeEnd& right) const {
    const double run = std::max({1.0, RunOf(left, 1), RunOf(right, -1)});
    return static_cast<int>((left.IsShallow() ? kShallowLeaps : kSteepLeaps) * run *
                            (thickness_ + 1)) +
           kLeapColumns;
  }

  const BitMap& map_;
  const LineBand& band_;
  const int thickness_;
  const std::vector<StrokeEnd>& ends_;
  std::vector<Linked> linked_;
  StrokeLinks links_;
};

}  // namespace

StrokeLinks LinkStrokeEnds(const BitMap& map, const LineBand& band, int thickness,
                           const std::vector<StrokeEnd>& ends) {
  return Linker(map, band, thickness, ends).Run();
}

}  // namespace graphize
