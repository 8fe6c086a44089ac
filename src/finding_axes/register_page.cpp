#include "finding_axes/register_page.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number_pattern.h"
#include "base/translation.h"
#include "finding_axes/long_lines.h"

namespace graphize {

namespace {

// From this share on no other way is looked at.
constexpr double kClearShare = 0.92;
constexpr double kLeastShare = 0.5, kLeastOfSide = 0.3, kMostRms = 0.6;
constexpr double kMostStretch = 0.01, kMostSkew = 0.4, kMostScaling = 0.05;
constexpr double kMostBent = 1.5;
constexpr double kMostUnlike = 0.34;

std::string Percent(double part) {
  return std::to_string(std::lround(100 * part));
}

/// Turn, scales and skew of a map.
struct Shape {
  double Turn, Skew;  // degrees
  double ScaleX, ScaleY;
};
Shape ShapeOf(const AffineMap& map) {
  const double turn = std::atan2(map.YX, map.XX), lean = std::atan2(-map.XY, map.YY);
  return {turn / kDegree, (lean - turn) / kDegree, std::hypot(map.XX, map.YX),
          std::hypot(map.XY, map.YY)};
}

/// What stands against the fit of the lines; empty: nothing.
std::string LinesFault(const HeldLines& lines, const LineFit& fit) {
  if (fit.Share < kLeastShare)
    return Tr("only %1 % of the frame and grid are where the calibrated page has them",
              Percent(fit.Share));
  struct Points {
    int All = 0, Near = 0;
  };
  std::vector<Points> ofLine(lines.Lines.size());
  std::array<Points, 2> ofCourse;
  for (std::size_t i = 0; i < lines.Points.size(); ++i) {
    const int line = lines.Points[i].Line;
    for (Points* points : {&ofLine[line], &ofCourse[lines.Lines[line].IsLevel ? 0 : 1]}) {
      ++points->All;
      if (std::fabs(fit.Residuals[i]) < 1) ++points->Near;
    }
  }
  for (std::size_t line = 0; line < lines.Lines.size(); ++line)
    if (lines.Lines[line].IsSide && ofLine[line].Near < kLeastOfSide * ofLine[line].All)
      return Tr("a side of the frame is missing");
  for (const Points& points : ofCourse)
    if (points.Near < kLeastShare * points.All)
      return Tr("level and upright lines do not lie to each other as on the calibrated page");
  if (fit.Rms > kMostRms)
    return Tr("frame and grid are bent: they lie %1 pixels off", RoundedText(fit.Rms, 100));
  const Shape shape = ShapeOf(fit.Map);
  if (std::fabs(shape.Skew) > kMostSkew)
    return Tr("the page is skewed by %1 degrees", RoundedText(shape.Skew, 10));
  if (std::fabs(shape.ScaleX / shape.ScaleY - 1) > kMostStretch)
    return Tr(
        "the page is stretched by %1 %",
        RoundedText(
            100 * (std::max(shape.ScaleX, shape.ScaleY) / std::min(shape.ScaleX, shape.ScaleY) - 1),
            10));
  return {};
}

std::string LabelsFault(const LabelCounts& counts) {
  for (const LabelCount* count : {&counts.X, &counts.Y}) {
    const bool ofX = count == &counts.X;
    const int seen = count->All - count->Hidden;
    if (2 * seen < count->All)
      return ofX ? Tr("most labels of the X axis lie beyond the edge of the page")
                 : Tr("most labels of the Y axis lie beyond the edge of the page");
    if (count->Unlike > kMostUnlike * seen)
      return ofX ? Tr("of %1 labels of the X axis, %2 are other ones", seen, count->Unlike)
                 : Tr("of %1 labels of the Y axis, %2 are other ones", seen, count->Unlike);
  }
  return {};
}

std::string LabelsDoubt(const LabelCounts& counts) {
  if (counts.X.All == 0) return Tr("the calibrated page has no labels to hold the X axis by");
  if (counts.Y.All == 0) return Tr("the calibrated page has no labels to hold the Y axis by");
  if (counts.HasMoreAtEnds)
    return Tr("at the end of an axis stands what the calibrated page has not");
  return {};
}

}  // namespace

PageReference PageReferenceOf(const Raster& picture, PictureOperation& operation) {
  PageReference reference;
  if (!picture.IsEmpty()) reference.Page = UprightPageOf(picture, operation);
  if (operation.Stopped) return reference;
  reference.Lines = HeldLinesOf(reference.Page);
  int level = 0, upright = 0;
  for (const HeldLine& line : reference.Lines.Lines) ++(line.IsLevel ? level : upright);
  if (level < 1 || upright < 1 || level + upright < 3 || reference.Lines.Points.size() < 40) {
    reference.Refusal =
        Tr("the calibrated page has too few straight lines to hold others by: a frame or a grid is "
           "needed");
    return reference;
  }
  reference.Labels = PageLabelsOf(reference.Page, reference.Lines, operation);
  const auto& points = reference.Lines.Points;
  for (double HeldPoint::*at : {&HeldPoint::X, &HeldPoint::Y}) {
    const auto [least, most] =
        std::minmax_element(points.begin(), points.end(),
                            [&](const HeldPoint& a, const HeldPoint& b) { return a.*at < b.*at; });
    const double middle = 0.5 * (*least.*at + *most.*at);
    (at == &HeldPoint::X ? reference.MiddleX : reference.MiddleY) = middle;
  }
  const MappedPlace middle =
      Mapped(reference.Page.Ink.ToPicture, reference.MiddleX, reference.MiddleY);
  reference.MiddleX = middle.X;
  reference.MiddleY = middle.Y;
  return reference;
}

PageRegistration RegisterPage(const PageReference& reference, const Raster& page,
                              PictureOperation& operation) {
  PageRegistration registration{.Refusal = reference.Refusal};
  if (!reference.Refusal.empty()) return registration;
  UprightPage upright;
  if (!page.IsEmpty()) upright = UprightPageOf(page, operation);
  if (operation.Stopped) {
    registration.IsStopped = true;
    return registration;
  }
  LineFit best;
  for (const PageMatch& match : MatchPages(reference.Page, upright)) {
    LineFit fit = FitLines(reference.Lines, upright.Ink, match.Map);
    if (best.Residuals.empty() || fit.Share > best.Share) best = std::move(fit);
    if (best.Share > kClearShare) break;
  }
  if (best.Residuals.empty()) {
    registration.Refusal = Tr("there is no frame or grid");
    return registration;
  }
  const AffineMap& from = reference.Page.Ink.ToPicture;
  const AffineMap& to = upright.Ink.ToPicture;
  registration.ToPage = Then(Then(Inverse(from), best.Map), to);
  registration.Worst = best.Worst * upright.Ink.Scale;
  registration.Rms = best.Rms * upright.Ink.Scale;
  const MappedPlace middle = Mapped(registration.ToPage, reference.MiddleX, reference.MiddleY);
  registration.ShiftX = middle.X - reference.MiddleX;
  registration.ShiftY = middle.Y - reference.MiddleY;
  const Shape shape = ShapeOf(registration.ToPage);
  registration.Turn = shape.Turn;
  registration.Scale = std::sqrt(std::fabs(Determinant(registration.ToPage)));
  registration.Refusal = LinesFault(reference.Lines, best);
  if (registration.Refusal.empty() && std::fabs(registration.Scale - 1) > kMostScaling)
    registration.Refusal = Tr("the page's scale is %1 times the calibrated one's",
                              RoundedText(registration.Scale, 1000));
  if (!registration.Refusal.empty()) return registration;
  const LabelCounts counts = CountUnlike(reference.Labels, reference.Page, upright.Ink, best.Map);
  registration.Refusal = LabelsFault(counts);
  if (registration.Fits()) registration.Doubt = LabelsDoubt(counts);
  if (registration.Fits() && registration.Doubt.empty() && best.Worst > kMostBent)
    registration.Doubt =
        Tr("frame and grid are bent: they lie %1 pixels off", RoundedText(registration.Worst, 100));
  return registration;
}

}  // namespace graphize
