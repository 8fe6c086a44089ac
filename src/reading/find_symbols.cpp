#include "reading/find_symbols.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "base/bit_map.h"
#include "base/translation.h"
#include "reading/ink_pieces.h"
#include "reading/plot_lines.h"
#include "reading/symbol_search.h"

namespace graphize {

namespace {

constexpr int kNearReach = 7, kFarReach = 16;  // pixels from the click to ink; far: in an open one
constexpr int kBesideFrame = 8;                // pixels from a click on the frame to its symbol
constexpr double kLoose = 0.4;                 // mismatch of what is looked at

/// The largest mismatch of the symbols: below the widest relative gap, where there is one. Hard
/// edges differ by whole pixels. Few that differ a little are doubtful, many are another shape.
double CutOf(const std::vector<SymbolMatch>& matches, bool isHard, double tolerance) {
  const double surely = (isHard ? 0.16 : 0.12) * tolerance, hardly = kLoose * tolerance;
  const double least = isHard ? 0.08 : 0.015;
  const std::size_t few = std::max<std::size_t>(4, matches.size() / 10);
  double cut = 0.25 * tolerance, widest = 2;
  for (std::size_t i = 0; i + 1 < matches.size(); ++i) {
    const double low = std::max(matches[i].Mismatch(), least), high = matches[i + 1].Mismatch();
    const bool isAnother = matches.size() - i - 1 >= few && i + 1 >= 3;
    if ((high < surely && !isAnother) || low > hardly || high / low < widest) continue;
    widest = high / low;
    cut = std::sqrt(low * high);
  }
  return cut;
}

bool IsClear(const SymbolMatch& match) {
  return match.Mismatch() < 0.15;
}

std::ptrdiff_t ClearOnes(const std::vector<SymbolMatch>& matches) {
  return std::ranges::count_if(matches, IsClear);
}

/// A shape and where it was found.
struct Attempt {
  SymbolShape Shape;
  std::vector<SymbolMatch> Places;

  double Explained() const { return static_cast<double>(ClearOnes(Places)) * Shape.Area; }
};

/// Whether all clear places of the one are such of the other.
bool IsWithin(const Attempt& one, const Attempt& other) {
  constexpr double kApart = 0.25;  // of the size
  return std::ranges::all_of(one.Places, [&](const SymbolMatch& match) {
    return !IsClear(match) || std::ranges::any_of(other.Places, [&](const SymbolMatch& also) {
      return IsClear(also) &&
             std::hypot(match.X - also.X, match.Y - also.Y) < kApart * other.Shape.Size();
    });
  });
}

/// The search on one map.
class Search {
 public:
  Search(const InkMap& map, const SymbolRequest& request, PictureOperation& operation)
      : map_(map),
        request_(request),
        operation_(operation),
        ink_(PossibleInk(map, operation)),
        worst_(kLoose * std::max(static_cast<double>(request.Tolerance), 1.0)) {}

  /// Of the shapes that what was clicked may be, the one that explains most ink, as its clear
  /// places, in the middle, show it better than the one that was clicked.
  Attempt BestOf(std::vector<SymbolShape> shapes) {
    std::vector<Attempt> attempts;
    double most = 0;
    for (SymbolShape& shape : shapes) {
      if (operation_.Stopped) return {};
      Attempt attempt{std::move(shape), {}};
      attempt.Places = SearchSymbol(map_, ink_, attempt.Shape, worst_, operation_);
      if (ClearOnes(attempt.Places) < 3) TakeCommonShape(attempt);
      most = std::max(most, attempt.Explained());
      attempts.push_back(std::move(attempt));
      operation_.Advance(0.5 * static_cast<double>(attempts.size()) /
                         static_cast<double>(shapes.size()));
    }
    std::ranges::stable_sort(attempts, std::greater(), &Attempt::Explained);
    Attempt best;
    for (Attempt& attempt : attempts) {
      if (operation_.Stopped) return {};
      // A better look at the shape finds more of its places, but not twice as many; of the same
      // places it makes the same shape.
      if (2 * attempt.Explained() < most || IsWithin(attempt, best)) continue;
      Refine(attempt);
      if (best.Shape.Ink.empty() || attempt.Explained() > best.Explained())
        best = std::move(attempt);
    }
    return best;
  }

 private:
  /// Spots of ink of their own, no larger than a symbol: a pixel of each kind of them, those of
  /// which there are most first.
  std::vector<std::pair<int, int>> KindsOfSpots(double largestArea);

  /// Where what was clicked is like nothing else, and one of a common kind lies in it: two that
  /// overlap, or one with something that hangs on to it.
  void TakeCommonShape(Attempt& attempt);

