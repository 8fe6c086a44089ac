#include "finding_axes/page_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "base/linear_equations.h"
#include "base/median.h"
#include "finding_axes/long_lines.h"

namespace graphize {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr int kPointsOfLine = 160;

/// How far from a place, along a normal of length 1, the middle of the line lies that is strongest
/// within `reach`; NaN where there is none, or where something else touches it.
double MiddleNear(const InkImage& ink, double x, double y, double nx, double ny, double reach,
                  double half) {
  constexpr double kStep = 0.5;
  const int count = static_cast<int>(std::ceil((reach + half + 1) / kStep));
  std::vector<double> profile(2 * count + 1);
  for (int k = -count; k <= count; ++k) {
    double sum = 0;
    for (int t = -2; t <= 2; ++t)
      sum += ink.Sample(x + k * kStep * nx - t * ny, y + k * kStep * ny + t * nx);
    profile[k + count] = sum / 5;
  }
  const int within = static_cast<int>(reach / kStep);
  const auto peak =
      std::max_element(profile.begin() + (count - within), profile.begin() + (count + within + 1));
  const double most = *peak;
  if (most < ink.Weak) return kNone;
  double middle = static_cast<double>(peak - profile.begin()) - count;
  const auto at = [&](double k) {
    const int i = static_cast<int>(std::floor(k)) + count;
    if (i < 0 || i + 1 >= static_cast<int>(profile.size())) return 0.0;
    const double part = k + count - i;
    return (1 - part) * profile[i] + part * profile[i + 1];
  };
  const double width = half / kStep;
  const double before = at(middle - width - 1), behind = at(middle + width + 1);
  if (std::max(before, behind) > 0.4 * most) return kNone;
  const double base = std::min(before, behind);
  for (int round = 0; round < 3; ++round) {
    double sum = 0, moment = 0;
    for (double d = -width; d <= width; d += 0.5) {
      const double value = std::max(at(middle + d) - base, 0.0);
      sum += value;
      moment += value * d;
    }
    if (!(sum > 0)) return kNone;
    middle += moment / sum;
  }
  return middle * kStep;
}

/// Pieces of one line, one behind the other.
struct Group {
  std::vector<LongLine> Pieces;
  double Across = 0;
  int Length = 0;
};

/// How much of a line's length its pieces cover.
int Covered(std::vector<LongLine> pieces) {
  std::sort(pieces.begin(), pieces.end(),
            [](const LongLine& a, const LongLine& b) { return a.From < b.From; });
  int covered = 0, end = std::numeric_limits<int>::min();
  for (const LongLine& piece : pieces) {
    covered += std::max(piece.To + 1 - std::max(piece.From, end), 0);
    end = std::max(end, piece.To + 1);
  }
  return covered;
}

/// Of an image with so many rows, or columns, that are `side` pixels long.
std::vector<Group> GroupsOf(std::vector<LongLine> pieces, int rows, int side) {
  std::sort(pieces.begin(), pieces.end(),
            [](const LongLine& a, const LongLine& b) { return a.Across < b.Across; });
  std::vector<Group> groups;
  for (const LongLine& piece : pieces) {
    if (groups.empty() || piece.Across - groups.back().Across > 2.5) groups.emplace_back();
    groups.back().Across = piece.Across;
    groups.back().Pieces.push_back(piece);
  }
  int longest = 0;
  for (Group& group : groups) {
    // A line that lies a little askew comes in steps.
    group.Across = std::max_element(
                       group.Pieces.begin(), group.Pieces.end(),
                       [](const LongLine& a, const LongLine& b) { return a.Length() < b.Length(); })
                       ->Across;
    group.Length = Covered(group.Pieces);
    longest = std::max(longest, group.Length);
  }
  // What runs along the picture's own edge is the scanner's.
  std::erase_if(groups, [&](const Group& group) {
    return group.Length < 0.15 * side || group.Length < 0.3 * longest || group.Across < 3 ||
           group.Across > rows - 4;
  });
  return groups;
}

void AddLines(const UprightPage& page, bool level, const std::vector<LongLine>& pieces,
              HeldLines& held) {
  const std::vector<Group> groups = level
                                        ? GroupsOf(pieces, page.Upright.Height, page.Upright.Width)
                                        : GroupsOf(pieces, page.Upright.Width, page.Upright.Height);
  const AffineMap& map = page.ToInk;
  // The normal of a level line points down the upright page.
  const double nx = level ? map.XY : map.XX, ny = level ? map.YY : map.YX;
  const double n = std::hypot(nx, ny);
  for (const Group& group : groups) {
    HeldLine line{.IsLevel = level, .Across = group.Across, .Length = 1.0 * group.Length};
    line.IsSide = &group == &groups.front() || &group == &groups.back();
    int thickness = 1;
    for (const LongLine& piece : group.Pieces)
      thickness = std::max(thickness, std::min(piece.Thickness(), 12));
    line.Reach = 0.5 * thickness + 1.5;
    const double step = std::max(2.0, static_cast<double>(group.Length) / kPointsOfLine);
    const int number = static_cast<int>(held.Lines.size());
    for (const LongLine& piece : group.Pieces)
      for (double along = piece.From + 3; along <= piece.To - 3; along += step) {
        const double u = level ? along : piece.Across, v = level ? piece.Across : along;
        const MappedPlace at = Mapped(map, u, v);
        HeldPoint point{at.X, at.Y, nx / n, ny / n, number};
        const double off =
            MiddleNear(page.Ink, point.X, point.Y, point.NormalX, point.NormalY, 3, line.Reach);
        if (std::isnan(off)) continue;
        point.X += off * point.NormalX;
        point.Y += off * point.NormalY;
        held.Points.push_back(point);
      }
    held.Lines.push_back(line);
  }
}

/// Whether lines of both courses tell how large both sides are.
bool TellsBothScales(const HeldLines& lines) {
  for (const bool level : {true, false}) {
    double least = std::numeric_limits<double>::infinity(), most = -least;
    for (const HeldLine& line : lines.Lines) {
      if (line.IsLevel != level) continue;
      least = std::min(least, line.Across);
      most = std::max(most, line.Across);
    }
    if (!(most - least > 50)) return false;
  }
  return true;
}

/// A point of one page, and the line of the other that it must come to lie on.
struct Tie {
  double X, Y;            // on the one
  double Nx, Ny, Target;  // n . (x', y') = Target on the other
  double Weight;
};

std::optional<AffineMap> Solve(const std::vector<Tie>& ties, bool both) {
  // Places are counted from their middle in thousands of pixels: the equations are well posed.
  double sum = 0, mx = 0, my = 0;
  for (const Tie& tie : ties) {
    sum += tie.Weight;
    mx += tie.Weight * tie.X;
    my += tie.Weight * tie.Y;
  }
  if (!(sum > 0)) return std::nullopt;
  mx /= sum;
  my /= sum;
  constexpr double kUnit = 1000;
  const auto solve = [&]<std::size_t Count>(const auto& rowOf) {
    SquareMatrix<Count> matrix{};
    std::array<double, Count> right{};
    for (const Tie& tie : ties) {
      const std::array<double, Count> row =
          rowOf((tie.X - mx) / kUnit, (tie.Y - my) / kUnit, tie.Nx, tie.Ny);
      for (std::size_t i = 0; i < Count; ++i) {
        for (std::size_t j = 0; j < Count; ++j) matrix[i][j] += tie.Weight * row[i] * row[j];
        right[i] += tie.Weight * row[i] * tie.Target;
      }
    }
    return Solution<Count>(matrix, right);
  };
  AffineMap map;
  if (both) {
    const auto found = solve.template operator()<6>([](double x, double y, double nx, double ny) {
      return std::array<double, 6>{nx * x, nx * y, nx, ny * x, ny * y, ny};
    });
    if (!found) return std::nullopt;
    const auto& [xx, xy, x, yx, yy, y] = *found;
    map = {xx / kUnit, xy / kUnit, x, yx / kUnit, yy / kUnit, y};
  } else {
    const auto found = solve.template operator()<4>([](double x, double y, double nx, double ny) {
      return std::array<double, 4>{nx * x + ny * y, ny * x - nx * y, nx, ny};
    });
    if (!found) return std::nullopt;
    const auto& [a, b, x, y] = *found;
    map = {a / kUnit, -b / kUnit, x, b / kUnit, a / kUnit, y};
  }
  map.X -= map.XX * mx + map.XY * my;
  map.Y -= map.YX * mx + map.YY * my;
  return map;
}

/// The normal of a line after the map.
std::pair<double, double> NormalThere(const AffineMap& map, const HeldPoint& point) {
  // Along the line, then across that.
  const double tx = -point.NormalY, ty = point.NormalX;
  const double x = map.XX * tx + map.XY * ty, y = map.YX * tx + map.YY * ty;
  const double length = std::hypot(x, y);
  return {y / length, -x / length};
}

double ResidualOf(const AffineMap& map, const Tie& tie) {
  const auto [x, y] = Mapped(map, tie.X, tie.Y);
  return tie.Nx * x + tie.Ny * y - tie.Target;
}

/// From which residual on a point is no point of its line: 4.7 standard deviations, told by the
/// median. A curve that runs along a grid line would turn the page.
double LimitOf(const AffineMap& map, const std::vector<Tie>& ties) {
  constexpr double kLeast = 0.4;
  std::vector<double> sizes;
  for (const Tie& tie : ties) sizes.push_back(std::fabs(ResidualOf(map, tie)));
  if (sizes.empty()) return kLeast;
  return std::max(kLeast, 4.7 * 1.4826 * Median(std::move(sizes)));
}

/// What 90 % of the points do not exceed: where a page is bent its lines lie further off than the
/// fit looks.
double WorstOf(const HeldLines& lines, const InkImage& page, const LineFit& fit) {
  constexpr double kReach = 7;
  std::vector<double> sizes;
  for (std::size_t i = 0; i < lines.Points.size(); ++i) {
    double off = fit.Residuals[i];
    if (std::isnan(off)) {
      const HeldPoint& point = lines.Points[i];
      const auto [nx, ny] = NormalThere(fit.Map, point);
      const auto [x, y] = Mapped(fit.Map, point.X, point.Y);
      off = MiddleNear(page, x, y, nx, ny, kReach, lines.Lines[point.Line].Reach);
    }
    if (!std::isnan(off)) sizes.push_back(std::fabs(off));
  }
  if (sizes.empty()) return 0;
  const auto worst =
      sizes.begin() + static_cast<std::ptrdiff_t>(0.9 * static_cast<double>(sizes.size() - 1));
  std::nth_element(sizes.begin(), worst, sizes.end());
  return *worst;
}

}  // namespace

