#include "tracing/traced_stroke.h"

#include <array>
#include <numbers>
#include <optional>
#include <utility>

#include "base/median.h"
#include "base/polynomial.h"

namespace graphize {

namespace {

constexpr int kThickest = 60;  // pixels that a stroke's thickness is followed

int Rounded(double value) {
  return static_cast<int>(std::lround(value));
}

}  // namespace

TracedStroke::TracedStroke(InkSight& sight, std::vector<Vector> places,
                           const std::optional<PlotFrame>& frame)
    : sight_(sight), at_(std::move(places)), frame_(frame) {
  for (std::size_t i = 0; i < at_.size(); ++i) {
    along_.push_back(i == 0 ? 0 : along_.back() + (at_[i] - at_[i - 1]).Length());
    thickness_.push_back(LookThrough(at_[i]));
  }
  usual_ = Median(thickness_);
  const double part = Length() / static_cast<double>(Size());
  for (std::size_t k = 0, i = 0; k < Size(); ++k) {
    while (i + 1 < Size() && along_[i] <= static_cast<double>(k) * part) ++i;
    beyond_.push_back(i);
  }
}

bool TracedStroke::IsOnFrame(Vector at) const {
  const auto isIn = [at](const AxesFrame& box) {
    const double u = box.U(at.X, at.Y), v = box.V(at.X, at.Y);
    return u >= box.Left && u <= box.Right && v >= box.Top && v <= box.Bottom;
  };
  return frame_ && !isIn(frame_->Inner) && isIn(frame_->Outer);
}

Vector TracedStroke::AtLength(double length) const {
  if (length <= 0) return at_.front();
  if (!(length < Length())) return at_.back();
  const auto k = static_cast<std::size_t>(length / Length() * static_cast<double>(Size()));
  const auto beyond = [this](std::size_t at) {
    return along_.begin() + static_cast<std::ptrdiff_t>(beyond_[at]);
  };
  // A part more on either side, for `k` is rounded.
  const auto next = std::upper_bound(beyond(k > 1 ? k - 2 : 0),
                                     k + 2 < Size() ? beyond(k + 2) : along_.end(), length);
  const auto i = static_cast<std::size_t>(next - along_.begin());
  const double part = (length - along_[i - 1]) / (along_[i] - along_[i - 1]);
  return at_[i - 1] + part * (at_[i] - at_[i - 1]);
}

InkShade TracedStroke::ShadeOn(double first, double end) {
  std::vector<double> red, green, blue;
  for (double along = first; along <= end; ++along) {
    const Vector at = AtLength(along);
    const std::optional<InkShade> shade = sight_.StrongestNear(at.X, at.Y, 1);
    if (!shade) continue;
    red.push_back(shade->Red);
    green.push_back(shade->Green);
    blue.push_back(shade->Blue);
  }
  if (red.empty()) return {};
  return {Rounded(Median(red)), Rounded(Median(green)), Rounded(Median(blue))};
}

double TracedStroke::TurnAt(double here, double gap, double reach) const {
  const auto directionOn = [&](double first, double end) {
    std::vector<PolynomialNode> columns, rows;
    for (std::size_t i = FirstAt(first); i < at_.size() && along_[i] <= end; ++i) {
      columns.push_back({along_[i] - here, at_[i].X});
      rows.push_back({along_[i] - here, at_[i].Y});
    }
    constexpr std::size_t kEnough = 6;  // places of which a bend is told
    const int degree = columns.size() >= kEnough ? 2 : 1;
    const auto x = FitPolynomial(columns, degree), y = FitPolynomial(rows, degree);
    return x && y ? std::optional(Vector{x->C[1], y->C[1]}) : std::nullopt;
  };
  const auto before = directionOn(here - reach, here - gap);
  const auto behind = directionOn(here + gap, here + reach);
  return before && behind ? AngleOf(*before, *behind) : 180;
}

double TracedStroke::GoesOn(Vector from, Vector way, double here, int side, double angle,
                            const InkShade& shade) {
  constexpr int kEnough = 12;
  const double away = 0.5 * usual_ + 2.5;
  const double farthest =
      std::min(60.0, away / std::sin(std::min(angle, 90.0) * std::numbers::pi / 180) + 26);
  const Vector unit = Unit(way);
  // What the track may come near to.
  const double end = here + side * (farthest + 20);
  const std::size_t first = FirstAt(std::min(here, end)), last = FirstAt(std::max(here, end));
  int ink = 0, all = 0, gap = 0;
  for (double k = 1; k <= farthest && all < kEnough + 6; ++k) {
    const Vector at = from + k * unit;
    bool isAway = true;
    for (std::size_t i = first; isAway && i < std::min(last + 1, at_.size()); ++i)
      isAway = Dot(at_[i] - at, at_[i] - at) > away * away;
    if (!isAway) continue;
    ++all;
    const bool isInk = !IsOnFrame(at) && sight_.HasInkNear(at.X, at.Y, 1 + k / 16, shade);
    ink += isInk ? 1 : 0;
    gap = isInk ? 0 : gap + 1;
    if (gap > 8) return 0;
  }
  return all >= kEnough ? static_cast<double>(ink) / all : 0;
}

double TracedStroke::LookThrough(Vector at) {
  struct Pixel {
    int X, Y;
  };
  const Pixel here{Rounded(at.X), Rounded(at.Y)};
  std::optional<Pixel> ink;
  for (const auto& [dx, dy] : {Pixel{0, 0}, {0, 1}, {0, -1}, {1, 0}, {-1, 0}})
    if (!ink && sight_.IsInk(here.X + dx, here.Y + dy)) ink = {here.X + dx, here.Y + dy};
  if (!ink) return 0;
  double least = kThickest;
  for (const auto& [dx, dy] : {Pixel{1, 0}, {0, 1}, {1, 1}, {1, -1}}) {
    const double unit = dy == 0 || dx == 0 ? 1 : std::numbers::sqrt2;
    int count = 1;
    for (const int sign : {-1, 1})
      for (int i = 1;
           i * unit < least && sight_.IsInk(ink->X + sign * i * dx, ink->Y + sign * i * dy); ++i)
        ++count;
    least = std::min(least, count * unit);
  }
  return least;
}

}  // namespace graphize
