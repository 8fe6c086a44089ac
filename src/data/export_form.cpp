#include "data/export_form.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/numbers.h"
#include "data/x_grid.h"

namespace graphize {

namespace {

std::span<const ExportCurve> ChosenCurves(const ExportForm& form) {
  return std::span(form.Curves).first(form.AllCurves ? form.Curves.size() : 1);
}

std::string Counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
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
    return Counted(rows, "point", "points") +
           (isOneOfSeveral ? " of " + curves.front().Name + " alone" : "");
  }
  if (!grid.Fault.empty()) return grid.Fault;
  if (grid.Values.empty())
    return Counted(AllX(curves).size(), "X value", "X values") + ", all that there are";
  const auto [least, most] = std::minmax_element(grid.Values.begin(), grid.Values.end());
  std::string text = Counted(grid.Values.size(), "X value", "X values") + " from " +
                     ShortestText(*least) + " to " + ShortestText(*most);
  if (const std::size_t outside = CountOutside(curves, grid.Values))
    text += curves.size() > 1
                ? "; " + Counted(outside, "cell", "cells") + " outside the curves, left empty"
                : "; " + std::to_string(outside) + " outside the curve, left empty";
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
  const std::string which = without == rows
                                ? "The rows"
                                : std::to_string(without) + " of " + std::to_string(rows) + " rows";
  return which + " are no places on the picture as it is: they have the list's values.";
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
         grid.Fault + "\r\nThe X grid is a list of numbers (0, 0.5, 1) or a range (0:0.5:10).",
         MessageIcon::Exclamation);
    return std::nullopt;
  }
  table.Curves = OverCommonX(curves, grid.Values.empty() ? AllX(curves) : grid.Values, calibration);
  return table;
}

}  // namespace graphize
