#include "calibration/axis_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace graphize {

namespace {

constexpr double kMostSkewAsNone = 0.15 * std::numbers::pi / 180;
constexpr double kMostSkew = 10 * std::numbers::pi / 180;
constexpr double kLeastSigma = 0.2;    // pixels: what few references agree to by chance
constexpr double kClick = 0.35;        // pixels, of a place that was clicked
constexpr double kDisagreement = 1.5;  // pixels, rms
constexpr std::size_t kFewestToName = 8, kFewestToCompare = 4;

/// A place with what is known of it on one scale: the value, or its log10.
struct Known {
  int Number = 0;
  double Column = 0, Row = 0, Scale = 0;
  double Sigma = 0;  // of column and row
};

struct KnownPlaces {
  std::vector<Known> X, Y;
  int Count = 0;
  bool IsPossible = true;
};

KnownPlaces PlacesOf(const AxisCalibration& c) {
  KnownPlaces known;
  const auto add = [&](const ExactPlace& at, std::optional<float> x, std::optional<float> y) {
    const auto one = [&](std::vector<Known>& list, std::optional<float> value, bool log) {
      if (!value) return;
      const double scale = log ? std::log10(static_cast<double>(*value)) : *value;
      if (!std::isfinite(scale)) known.IsPossible = false;
      list.push_back({known.Count, at.Column, at.RowUp, scale, at.Sigma != 0 ? at.Sigma : kClick});
    };
    one(known.X, x, c.XLog);
    one(known.Y, y, c.YLog);
    ++known.Count;
  };
  for (std::size_t row = 0; row < 3; ++row) {
    const ExactPlace whole{static_cast<float>(c.PixelX[row]), static_cast<float>(c.PixelY[row])};
    add(c.Refined.Rows[row].value_or(whole), row == 2 ? std::nullopt : std::optional(c.ValueX[row]),
        c.ValueY[row == 1 ? 0 : row]);
  }
  for (const AxisReference& reference : c.Refined.References)
    add(reference.At, reference.X, reference.Y);
  return known;
}

/// Of columns and rows, what no straight line of the scale explains: sums of squares and products.
struct Scatter {
  double Columns = 0, Rows = 0, Both = 0;
};

struct Means {
  double Column = 0, Row = 0, Scale = 0, ScaleSquares = 0, Variance = 0;
};

Means MeansOf(const std::vector<Known>& places) {
  Means mean;
  const auto count = static_cast<double>(places.size());
  for (const Known& at : places) {
    mean.Column += at.Column / count;
    mean.Row += at.Row / count;
    mean.Scale += at.Scale / count;
    mean.Variance += at.Sigma * at.Sigma / count;
  }
  for (const Known& at : places)
    mean.ScaleSquares += (at.Scale - mean.Scale) * (at.Scale - mean.Scale);
  return mean;
}

Scatter ScatterOf(const std::vector<Known>& places) {
  const Means mean = MeansOf(places);
  double columns = 0, rows = 0;
  Scatter sum;
  for (const Known& at : places) {
    const double c = at.Column - mean.Column, r = at.Row - mean.Row, s = at.Scale - mean.Scale;
    sum.Columns += c * c;
    sum.Rows += r * r;
    sum.Both += c * r;
    columns += c * s;
    rows += r * s;
  }
  sum.Columns -= columns * columns / mean.ScaleSquares;
  sum.Rows -= rows * rows / mean.ScaleSquares;
  sum.Both -= columns * rows / mean.ScaleSquares;
  return sum;
}

/// Where cos^2 p + sin^2 r + 2 sin cos q is least, from -90 to 90 degrees, and how much more it is
/// at a right angle to that.
struct LeastAngle {
  double Angle = 0, Sum = 0, Contrast = 0;
};
LeastAngle LeastOf(double p, double q, double r) {
  const double half = 0.5 * std::hypot(p - r, 2 * q);
  const double twice = std::atan2(-2 * q, r - p);
  return {0.5 * twice, std::max(0.5 * (p + r) - half, 0.0), 2 * half};
}

/// Of both scales at a right angle to each other.
LeastAngle LeastOfBoth(const Scatter& x, const Scatter& y) {
  return LeastOf(x.Columns + y.Rows, x.Both - y.Both, x.Rows + y.Columns);
}
LeastAngle LeastOfX(const Scatter& x) {
  return LeastOf(x.Columns, x.Both, x.Rows);
}
LeastAngle LeastOfY(const Scatter& y) {
  return LeastOf(y.Rows, -y.Both, y.Columns);
}

/// One scale along a direction: place = Start + Step * scale.
struct Line {
  double Cos = 1, Sin = 0, Start = 0, Step = 1;

