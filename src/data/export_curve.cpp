#include "data/export_curve.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/numbers.h"
#include "calibration/transform.h"
#include "data/interpolation.h"

namespace graphize {

namespace {

using Kind = PointStore::Rows;

double Scaled(double value, bool log) {
  return log ? std::log10(value) : value;
}

/// A curve as a function of X.
class Function {
 public:
  explicit Function(const ExportCurve& curve)
      : curve_(curve),
        between_(Column(&ExportRow::X, curve.XLog), Column(&ExportRow::Y, curve.YLog)) {
    const auto byX = [](const ExportRow& a, const ExportRow& b) { return a.X < b.X; };
    const auto [least, most] = std::minmax_element(curve.Rows.begin(), curve.Rows.end(), byX);
    if (least == curve.Rows.end()) return;
    least_ = least->X;
    most_ = most->X;
  }

  /// The row at X; without Y where there is none.
  ExportRow At(double X) const {
    ExportRow row{.X = X, .HasY = false};
    if (!(X >= least_ && X <= most_)) return row;
    const double x = Scaled(X, curve_.XLog);
    const std::size_t first = curve_.Rows.size() < 2 ? 0 : between_.SegmentOf(x);
    const std::size_t end = std::min(first + 2, curve_.Rows.size());
    for (std::size_t i = first; i < end && !row.HasY; ++i) {
      if (curve_.Rows[i].X != X) continue;
      row = curve_.Rows[i];
      row.HasY = true;
    }
    if (row.HasY) return row;
    const double y = between_.At(x);
    TakeCertainty(row, first, end);
    row.Y = curve_.YLog ? std::pow(10.0, y) : y;
    row.HasY = std::isfinite(y) && std::isfinite(row.Y);
    return row;
  }

 private:
  /// Between rows, as little is known as of the one that is known less.
  void TakeCertainty(ExportRow& row, std::size_t first, std::size_t end) const {
    row.HasStandard = first < end;
    for (std::size_t i = first; i < end; ++i) {
      const ExportRow& beside = curve_.Rows[i];
      row.HasStandard = row.HasStandard && beside.HasStandard;
      row.IsBridged = row.IsBridged || beside.IsBridged;
      row.Standard.X = std::max(row.Standard.X, beside.Standard.X);
      row.Standard.Y = std::max(row.Standard.Y, beside.Standard.Y);
    }
  }
  std::vector<double> Column(double ExportRow::*value, bool log) const {
    std::vector<double> values;
    values.reserve(curve_.Rows.size());
    for (const ExportRow& row : curve_.Rows) values.push_back(Scaled(row.*value, log));
    return values;
  }

  const ExportCurve& curve_;
  Interpolation between_;
  double least_ = 1, most_ = 0;  // of no X at all
};

/// The decimal number to a billionth of a pixel: what is beyond that in a place that was computed
/// comes of its arithmetic, and makes 1.9999999999999998 of a 2.
double WithoutNoise(double value, double pixel) {
  const double least = 1e-9 * std::fabs(pixel);
  if (value == 0 || !std::isnormal(least)) return value;
  const double digits = std::floor(std::log10(std::fabs(value))) - std::floor(std::log10(least));
  if (!(digits < std::numeric_limits<double>::digits10)) return value;
  if (digits < 0) return 0;
  std::array<char, 32> text{};
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), value,
                                        std::chars_format::scientific, static_cast<int>(digits))
                              .ptr;
  std::from_chars(text.data(), end, value);
  return value;
}

}  // namespace

ExportCurve ListCurve(const std::string& name, const PointStore& store,
                      const AxisCalibration& calibration) {
  ExportCurve curve{.Name = name,
                    .Kind = store.ListRows,
                    .HasErrors = HasRowErrors(store, calibration),
                    .WithoutPlace = store.ListCount};
  if (curve.HasErrors) {
    const bool swapped = curve.Kind == Kind::SwappedPlaces;
    curve.XLog = swapped ? calibration.YLog : calibration.XLog;
    curve.YLog = swapped ? calibration.XLog : calibration.YLog;
  }
  for (int i = 1; i <= store.ListCount; ++i) {
    ExportRow row{.X = DecimalValue(store.ListX[i]), .Y = DecimalValue(store.ListY[i])};
    if (curve.HasErrors)
      row.Error = RowErrorAt(curve.Kind, calibration, store.ListX[i], store.ListY[i]);
    curve.Rows.push_back(row);
  }
  return curve;
}

ExportCurve PlacedCurve(const std::string& name, const PointStore& store,
                        const AxisCalibration& calibration, int pictureHeight) {
  ExportCurve curve = ListCurve(name, store, calibration);
  if (!curve.HasErrors) return curve;
  const bool swapped = curve.Kind == Kind::SwappedPlaces;
  const std::vector<RowError> standard = store.Certainties.empty()
                                             ? std::vector<RowError>()
                                             : RowErrorsOf(store, calibration, pictureHeight);
  for (int i = 1; i <= store.ListCount; ++i) {
    if (store.ListId[i] == 0) continue;
    const Place& place = store.Places[store.ListId[i]];
    const float X = swapped ? store.ListY[i] : store.ListX[i];
    const float Y = swapped ? store.ListX[i] : store.ListY[i];
    // As the cursor computes it, and so as the list has it.
    const float rowUp = static_cast<float>(pictureHeight) - place.Row;
    if (!Reads(calibration, place.Column, rowUp, X, Y)) continue;
    const RealPlace at = RealPlaceOf(store, store.ListId[i]);
    const RealPoint real = RealPointAt(calibration, at.Column, pictureHeight - at.Row);
    if (!std::isfinite(real.X) || !std::isfinite(real.Y)) continue;
    ExportRow& row = curve.Rows[i - 1];
    row.X = swapped ? real.Y : real.X;
    row.Y = swapped ? real.X : real.Y;
    if (at != RealPlace{place.Column, place.Row}) {
      row.X = WithoutNoise(row.X, row.Error.X);
      row.Y = WithoutNoise(row.Y, row.Error.Y);
    }
    const Certainty certainty = CertaintyOf(store, store.ListId[i]);
    row.IsBridged = certainty.IsBridged != 0;
    row.HasStandard = certainty.IsKnown();
    if (row.HasStandard) row.Standard = standard[static_cast<std::size_t>(i - 1)];
    --curve.WithoutPlace;
  }
  return curve;
}

std::vector<double> AllX(std::span<const ExportCurve> curves) {
  std::vector<double> xs;
  for (const ExportCurve& curve : curves)
    for (const ExportRow& row : curve.Rows)
      if (std::isfinite(row.X)) xs.push_back(row.X);
  std::sort(xs.begin(), xs.end());
  xs.erase(std::unique(xs.begin(), xs.end()), xs.end());
  return xs;
}

std::vector<ExportCurve> OverCommonX(std::span<const ExportCurve> curves,
                                     std::span<const double> xs,
                                     const AxisCalibration& calibration) {
  std::vector<ExportCurve> result;
  for (const ExportCurve& curve : curves) {
    const Function function(curve);
    ExportCurve& common = result.emplace_back(curve);
    common.Rows.clear();
    for (const double x : xs) {
      ExportRow row = function.At(x);
      if (curve.HasErrors && row.HasY)
        row.Error = RowErrorAt(curve.Kind, calibration, static_cast<float>(row.X),
                               static_cast<float>(row.Y));
      common.Rows.push_back(row);
    }
  }
  return result;
}

}  // namespace graphize
