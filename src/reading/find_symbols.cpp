#include "reading/find_symbols.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/bit_map.h"
#include "base/translation.h"
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

/// Spots of ink of their own, no larger than a symbol: a pixel of each kind of them, those of which
/// there are most first.
std::vector<std::pair<int, int>> KindsOfSpots(const InkMap& map, double largestArea) {
  struct Spot {
    int X = 0, Y = 0, Area = 0;
  };
  constexpr std::uint8_t kHalf = InkMap::kFull / 2;
  const int largest = LargestSymbol(map.Width, map.Height);
  BitMap seen(map.Width, map.Height);
  std::vector<Spot> spots;
  std::vector<std::pair<int, int>> rim;
  for (int y = 0; y < map.Height; ++y)
    for (int x = 0; x < map.Width; ++x) {
      const auto take = [&](int u, int v) {
        const std::uint8_t value = map.At(u, v);
        if (value < kHalf || value > InkMap::kFull || seen.Get(u, v)) return;
        seen.Set(u, v);
        rim.push_back({u, v});
      };
      take(x, y);
      if (rim.empty()) continue;
      Spot spot{x, y, 0};
      int left = x, right = x, bottom = y;
      while (!rim.empty()) {
        const auto [u, v] = rim.back();
        rim.pop_back();
        ++spot.Area;
        left = std::min(left, u);
        right = std::max(right, u);
        bottom = std::max(bottom, v);
        for (int dv = -1; dv <= 1; ++dv)
          for (int du = -1; du <= 1; ++du) take(u + du, v + dv);
      }
      const int extent = std::max(right - left, bottom - y) + 1;
      if (extent >= 3 && extent <= largest && spot.Area >= 5 && spot.Area < largestArea)
        spots.push_back(spot);
    }
  std::sort(spots.begin(), spots.end(),
            [](const Spot& a, const Spot& b) { return a.Area < b.Area; });
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

std::ptrdiff_t ClearOnes(const std::vector<SymbolMatch>& matches) {
  return std::count_if(matches.begin(), matches.end(),
                       [](const SymbolMatch& match) { return match.Mismatch() < 0.15; });
}

/// Where what was clicked is like nothing else, and one of a common kind lies in it: two that
/// overlap, or one with something that hangs on to it.
bool TakeCommonShape(const InkMap& map, const SymbolRequest& request, SymbolShape& shape,
                     std::vector<SymbolMatch>& matches, PictureOperation& operation) {
  for (const auto& [column, row] : KindsOfSpots(map, 0.9 * shape.Area)) {
    const auto common = ShapesAt(map, column, row);
    if (!std::holds_alternative<std::vector<SymbolShape>>(common)) continue;
    const SymbolShape& other = std::get<std::vector<SymbolShape>>(common).front();
    std::vector<SymbolMatch> places = SearchSymbol(map, other, kLoose, operation);
    const bool isThere = std::any_of(places.begin(), places.end(), [&](const SymbolMatch& match) {
      return match.Missing < 0.12 &&
             std::hypot(match.X - request.X, match.Y - request.Y) < 0.75 * shape.Size();
    });
    if (!isThere || ClearOnes(places) <= ClearOnes(matches) + 1) continue;
    shape = other;
    matches = std::move(places);
    return true;
  }
  return false;
}

/// All places of a shape, which the clear ones of them, in the middle, show better than the one
/// that was clicked.
std::vector<SymbolMatch> PlacesOf(const InkMap& map, const SymbolRequest& request,
                                  SymbolShape& shape, PictureOperation& operation) {
  const double worst = kLoose * std::max(static_cast<double>(request.Tolerance), 1.0);
  std::vector<SymbolMatch> matches = SearchSymbol(map, shape, worst, operation);
  if (ClearOnes(matches) < 3 && !operation.Stopped)
    TakeCommonShape(map, request, shape, matches, operation);
  const int rounds = shape.IsClean && !shape.IsHard ? 1 : 2;
  for (int round = 0; round < rounds && !operation.Stopped; ++round) {
    std::vector<SymbolMatch> clear = matches;
    const double cut = shape.IsClean && !shape.IsHard ? CutOf(matches, false, 1) : kLoose;
    std::erase_if(clear, [&](const SymbolMatch& match) { return match.Mismatch() > cut; });
    shape = Averaged(map, shape, clear);
    matches = SearchSymbol(map, shape, worst, operation);
  }
  return matches;
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
    finding.Refusal = Tr("at %1,%2 there is %3", std::lround(x), std::lround(y), found);
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
  // Of the shapes that it may be, the one that explains most ink.
  SymbolShape shape;
  std::vector<SymbolMatch> matches;
  double most = -1, done = 0.5;
  const auto& shapes = std::get<std::vector<SymbolShape>>(clicked);
  const double part = 0.5 / static_cast<double>(shapes.size());
  for (const SymbolShape& candidate : shapes) {
    operation.From = done;
    operation.To = done += part;
    SymbolShape one = candidate;
    std::vector<SymbolMatch> places = PlacesOf(map, request, one, operation);
    if (operation.Stopped) return stopped();
    const double explained = static_cast<double>(ClearOnes(places)) * one.Area;
    if (explained <= most) continue;
    most = explained;
    shape = std::move(one);
    matches = std::move(places);
  }
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