  double Along(double column, double row) const { return column * Cos + row * Sin; }
  double Residual(const Known& at) const {
    return Along(at.Column, at.Row) - Start - Step * at.Scale;
  }
};
Line LineOf(const std::vector<Known>& places, double cosine, double sine) {
  const Means mean = MeansOf(places);
  Line line{cosine, sine};
  double product = 0;
  for (const Known& at : places) product += (at.Scale - mean.Scale) * line.Along(at.Column, at.Row);
  line.Step = product / mean.ScaleSquares;
  line.Start = line.Along(mean.Column, mean.Row) - line.Step * mean.Scale;
  return line;
}

struct Solution {
  Line X, Y;
  double Skew = 0;
  bool IsSkewed = false;
  double Squares = 0;  // of the residuals
  int Freedom = 0;     // degrees of it

  double Rms() const { return Freedom > 0 ? std::sqrt(Squares / Freedom) : 0; }
  AffineMap Scale() const {
    return {X.Cos / X.Step, X.Sin / X.Step, -X.Start / X.Step,
            Y.Cos / Y.Step, Y.Sin / Y.Step, -Y.Start / Y.Step};
  }
};

/// Places along one line tell nothing of the direction across it but by their noise: a tenth of the
/// shorter side of all, squared.
double LeastContrast(const KnownPlaces& known) {
  double left = std::numeric_limits<double>::infinity(), low = left, right = -left, high = -left;
  for (const auto* list : {&known.X, &known.Y})
    for (const Known& at : *list) {
      left = std::min(left, at.Column);
      right = std::max(right, at.Column);
      low = std::min(low, at.Row);
      high = std::max(high, at.Row);
    }
  return std::pow(0.1 * std::min(right - left, high - low), 2) + 1;
}

std::optional<Solution> Solve(const KnownPlaces& known) {
  const auto isFlat = [](const std::vector<Known>& places) {
    return places.size() < 2 || !(MeansOf(places).ScaleSquares > 0);
  };
  if (!known.IsPossible || isFlat(known.X) || isFlat(known.Y)) return std::nullopt;
  const Scatter x = ScatterOf(known.X), y = ScatterOf(known.Y);
  const LeastAngle both = LeastOfBoth(x, y);
  if (!(both.Contrast > 0)) return std::nullopt;
  Solution found;
  const int values = static_cast<int>(known.X.size() + known.Y.size());
  double angleX = both.Angle, angleY = both.Angle;
  const LeastAngle ofX = LeastOfX(x), ofY = LeastOfY(y);
  const double contrast = LeastContrast(known);
  if (values > 6 && ofX.Contrast > contrast && ofY.Contrast > contrast) {
    found.Skew = std::remainder(ofY.Angle - ofX.Angle, std::numbers::pi);
    const double variance = std::max((ofX.Sum + ofY.Sum) / (values - 6), kLeastSigma * kLeastSigma);
    const double error = std::sqrt(variance / ofX.Contrast + variance / ofY.Contrast);
    found.IsSkewed = std::fabs(found.Skew) > kMostSkewAsNone && std::fabs(found.Skew) < kMostSkew &&
                     std::fabs(found.Skew) > 3 * error;
  }
  if (found.IsSkewed) {
    angleX = ofX.Angle;
    angleY = ofY.Angle;
  }
  found.X = LineOf(known.X, std::cos(angleX), std::sin(angleX));
  found.Y = LineOf(known.Y, -std::sin(angleY), std::cos(angleY));
  for (const Known& at : known.X) found.Squares += std::pow(found.X.Residual(at), 2);
  for (const Known& at : known.Y) found.Squares += std::pow(found.Y.Residual(at), 2);
  found.Freedom = values - (found.IsSkewed ? 6 : 5);
  if (found.X.Step == 0 || found.Y.Step == 0) return std::nullopt;
  return found;
}

std::vector<double> ResidualsOf(const Solution& solution, const KnownPlaces& known) {
  std::vector<double> residuals(static_cast<std::size_t>(known.Count));
  const auto add = [&](const Line& line, const std::vector<Known>& places) {
    for (const Known& at : places) {
      double& residual = residuals[static_cast<std::size_t>(at.Number)];
      residual = std::hypot(residual, line.Residual(at));
    }
  };
  add(solution.X, known.X);
  add(solution.Y, known.Y);
  return residuals;
}

/// The one without which the others agree best, where it then lies far off what they say.
std::optional<int> DoubtfulOf(const KnownPlaces& known) {
  constexpr double kLeastRms = 0.5, kTimes = 5.5;
  std::optional<int> doubtful;
  double least = std::numeric_limits<double>::infinity();
  for (int number = 0; number < known.Count; ++number) {
    KnownPlaces others = known;
    for (auto* list : {&others.X, &others.Y})
      std::erase_if(*list, [&](const Known& at) { return at.Number == number; });
    const auto solution = Solve(others);
    if (!solution || solution->Squares >= least) continue;
    least = solution->Squares;
    const double off = ResidualsOf(*solution, known)[static_cast<std::size_t>(number)];
    const double expected = std::max(solution->Rms(), kLeastRms);
    doubtful =
        off > kTimes * expected && off > kDisagreement ? std::optional(number) : std::nullopt;
  }
  return doubtful;
}

}  // namespace