HeldLines HeldLinesOf(const UprightPage& page) {
  HeldLines held;
  const LineSet lines = FindLongLines(page.Upright);
  AddLines(page, true, lines.Level, held);
  AddLines(page, false, lines.Upright, held);
  return held;
}

LineFit FitLines(const HeldLines& lines, const InkImage& page, const AffineMap& begin) {
  LineFit fit{.Map = begin};
  const bool both = TellsBothScales(lines);
  struct Round {
    double Reach;  // how far from its place a line is looked for, pixels
    double Limit;  // from where on a point does not count, at most
    bool Both;
  };
  std::vector<Tie> ties;
  std::vector<std::size_t> tied;
  for (const Round& round : {Round{7, 6, false}, Round{4, 3, both}, Round{2.5, 1.5, both}}) {
    ties.clear();
    tied.clear();
    for (std::size_t i = 0; i < lines.Points.size(); ++i) {
      const HeldPoint& point = lines.Points[i];
      const auto [nx, ny] = NormalThere(fit.Map, point);
      const auto [x, y] = Mapped(fit.Map, point.X, point.Y);
      const double off = MiddleNear(page, x, y, nx, ny, round.Reach, lines.Lines[point.Line].Reach);
      if (std::isnan(off)) continue;
      ties.push_back({point.X, point.Y, nx, ny, nx * x + ny * y + off, 1});
      tied.push_back(i);
    }
    for (int turn = 0; turn < 10; ++turn) {
      const double limit = std::min(std::max(round.Limit, 6.0 - 2 * turn), LimitOf(fit.Map, ties));
      for (Tie& tie : ties) {
        const double part = ResidualOf(fit.Map, tie) / limit;
        const double rest = std::max(1 - part * part, 0.0);
        tie.Weight = rest * rest;
      }
      const auto map = Solve(ties, round.Both);
      if (!map) return {.Map = begin, .Residuals = std::vector(lines.Points.size(), kNone)};
      fit.Map = *map;
    }
  }
  fit.Residuals.assign(lines.Points.size(), kNone);
  double squares = 0;
  int near = 0;
  for (std::size_t k = 0; k < ties.size(); ++k) {
    const double residual = ResidualOf(fit.Map, ties[k]);
    fit.Residuals[tied[k]] = residual;
    if (!(std::fabs(residual) < 1)) continue;
    ++near;
    squares += residual * residual;
  }
  fit.Worst = WorstOf(lines, page, fit);
  if (near == 0) return fit;
  fit.Rms = std::sqrt(squares / near);
  fit.Share = static_cast<double>(near) / static_cast<double>(lines.Points.size());
  return fit;
}

}  // namespace graphize
