#include "data/export_form.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"
#include "data/x_grid.h"

namespace graphize {

namespace {

std::span<const ExportCurve> ChosenCurves(const ExportForm& form) {
  return std::span(form.Curves).first(form.AllCurves ? form.Curves.size() : 1);
}

std::string XValues(std::size_t count) {
  return TrCount("%1 X value", "%1 X values", static_cast<long long>(count));
}

/// How many X of the grid lie outside a curve, added up over the curves.
std::size_t CountOutside(std::span<const ExportCurve> curves, const std::vector<double>& xs) {
  std::size_t outside = 0;
  for (const ExportCurve& curve : curves) {
    const auto ends =
        std::minmax_element(curve.Rows.begin(), curve.Rows.end(),
                            [](const ExportRow& a, const ExportRow& b) { return a.X < b.X; });
    outside += static_cast<std::size_t>(std::count_if(xs.begin(), xs.end(), [&](double x) {
      return curve.Rows.empty() || !(x >= ends.first->X && x <= ends.second->X);
    }));
  }
  return outside;
}

/// The rows, as the X grid has them.
std::string HintOnRows(const ExportForm& form, const XGrid& grid) {
  const std::span<const ExportCurve> curves = ChosenCurves(form);
  if (!form.CommonX) {
    std::size_t rows = 0;
    for (const ExportCurve& curve : curves) rows += curve.Rows.size();
    const bool isOneOfSeveral = form.Curves.size() > 1 && !form.AllCurves;
    const std::string points = TrCount("%1 point", "%1 points", static_cast<long long>(rows));
    return isOneOfSeveral ? Tr("%1 of %2 alone", points, curves.front().Name) : points;
  }
  if (!grid.Fault.empty()) return grid.Fault;
  if (grid.Values.empty()) return Tr("%1, all that there are", XValues(AllX(curves).size()));
  const auto [least, most] = std::minmax_element(grid.Values.begin(), grid.Values.end());
  std::string text = Tr("%1 from %2 to %3", XValues(grid.Values.size()), ShortestText(*least),
                        ShortestText(*most));
  if (const auto outside = static_cast<long long>(CountOutside(curves, grid.Values)))
    text += "; " + (curves.size() > 1 ? TrCount("%1 cell outside the curves, left empty",
                                                "%1 cells outside the curves, left empty", outside)
                                      : Tr("%1 outside the curve, left empty", outside));
  return text;
}

/// Which values are the list's own; empty when there is none.
std::string HintOnPlaces(const ExportForm& form) {
  std::size_t rows = 0, without = 0;
  for (const ExportCurve& curve : ChosenCurves(form)) {
    rows += curve.Rows.size();
    without += static_cast<std::size_t>(curve.WithoutPlace);
  }
  if (without == 0) return {};
  if (without == rows)
    return Tr("The rows are no places on the picture as it is: they have the list's values.");
  return Tr("%1 of %2 rows are no places on the picture as it is: they have the list's values.",
            static_cast<long long>(without), static_cast<long long>(rows));
}

}  // namespace

bool ExportForm::CanErrors() const {
  return std::any_of(Curves.begin(), Curves.end(),
                     [](const ExportCurve& curve) { return curve.HasErrors; });
}

bool ExportForm::CanPixelErrors() const {
  return Errors && std::any_of(Curves.begin(), Curves.end(),
                               [](const ExportCurve& curve) { return curve.HasStandard(); });
}

bool OpenExport(ExportForm& form, std::vector<ExportCurve> curves, const Desktop& desktop) {
  if (std::all_of(curves.begin(), curves.end(),
                  [](const ExportCurve& curve) { return curve.Rows.empty(); })) {
    Tell(desktop, "No Points in List", MessageIcon::Exclamation);
    return false;
  }
  form.Curves = std::move(curves);
  if (!form.CanAllCurves()) form.AllCurves = false;
  ShowHint(form);
  return true;
}

void ShowHint(ExportForm& form) {
  form.Hint = HintOnRows(form, ReadXGrid(form.XGrid));
  if (!form.Hint.ends_with('.')) form.Hint += '.';
  if (const std::string places = HintOnPlaces(form); !places.empty()) form.Hint += "\n" + places;
}

std::optional<PointTable> TableOfForm(const ExportForm& form, const AxisCalibration& calibration,
                                      const Desktop& desktop) {
  const std::span<const ExportCurve> curves = ChosenCurves(form);
  PointTable table{.CommonX = form.CommonX,
                   .Errors = form.Errors,
                   .Kind = form.PixelErrors ? ErrorKind::Pixel : ErrorKind::Standard};
  if (!form.CommonX) {
    table.Curves.assign(curves.begin(), curves.end());
    return table;
  }
  const XGrid grid = ReadXGrid(form.XGrid);
  if (!grid.Fault.empty()) {
    Tell(desktop,
         Tr("%1\r\nThe X grid is a list of numbers (0, 0.5, 1) or a range (0:0.5:10).", grid.Fault),
         MessageIcon::Exclamation);
    return std::nullopt;
  }
  table.Curves = OverCommonX(curves, grid.Values.empty() ? AllX(curves) : grid.Values, calibration);
  return table;
}

}  // namespace graphize
