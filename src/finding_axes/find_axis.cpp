#include "finding_axes/find_axis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "base/numbers.h"
#include "base/translation.h"
#include "finding_axes/axis_doubts.h"

namespace graphize {

namespace {

constexpr std::size_t kFewest = 3;  // labels that make an axis

/// Words in one row, or under each other: by right, left edge or middle.
std::set<std::vector<int>> GroupsOf(const LabelPage& page, AxisCourse course) {
  const auto keys = [&](const Word& word) -> std::vector<double> {
    if (course == AxisCourse::Level) return {word.Baseline};
    return {static_cast<double>(word.Box.Right), static_cast<double>(word.Box.Left),
            word.MiddleX()};
  };
  std::set<std::vector<int>> groups;
  const int count = static_cast<int>(page.Words.size());
  for (int seed = 0; seed < count; ++seed) {
    if (page.Words[seed].Meanings.empty()) continue;
    const Word& word = page.Words[seed].Is;
    const std::vector<double> wanted = keys(word);
    for (std::size_t k = 0; k < wanted.size(); ++k) {
      std::vector<int> group;
      for (int i = 0; i < count; ++i) {
        if (page.Words[i].Meanings.empty()) continue;
        const Word& other = page.Words[i].Is;
        const double reach = (course == AxisCourse::Level ? 0.35 : 0.6) * word.Height;
        const double part = other.Height / word.Height;
        if (std::fabs(keys(other)[k] - wanted[k]) <= std::max(reach, 1.5) && part > 0.75 &&
            part < 1.34)
          group.push_back(i);
      }
      if (group.size() >= kFewest) groups.insert(std::move(group));
    }
  }
  return groups;
}

struct GroupFit {
  std::vector<int> Words;  // the group's
  LawFit Fit;
  double Height = 0;
};

GroupFit FitGroup(const LabelPage& page, AxisCourse course, const std::vector<int>& group,
                  const PictureOperation& operation, const LawFit* besides = nullptr) {
  GroupFit made{group, {}, 0};
  std::vector<PlacedLabel> labels;
  for (const int word : group) {
    labels.push_back({AlongOf(page.Words[word].Is, course), page.Words[word].Meanings});
    made.Height += page.Words[word].Is.Height / static_cast<double>(group.size());
  }
  made.Fit = FindLaw(labels, ToleranceOf(course, made.Height), operation, besides);
  return made;
}

/// The line that the labels stand at: the nearest beside them that runs along most of them.
const LongLine* LineBeside(const LabelPage& page, AxisCourse course, const InkBox& labels,
                           double height) {
  const bool level = course == AxisCourse::Level;
  const int from = level ? labels.Left : labels.Top, to = level ? labels.Right : labels.Bottom;
  const int near = level ? labels.Top : labels.Left, far = level ? labels.Bottom : labels.Right;
  const LongLine* best = nullptr;
  double nearest = 3.5 * height;
  for (const LongLine& line : level ? page.Lines.Level : page.Lines.Upright) {
    const int overlap = std::min(line.To, to) - std::max(line.From, from);
    if (overlap < 0.6 * (to - from)) continue;
    const double gap = std::max(near - line.Across, line.Across - far);
    if (gap < -0.3 * height || gap >= nearest) continue;
    nearest = gap;
    best = &line;
  }
  return best;
}

/// Ties labels to `ticks`, fits the law to these, and leaves out the worst while it is more than a
/// pixel off.
struct TiedLabels {
  AxisLaw Law;
  std::vector<TiedLabel> Labels;
  bool IsOneLeftOut = false;
};
TiedLabels Tie(const LabelPage& page, AxisCourse course, const GroupFit& fit,
               const std::vector<Tick>& ticks) {
  TiedLabels made;
  auto& [law, tied, isOneLeftOut] = made;
  const double tolerance = ToleranceOf(course, fit.Height);
  for (const ExplainedLabel& label : fit.Fit.Labels) {
    const int word = fit.Words[label.Label];
    const double value = page.Words[word].Meanings[label.Meaning];
    if (const auto tick = TickAt(ticks, AlongOf(page.Words[word].Is, course), tolerance))
      tied.push_back({word, value, tick->Position, 0, true});
  }
  while (tied.size() >= kFewest) {
    std::vector<double> positions, values;
    for (const TiedLabel& label : tied) {
      positions.push_back(label.Position);
      values.push_back(label.Value);
    }
    law = FitLaw(fit.Fit.Law.Log, positions, values);
    for (TiedLabel& label : tied) label.Residual = label.Position - law.PositionOf(label.Value);
    const auto worst =
        std::max_element(tied.begin(), tied.end(), [](const TiedLabel& a, const TiedLabel& b) {
          return std::fabs(a.Residual) < std::fabs(b.Residual);
        });
    if (std::fabs(worst->Residual) <= page.Ink.Enlarged) return made;
    tied.erase(worst);
    isOneLeftOut = true;
  }
  return {};
}

double RootMeanSquare(const std::vector<TiedLabel>& labels) {
  double sum = 0;
  for (const TiedLabel& label : labels) sum += label.Residual * label.Residual;
  return labels.empty() ? 0 : std::sqrt(sum / static_cast<double>(labels.size()));
}

/// Without ticks the labels' own middles are all there is.
void TakeMiddles(const LabelPage& page, AxisCourse course, const GroupFit& fit, FoundAxis& axis) {
  std::vector<double> positions, values;
  for (const ExplainedLabel& label : fit.Fit.Labels) {
    const int word = fit.Words[label.Label];
    positions.push_back(AlongOf(page.Words[word].Is, course));
    values.push_back(page.Words[word].Meanings[label.Meaning]);
    axis.Labels.push_back({word, values.back(), positions.back(), 0, false});
  }
  axis.Law = FitLaw(fit.Fit.Law.Log, positions, values);
  for (TiedLabel& label : axis.Labels)
    label.Residual = label.Position - axis.Law.PositionOf(label.Value);
}

/// Strokes that stand by themselves between the labels in `box` and the plot, where no axis is
/// drawn.
std::vector<Tick> LoneTicks(const LabelPage& page, AxisCourse course, const InkBox& box,
                            double height) {
  const bool level = course == AxisCourse::Level;
  std::vector<Tick> ticks;
  for (const InkBox& piece : page.Pieces.Boxes) {
    const int length = level ? piece.Height() : piece.Width();
    const int width = level ? piece.Width() : piece.Height();
    if (length < 2 * page.Ink.Enlarged || width > 0.4 * height || 2 * length < 3 * width ||
        length > 1.5 * height)
      continue;
    const double gap = level ? std::max(box.Top - piece.Bottom, piece.Top - box.Bottom)
                             : std::max(box.Left - piece.Right, piece.Left - box.Right);
    if (gap < 0 || gap > 2 * height) continue;
    double sum = 0, moment = 0;
    for (int y = piece.Top - 1; y <= piece.Bottom + 1; ++y)
      for (int x = piece.Left - 1; x <= piece.Right + 1; ++x) {
        const int value = page.Ink.At(x, y);
        if (value < page.Ink.Weak / 2) continue;
        sum += value;
        moment += static_cast<double>(value) * (level ? x : y);
      }
    if (sum > 0) ticks.push_back({moment / sum, static_cast<double>(length)});
  }
  return ticks;
}

InkBox BoxOf(const LabelPage& page, const GroupFit& fit) {
  InkBox box = page.Words[fit.Words[fit.Fit.Labels.front().Label]].Is.Box;
  for (const ExplainedLabel& label : fit.Fit.Labels)
    box.Add(page.Words[fit.Words[label.Label]].Is.Box);
  return box;
}

FoundAxis MakeAxis(const LabelPage& page, AxisCourse course, const GroupFit& fit) {
  FoundAxis axis;
  axis.Height = fit.Height;
  const InkBox box = BoxOf(page, fit);
  const bool level = course == AxisCourse::Level;
  const LongLine* line = LineBeside(page, course, box, fit.Height);
  const double middle = level ? box.MiddleY() : box.MiddleX();
  std::vector<std::vector<Tick>> kinds;
  axis.LineFrom = level ? box.Left : box.Top;
  axis.LineTo = level ? box.Right : box.Bottom;
  if (line != nullptr) {
    axis.Across = line->Across;
    axis.LineFrom = std::min<double>(axis.LineFrom, line->From);
    axis.LineTo = std::max<double>(axis.LineTo, line->To);
    for (const int side : {1, -1})
      kinds.push_back(TicksOn(page.Ink, course, *line, side, 1.5 * fit.Height));
    kinds.push_back(LinesAcross(page.Lines, course, axis.Across, 1.5 * fit.Height));
  } else {
    // The plot's lines end near the labels.
    axis.Across = middle;
    double nearest = 4 * fit.Height;
    const auto& across = level ? page.Lines.Upright : page.Lines.Level;
    for (const LongLine& other : across)
      for (const int end : {other.From, other.To})
        if (std::fabs(end - middle) < nearest) {
          nearest = std::fabs(end - middle);
          axis.Across = end;
        }
    kinds.push_back(LinesAcross(page.Lines, course, axis.Across, 0.5 * fit.Height));
    kinds.push_back(LoneTicks(page, course, box, fit.Height));
  }
  for (const std::vector<Tick>& ticks : kinds) {
    auto [law, tied, isOneLeftOut] = Tie(page, course, fit, ticks);
    const bool more = tied.size() > axis.Labels.size();
    const bool better = tied.size() == axis.Labels.size() &&
                        RootMeanSquare(tied) + 0.05 < RootMeanSquare(axis.Labels);
    if (tied.empty() || !(more || better)) continue;
    axis.Labels = std::move(tied);
    axis.Law = law;
    axis.Doubts.clear();
    if (isOneLeftOut) axis.Doubts.push_back(Tr("the tick of a label lies off the scale"));
  }
  if (axis.Labels.empty()) TakeMiddles(page, course, fit, axis);
  std::sort(axis.Labels.begin(), axis.Labels.end(),
            [](const TiedLabel& a, const TiedLabel& b) { return a.Position < b.Position; });
  return axis;
}

bool ShareWords(const GroupFit& a, const GroupFit& b) {
  for (const ExplainedLabel& i : a.Fit.Labels)
    for (const ExplainedLabel& j : b.Fit.Labels)
      if (a.Words[i.Label] == b.Words[j.Label]) return true;
  return false;
}

/// In the same row or column such labels are unexplained ones of the first.
bool IsElsewhere(const LabelPage& page, AxisCourse course, const GroupFit& best,
                 const GroupFit& other) {
  const InkBox a = BoxOf(page, best), b = BoxOf(page, other);
  const double apart = course == AxisCourse::Level ? a.MiddleY() - b.MiddleY()
                                                   : std::max(a.Left - b.Right, b.Left - a.Right);
  return std::fabs(apart) > best.Height && (course == AxisCourse::Level || apart > 0);
}

/// Whether another row or column of labels tells other values at the same places.
bool IsOtherScale(const LabelPage& page, AxisCourse course, const GroupFit& best,
                  const GroupFit& other) {
  for (const ExplainedLabel& label : other.Fit.Labels) {
    const auto& word = page.Words[other.Words[label.Label]];
    const double off =
        best.Fit.Law.PositionOf(word.Meanings[label.Meaning]) - AlongOf(word.Is, course);
    if (!(std::fabs(off) <= 2 * ToleranceOf(course, best.Height))) return true;
  }
  return false;
}

/// The first of the fits, and those that tell of other scales, from the left or from above.
std::vector<const GroupFit*> ScalesOf(const LabelPage& page, AxisCourse course,
                                      const std::vector<GroupFit>& fits) {
  std::vector<const GroupFit*> scales;
  for (const GroupFit& fit : fits)
    if (std::all_of(scales.begin(), scales.end(), [&](const GroupFit* other) {
          return !ShareWords(*other, fit) && IsElsewhere(page, course, *other, fit) &&
                 IsOtherScale(page, course, *other, fit);
        }))
      scales.push_back(&fit);
  std::sort(scales.begin(), scales.end(), [&](const GroupFit* a, const GroupFit* b) {
    const InkBox first = BoxOf(page, *a), second = BoxOf(page, *b);
    return course == AxisCourse::Level ? first.Top < second.Top : first.Left < second.Left;
  });
  return scales;
}

std::string RangeText(const LabelPage& page, const GroupFit& fit) {
  double least = std::numeric_limits<double>::infinity(), most = -least;
  for (const ExplainedLabel& label : fit.Fit.Labels) {
    const double value = page.Words[fit.Words[label.Label]].Meanings[label.Meaning];
    least = std::min(least, value);
    most = std::max(most, value);
  }
  return Tr("%1 to %2", ShortestText(least), ShortestText(most));
}

std::vector<GroupFit> FitsOf(const LabelPage& page, AxisCourse course,
                             const PictureOperation& operation) {
  std::vector<GroupFit> fits;
  for (const std::vector<int>& group : GroupsOf(page, course)) {
    if (operation.Stopped) break;
    GroupFit fit = FitGroup(page, course, group, operation);
    if (fit.Fit.Labels.size() >= kFewest) fits.push_back(std::move(fit));
  }
  return fits;
}

std::set<int> WordsOnScales(const LabelPage& page, AxisCourse course,
                            const PictureOperation& operation) {
  std::set<int> words;
  for (const GroupFit& fit : FitsOf(page, course, operation))
    for (const ExplainedLabel& label : fit.Fit.Labels) words.insert(fit.Words[label.Label]);
  return words;
}

}  // namespace

double AlongOf(const Word& word, AxisCourse course) {
  return course == AxisCourse::Level ? word.MiddleX() : word.MiddleY();
}

double ToleranceOf(AxisCourse course, double height) {
  return std::max((course == AxisCourse::Level ? 0.42 : 0.32) * height, 2.0);
}

FoundAxis FindAxis(const LabelPage& page, AxisCourse course, std::optional<int> chosen,
                   const PictureOperation& operation) {
  std::vector<GroupFit> fits = FitsOf(page, course, operation);
  if (fits.empty()) return {};
  std::stable_sort(fits.begin(), fits.end(), [](const GroupFit& a, const GroupFit& b) {
    if (a.Fit.Labels.size() != b.Fit.Labels.size())
      return a.Fit.Labels.size() > b.Fit.Labels.size();
    return a.Fit.Residuals / a.Height < b.Fit.Residuals / b.Height;
  });
  const std::vector<const GroupFit*> scales = ScalesOf(page, course, fits);
  const auto number = std::find(scales.begin(), scales.end(), &fits.front()) - scales.begin();
  const int wanted = chosen.value_or(static_cast<int>(number));
  if (wanted < 0 || static_cast<std::size_t>(wanted) >= scales.size()) return {};
  const GroupFit& best = *scales[static_cast<std::size_t>(wanted)];
  FoundAxis axis = MakeAxis(page, course, best);
  axis.Scale = wanted;
  if (scales.size() > 1) {
    LastingDoubt doubt{Tr(kSecondScale), {}};
    for (const GroupFit* scale : scales) {
      axis.Scales.push_back(RangeText(page, *scale));
      for (const ExplainedLabel& label : scale->Fit.Labels)
        if (scale != &best) doubt.Words.push_back(page.Words[scale->Words[label.Label]].Is.Box);
    }
    axis.Doubts.push_back(doubt.Text);
    axis.Lasting.push_back(std::move(doubt));
  }
  const GroupFit rival = FitGroup(page, course, best.Words, operation, &best.Fit);
  if (rival.Fit.Labels.size() >= kFewest &&
      5 * rival.Fit.Labels.size() >= 4 * best.Fit.Labels.size())
    axis.Doubts.push_back(Tr("the labels may mean other values"));
  const auto across = course == AxisCourse::Level ? AxisCourse::Upright : AxisCourse::Level;
  AddDoubts(page, course, WordsOnScales(page, across, operation), axis);
  return axis;
}

}  // namespace graphize