  void Refine(Attempt& attempt) const {
    SymbolShape& shape = attempt.Shape;
    const int rounds = shape.IsClean && !shape.IsHard ? 1 : 2;
    for (int round = 0; round < rounds && !operation_.Stopped; ++round) {
      std::vector<SymbolMatch> clear = attempt.Places;
      const double cut = shape.IsClean && !shape.IsHard ? CutOf(attempt.Places, false, 1) : kLoose;
      std::erase_if(clear, [&](const SymbolMatch& match) { return match.Mismatch() > cut; });
      shape = Averaged(map_, shape, clear);
      attempt.Places = SearchSymbol(map_, ink_, shape, worst_, operation_);
    }
  }

  struct Spot {
    int X = 0, Y = 0, Area = 0;
  };
  const InkMap& map_;
  const SymbolRequest& request_;
  PictureOperation& operation_;
  BitMap ink_;
  double worst_;
  std::optional<std::vector<Spot>> spots_;             // by their area, once they were asked for
  std::map<std::pair<int, int>, Attempt> commonOnes_;  // by a pixel of the shape
};

std::vector<std::pair<int, int>> Search::KindsOfSpots(double largestArea) {
  if (!spots_) {
    spots_.emplace();
    const int largest = LargestSymbol(map_.Width, map_.Height);
    for (const InkPiece& piece : SpotsOf(map_, largest, operation_))
      if (piece.Extent() >= 3 && piece.Area >= 5)
        spots_->push_back({piece.Start.X, piece.Start.Y, piece.Area});
    std::ranges::stable_sort(*spots_, {}, &Spot::Area);
  }
  std::vector<Spot> spots;
  for (const Spot& spot : *spots_)
    if (spot.Area < largestArea) spots.push_back(spot);
  // How many are as large as each, to an eighth.
  std::vector<std::pair<std::size_t, std::pair<int, int>>> kinds;
  for (std::size_t i = 0; i < spots.size(); ++i) {
    std::size_t end = i;
    while (end < spots.size() && 8 * spots[end].Area <= 9 * spots[i].Area) ++end;
    const Spot& middle = spots[(i + end) / 2];
    kinds.push_back({end - i, {middle.X, middle.Y}});
    i = std::max(i, (i + end) / 2);
  }
  std::stable_sort(kinds.begin(), kinds.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<std::pair<int, int>> places;
  for (std::size_t i = 0; i < std::min<std::size_t>(kinds.size(), 6); ++i)
    places.push_back(kinds[i].second);
  return places;
}

void Search::TakeCommonShape(Attempt& attempt) {
  for (const auto& at : KindsOfSpots(0.9 * attempt.Shape.Area)) {
    if (operation_.Stopped) return;
    auto known = commonOnes_.find(at);
    if (known == commonOnes_.end()) {
      Attempt common;
      const auto shapes = ShapesAt(map_, at.first, at.second);
      if (const auto* few = std::get_if<std::vector<SymbolShape>>(&shapes)) {
        common.Shape = few->front();
        common.Places = SearchSymbol(map_, ink_, common.Shape, kLoose, operation_);
      }
      known = commonOnes_.emplace(at, std::move(common)).first;
    }
    const Attempt& common = known->second;
    const double reach = 0.75 * attempt.Shape.Size();
    const bool isThere = std::ranges::any_of(common.Places, [&](const SymbolMatch& match) {
      return match.Missing < 0.12 && std::hypot(match.X - request_.X, match.Y - request_.Y) < reach;
    });
    if (!isThere || ClearOnes(common.Places) <= ClearOnes(attempt.Places) + 1) continue;
    attempt = common;
    return;
  }
}

/// Whether a row of letters begins close to the right of a place, as in a legend: at least three
/// short pieces of any ink, close to each other, with paper above or below them.
bool IsBesideLetters(const InkMap& map, const SymbolMatch& match, const SymbolShape& shape,
                     const std::vector<SymbolMatch>& matches) {
  const double high = std::max(shape.Height, 8.0);
  const auto isInk = [&](int x, int y) {
    const std::uint8_t value = map.At(x, y);
    return value >= InkMap::kClear && value != InkMap::kWall;
  };
  const auto isColumn = [&](int x, double from, double to) {
    for (int y = static_cast<int>(match.Y + from); y <= static_cast<int>(match.Y + to); ++y)
      if (isInk(x, y)) return true;
    return false;
  };
  const int first = static_cast<int>(match.X + 0.5 * shape.Width) + 2;
  const int end = first + static_cast<int>(8 * high);
  int pieces = 0, above = 0, below = 0, columns = 0, behind = first;
  for (int x = first; x < end && x < map.Width;) {
    if (!isColumn(x, -0.7 * high, 0.7 * high)) {
      ++x;
      continue;
    }
    int last = x;
    while (last + 1 < end && isColumn(last + 1, -0.7 * high, 0.7 * high)) ++last;
    const bool isOther = std::any_of(matches.begin(), matches.end(), [&](const SymbolMatch& other) {
      return &other != &match && std::fabs(other.Y - match.Y) < high &&
             other.X + 0.5 * shape.Width >= x && other.X - 0.5 * shape.Width <= last;
    });
    if (isOther) return false;
    const bool isClose = x - behind <= (pieces == 0 ? 3.5 : 0.8) * high;
    if (!isClose && pieces > 0) break;
    if (isClose && last - x < 1.5 * high) {
      ++pieces;
      for (int u = x; u <= last; ++u, ++columns) {
        above += isColumn(u, -1.3 * high, -0.8 * high) ? 1 : 0;
        below += isColumn(u, 0.8 * high, 1.3 * high) ? 1 : 0;
      }
    }
    behind = last;
    x = last + 1;
  }
  return pieces >= 3 && 5 * std::min(above, below) < columns;
}

std::string DoubtOf(const SymbolMatch& match, double cut) {
  if (match.Visible < 0.65) return Tr("partly hidden");
  if (match.Overlapped > 0.5) return Tr("mostly under another one");
  if (match.Missing > 0.5 * cut && match.Missing > 0.08) return Tr("part of it is missing");
  if (match.Excess > 0.5 * cut && match.Excess > 0.08) return Tr("something hangs on to it");
  return "";
}

}  // namespace

SymbolFinding FindSymbols(const Raster& picture, const AxesFrame& frame,
                          const SymbolRequest& request, PictureOperation& operation) {
  const double x = request.X, y = request.Y;
  SymbolFinding finding;
  const auto refused = [&](const std::string& found) {
    finding.Refusal = Tr("near %1,%2 there is %3", std::lround(x), std::lround(y), found);
    return finding;
  };
  const auto stopped = [] {
    SymbolFinding none;
    none.IsStopped = true;
    return none;
  };
  const Paper paper = PaperOf(picture, &operation);
  if (operation.Stopped) return stopped();
  const std::vector<Rgb> directions = InkDirections(picture, paper, &operation);
  if (operation.Stopped) return stopped();
  std::optional<Ink> ink = InkAt(picture, paper, directions, x, y, kNearReach);
  if (!ink) ink = InkAt(picture, paper, directions, x, y, kFarReach);
  if (!ink)
    return refused(directions.empty() ? Tr("no symbol: the picture has one colour")
                                      : Tr("only paper, no symbol"));
  operation.To = 0.5;
  InkMap map = MapOf(picture, paper, directions, *ink, 1, operation);
  if (operation.Stopped) return stopped();
  const std::vector<PlotLine> lines = TakeOutLines(map, frame, x, y, operation);
  if (IsOnFrame(map, lines, frame, x, y, kBesideFrame))
    return refused(Tr("the frame or an axis, no symbol"));
  const auto isBlocked = [&](double px, double py) {
    return std::any_of(request.Walls.begin(), request.Walls.end(), [&](const ReadingWall& wall) {
      return std::hypot(px - wall.X, py - wall.Y) <= wall.Radius();
    });
  };
  const auto clicked = ShapesAt(map, x, y);
  if (const auto* instead = std::get_if<std::string>(&clicked)) return refused(*instead);
  operation.From = 0.5;
  operation.To = 1;
  const auto [shape, matches] =
      Search(map, request, operation).BestOf(std::get<std::vector<SymbolShape>>(clicked));
  if (operation.Stopped) return stopped();
  const double cut = CutOf(matches, shape.IsHard, static_cast<double>(request.Tolerance));
  // The scatter about the shape tells less than all where neighbouring pixels err together (held
  // against the truth in the accuracy report), and hard edges hide where in a pixel they are.
  constexpr double kHardSigma = 0.15, kLeastSigma = 0.015;
  const double wider = shape.IsClean ? 1.2 : 2.8;
  const bool isMass = request.Centre == SymbolCentre::Mass;
  for (const SymbolMatch& match : matches) {
    if (match.Mismatch() > cut) continue;
    const double px = match.X + (isMass ? shape.MassX : shape.BoxX),
                 py = match.Y + (isMass ? shape.MassY : shape.BoxY);
    if (isBlocked(px, py)) continue;
    finding.Symbols.push_back(
        {.X = px,
         .Y = py,
         .Sigma = std::hypot(wider * match.Sigma, shape.IsHard ? kHardSigma : kLeastSigma),
         .Score = std::clamp(1 - match.Mismatch(), 0.0, 1.0),
         .Doubt = IsBesideLetters(map, match, shape, matches) ? Tr("beside letters, as in a legend")
                                                              : DoubtOf(match, cut)});
  }
  if (finding.Symbols.empty())
    return refused(Tr("nothing that could be told from its surroundings"));
  std::sort(finding.Symbols.begin(), finding.Symbols.end(),
            [](const FoundSymbol& a, const FoundSymbol& b) {
              return std::pair(a.X, a.Y) < std::pair(b.X, b.Y);
            });
  finding.Width = shape.Width;
  finding.Height = shape.Height;
  return finding;
}

}  // namespace graphize