std::optional<AxisFit> FitAxes(const AxisCalibration& calibration) {
  if (!calibration.IsComplete()) return std::nullopt;
  const KnownPlaces known = PlacesOf(calibration);
  const auto solution = Solve(known);
  if (!solution) return std::nullopt;
  AxisFit fit{.Scale = solution->Scale(),
              .Skew = solution->Skew,
              .IsSkewed = solution->IsSkewed,
              .Rms = solution->Rms(),
              .Residuals = ResidualsOf(*solution, known),
              .Doubtful = {}};
  const std::size_t count = fit.Residuals.size();
  if (count >= kFewestToName)
    fit.Doubtful = DoubtfulOf(known);
  else
    fit.Disagree = count >= kFewestToCompare && fit.Rms > kDisagreement;
  return fit;
}

double SigmaOfRow(const AxisCalibration& calibration, std::size_t row) {
  const std::optional<ExactPlace>& exact = calibration.Refined.Rows[row];
  if (!exact || exact->Sigma == 0) return kClick;
  return calibration.Refined.On ? exact->Sigma : std::hypot(exact->Sigma, 1 / std::sqrt(12));
}

AxisSpread SpreadAt(const AxisCalibration& calibration, double column, double rowUp) {
  const KnownPlaces known = PlacesOf(calibration);
  const auto solution = Solve(known);
  if (!solution) return {};
  const Scatter x = ScatterOf(known.X), y = ScatterOf(known.Y);
  const double both = LeastOfBoth(x, y).Contrast;
  const auto spread = [&](const Line& line, const std::vector<Known>& places, double contrast) {
    const Means mean = MeansOf(places);
    const double sigma = std::max(solution->Rms(), std::sqrt(mean.Variance));
    const double along = line.Along(column - mean.Column, rowUp - mean.Row);
    const double across = (rowUp - mean.Row) * line.Cos - (column - mean.Column) * line.Sin;
    const double ofStep = along / line.Step;
    return sigma * std::sqrt(1.0 / static_cast<double>(places.size()) +
                             ofStep * ofStep / mean.ScaleSquares + across * across / contrast);
  };
  const bool skewed = solution->IsSkewed;
  return {spread(solution->X, known.X, skewed ? LeastOfX(x).Contrast : both),
          spread(solution->Y, known.Y, skewed ? LeastOfY(y).Contrast : both)};
}

bool HasReferences(const AxisCalibration& calibration) {
  const AxisRefinement& refined = calibration.Refined;
  return !refined.References.empty() ||
         std::any_of(refined.Rows.begin(), refined.Rows.end(),
                     [](const auto& row) { return row.has_value(); });
}

bool SwitchRefined(AxisCalibration& calibration, bool on) {
  AxisRefinement& refined = calibration.Refined;
  const auto fit = on && HasReferences(calibration) ? FitAxes(calibration) : std::nullopt;
  refined.On = fit.has_value();
  refined.Scale = fit ? fit->Scale : AffineMap{};
  return refined.On == on;
}

}  // namespace graphize
