#include "reading/stroke_arms.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace graphize {

Arm ArmOf(const std::vector<StrokeSample>& samples, int first, int step) {
  Arm arm;
  const int count = static_cast<int>(samples.size());
  for (int i = first; i >= 0 && i < count && std::abs(i - first) < kArm; i += step)
    if (samples[i].IsSeen) arm.push_back({samples[i].X(), samples[i].Y()});
  return arm;
}

std::optional<Course> CourseOver(const Arm& before, const Arm& behind, int degree) {
  const PolynomialNode &a = before.back(), &b = behind.back();
  const double length = std::hypot(b.T - a.T, b.F - a.F);
  if (length <= 0) return std::nullopt;
  Course course{.From = a, .CX = (b.T - a.T) / length, .CY = (b.F - a.F) / length};
  std::vector<PolynomialNode> nodes;
  const auto add = [&](const PolynomialNode& at) {
    const double x = at.T - a.T, y = at.F - a.F;
    nodes.push_back({x * course.CX + y * course.CY, y * course.CX - x * course.CY});
  };
  std::for_each(before.rbegin(), before.rend(), add);
  std::for_each(behind.begin(), behind.end(), add);
  course.First = nodes[before.size() - 1].T;
  course.Last = nodes[before.size()].T;
  if (course.First >= course.Last) return std::nullopt;
  const auto fit = FitPolynomial(nodes, degree);
  if (!fit) return std::nullopt;
  course.Across = *fit;
  return course;
}

double BendOf(const Arm& before, const Arm& behind) {
  if (before.size() < 6 || behind.size() < 6) return kNoArm;
  const auto course = CourseOver(before, behind, before.size() + behind.size() >= 24 ? 3 : 2);
  return course ? course->Across.Rms : kNoBend;
}

Parting PartingOf(const Arm& before, const Arm& otherBefore, const Arm& behind,
                  const Arm& otherBehind) {
  if (before.size() < 6 || behind.size() < 6) return {};
  // By columns: curves are mostly functions of them. By rows where they are nearly upright.
  const PolynomialNode &a = before.back(), &b = behind.back();
  const bool byRows = std::fabs(b.F - a.F) > 4 * std::fabs(b.T - a.T);
  const auto turned = [&](const PolynomialNode& at) {
    return byRows ? PolynomialNode{at.F, at.T} : at;
  };
  std::vector<PolynomialNode> asTheyAre, crossed;
  const auto add = [&](const Arm& arm, const Arm& other, double sign) {
    std::size_t count = 0;
    for (const PolynomialNode& node : arm) {
      const PolynomialNode at = turned(node);
      for (std::size_t i = 1; i < other.size(); ++i) {
        const PolynomialNode p = turned(other[i - 1]), q = turned(other[i]);
        if ((p.T - at.T) * (q.T - at.T) > 0 || p.T == q.T) continue;
        const double away = at.F - (p.F + (at.T - p.T) / (q.T - p.T) * (q.F - p.F));
        asTheyAre.push_back({at.T, away});
        crossed.push_back({at.T, sign * away});
        ++count;
        break;
      }
    }
    return count;
  };
  constexpr std::size_t kLeast = 8;
  if (add(before, otherBefore, 1) < kLeast || add(behind, otherBehind, -1) < kLeast) return {};
  const auto rmsOf = [](std::vector<PolynomialNode>& nodes) {
    const double first = nodes.front().T;
    for (PolynomialNode& node : nodes) node.T -= first;
    const auto fit = FitPolynomial(nodes, 3);
    return fit ? fit->Rms : kNoArm;
  };
  return {rmsOf(asTheyAre), rmsOf(crossed)};
}

bool EndsOn(const Arm& arm, const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  const PolynomialNode& end = arm.back();
  return std::any_of(samples.begin(), samples.end(), [&](const StrokeSample& sample) {
    return std::hypot(sample.X() - end.T, sample.Y() - end.F) < 0.5 * kind.Width + 1;
  });
}

}  // namespace graphize
