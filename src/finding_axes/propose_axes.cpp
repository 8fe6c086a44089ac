#include "finding_axes/propose_axes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "base/joined.h"
#include "base/number_pattern.h"
#include "base/translation.h"
#include "finding_axes/label_looks.h"
#include "finding_axes/label_text.h"
#include "finding_axes/long_lines.h"
#include "finding_axes/plot_areas.h"
#include "finding_axes/second_reading.h"

namespace graphize {

namespace {

/// What the three rows cannot hold.
constexpr double kMostSkew = 0.15 * kDegree;
/// Of one tick, which the program that drew it may have rounded to whole pixels.
constexpr double kTickSigma = 0.35;

std::string Hundredths(double value) {
  return RoundedText(value, 100);
}

/// Whether a word that our own reader has got wrong is the second one's value at its place.
bool IsExplained(const LookedAtAxis& axis, const Word& word, const WordReading& other) {
  for (const double value : MeaningsOf(other.Text, other.Exponent))
    if (std::fabs(axis.Found.Law.PositionOf(value) - AlongOf(word, axis.There)) <=
        ToleranceOf(axis.There, axis.Found.Height))
      return true;
  return false;
}

/// A thin minus is lost on the recogniser, which counts where ours is no tick; so is a point, but
/// no number begins with 0 and another digit.
bool IsAlike(std::string_view ours, std::string_view other, bool isNoTick) {
  if (ours == other) return true;
  if (ours.starts_with('-')) {
    if (other.starts_with('-'))
      other.remove_prefix(1);
    else if (!isNoTick)
      return false;
    ours.remove_prefix(1);
    if (ours == other) return true;
  }
  return ours.starts_with("0.") && other.starts_with('0') && ours.substr(2) == other.substr(1);
}

/// Whether the other reading is the same but for a point that ours has not.
bool HasPointBesides(const std::string& ours, std::string other) {
  if (ours.find_first_of(".,") != ours.npos) return false;
  return std::erase_if(other, [](char c) { return c == '.' || c == ','; }) > 0 && other == ours;
}

void AddOnce(std::vector<std::string>& doubts, const std::string& doubt) {
  if (std::find(doubts.begin(), doubts.end(), doubt) == doubts.end()) doubts.push_back(doubt);
}

/// Reads the labels once more.
void Confirm(LookedAtAxis& axis, SecondReader& second) {
  FoundAxis& found = axis.Found;
  if (found.Labels.empty()) return;
  int alike = 0;
  bool pointLost = false;
  const auto isPositive = [](const TiedLabel& label) { return label.Value >= 0; };
  const auto isBeforeLine = [&](const TiedLabel& label) {
    return axis.Page->Words[label.Word].Is.Box.Right < found.Across;
  };
  const bool isNoTick = axis.There == AxisCourse::Level ||
                        std::any_of(found.Labels.begin(), found.Labels.end(), isPositive) ||
                        std::all_of(found.Labels.begin(), found.Labels.end(), isBeforeLine);
  for (TiedLabel& label : found.Labels) {
    const auto& [word, reading, meanings] = axis.Page->Words[label.Word];
    const WordReading other = second.Read(*axis.Page, word);
    const bool same = IsAlike(reading.Text, other.Text, isNoTick);
    label.ReadTwice = same && other.Exponent == reading.Exponent;
    alike += label.ReadTwice ? 1 : 0;
    pointLost = pointLost || HasPointBesides(reading.Text, other.Text);
  }
  if (pointLost) AddOnce(found.Doubts, Tr("there may be a point between digits"));
  for (const int number : found.Unexplained) {
    const auto& [word, reading, meanings] = axis.Page->Words[number];
    if (IsExplained(axis, word, second.Read(*axis.Page, word))) continue;
    found.Doubts.push_back(
        Tr("among the labels stands \"%1\"", ShownLabel(reading.Text, reading.Exponent)));
    break;
  }
  const int count = static_cast<int>(found.Labels.size());
  if (!second.Missing().empty())
    found.Doubts.push_back(Tr("there is no second reader: %1", Tr(second.Missing().c_str())));
  else if (alike < 3 || 5 * alike < 3 * count)
    found.Doubts.push_back(Tr("of %1 labels a second reader reads %2 alike", count, alike));
}

/// What the axis is worth; `chosen` where its scale was.
ProposedAxis Judged(const LookedAtAxis& axis, AxisCourse course, const InkImage& upright,
                    bool chosen) {
  ProposedAxis proposed;
  if (axis.Found.Labels.empty()) {
    proposed.Reason = Tr("fewer than three labels lie on one scale");
    return proposed;
  }
  proposed.Log = axis.Found.Law.Log;
  proposed.Scales = axis.Found.Scales;
  proposed.Scale = axis.Found.Scale;
  std::vector<std::string> doubts = axis.Found.Doubts;
  double worst = 0;
  for (const TiedLabel& label : axis.Found.Labels) {
    const WordReading& reading = axis.Page->Words[label.Word].Reading;
    const bool level = course == AxisCourse::Level;
    const double u = level ? label.Position : axis.Found.Across;
    const double v = level ? axis.Found.Across : label.Position;
    const MappedPlace at = Mapped(upright.ToPicture, u, v);
    proposed.Labels.push_back({ShownLabel(reading.Text, reading.Exponent), label.Value, at.X, at.Y,
                               label.Residual * upright.Scale, label.ReadTwice});
    worst = std::max(worst, std::fabs(label.Residual) * upright.Scale);
  }
  if (worst > std::max(1.0, 0.6 * upright.Scale))
    doubts.push_back(Tr("ticks lie up to %1 pixels off the scale", Hundredths(worst)));
  proposed.IsChosen = chosen && doubts == std::vector{Tr(kSecondScale)};
  proposed.Verdict = doubts.empty() ? AxesVerdict::Sure : AxesVerdict::Proposal;
  proposed.Reason = doubts.empty()
                        ? Tr("%1 labels at their ticks, read alike by two readers, off "
                             "the scale by up to %2 pixels",
                             static_cast<long long>(proposed.Labels.size()), Hundredths(worst))
                        : Joined(doubts, "; ");
  return proposed;
}

/// Two labels of an axis far apart.
struct Ends {
  int First = 0, Last = 0;
};
std::vector<Ends> FarApart(const FoundAxis& axis) {
  std::vector<Ends> pairs;
  const int count = static_cast<int>(axis.Labels.size());
  const double most = axis.Labels.back().Position - axis.Labels.front().Position;
  for (int i = 0; i < count; ++i)
    for (int j = i + 1; j < count; ++j)
      if (axis.Labels[j].Position - axis.Labels[i].Position >= 0.6 * most) pairs.push_back({i, j});
  return pairs;
}

/// The pair of whose rounding to whole pixels the scale suffers least. `placeOf` gives the
/// coordinate of a label that is rounded.
template <class PlaceOf>
Ends BestEnds(const FoundAxis& axis, const PlaceOf& placeOf) {
  Ends best;
  double least = std::numeric_limits<double>::infinity();
  for (const Ends& ends : FarApart(axis)) {
    double first = placeOf(axis.Labels[ends.First]), last = placeOf(axis.Labels[ends.Last]);
    const double length = std::fabs(last - first);
    first -= std::round(first);
    last -= std::round(last);
    // What it does at the ends of the axis.
    const double harm = (std::fabs(first) + std::fabs(last) + 0.05) / length;
    if (harm >= least) continue;
    least = harm;
    best = ends;
  }
  return best;
}

/// Of the place that the scale has for a value, pixels of the picture.
double SigmaOf(const FoundAxis& axis, double value, double pixel) {
  std::vector<double> positions, values;
  for (const TiedLabel& label : axis.Labels) {
    positions.push_back(label.Position);
    values.push_back(label.Value);
  }
  return pixel * SigmaAt(axis.Law, positions, values, value, kTickSigma / pixel);
}

std::vector<ProposedRow> RowsOf(const FoundAxis& x, const FoundAxis& y, const InkImage& ink) {
  const auto at = [&](const TiedLabel& u, const TiedLabel& v) {
    // The scale's own places: ticks are rounded by the program that drew them.
    const MappedPlace place =
        Mapped(ink.ToPicture, x.Law.PositionOf(u.Value), y.Law.PositionOf(v.Value));
    return ProposedRow{place.X, place.Y, u.Value, v.Value,
                       std::max(SigmaOf(x, u.Value, ink.Scale), SigmaOf(y, v.Value, ink.Scale))};
  };
  const Ends xs = BestEnds(x, [&](const TiedLabel& u) { return at(u, y.Labels.front()).Column; });
  // The X axis's points lie on the row of one of these.
  Ends ys = BestEnds(y, [&](const TiedLabel& v) { return at(x.Labels[xs.First], v).Row; });
  const TiedLabel &left = x.Labels[xs.First], &right = x.Labels[xs.Last];
  const TiedLabel *low = &y.Labels[ys.First], *high = &y.Labels[ys.Last];
  // The origin is where the axes meet, or nearest to it: below, in most plots.
  if (std::fabs(high->Position - x.Across) < std::fabs(low->Position - x.Across))
    std::swap(low, high);
  return {at(left, *low), at(right, *low), at(left, *high)};
}

/// Axes of one plot meet, or nearly.
bool GoTogether(const FoundAxis& x, const FoundAxis& y) {
  const auto isNear = [](const FoundAxis& axis, double place) {
    const double first = axis.Labels.front().Position, last = axis.Labels.back().Position;
    const double reach = 0.5 * (last - first) + 3 * axis.Height;
    return place > first - reach && place < last + reach;
  };
  return isNear(x, y.Across) && isNear(y, x.Across);
}

/// An upright part, with a turned page's corners, cut to the picture.
PlotArea OnPicture(const InkBox& part, const InkImage& ink, const Raster& picture) {
  PlotArea area{picture.Width(), picture.Height(), -1, -1};
  for (const int x : {part.Left, part.Right})
    for (const int y : {part.Top, part.Bottom}) {
      const MappedPlace at = Mapped(ink.ToPicture, x, y);
      const auto column = static_cast<int>(std::lround(at.X));
      const auto row = static_cast<int>(std::lround(at.Y));
      area.Left = std::max(std::min(area.Left, column), 0);
      area.Top = std::max(std::min(area.Top, row), 0);
      area.Right = std::min(std::max(area.Right, column), picture.Width() - 1);
      area.Bottom = std::min(std::max(area.Bottom, row), picture.Height() - 1);
    }
  return area;
}

}  // namespace

const char* NameOf(AxesVerdict verdict) {
  switch (verdict) {
    case AxesVerdict::Sure:
      return "sure";
    case AxesVerdict::Proposal:
      return "proposal";
    case AxesVerdict::None:
      break;
  }
  return "none";
}

AxesProposal ProposeAxes(const Raster& picture, PictureOperation& operation,
                         const TextLineReader& second, const AxesChoice& choice) {
  AxesProposal proposal;
  proposal.Choice = choice;
  const auto stopped = [&] {
    AxesProposal none;
    none.IsStopped = true;
    return none;
  };
  if (picture.IsEmpty()) return proposal;
  operation.To = 0.2;
  InkImage ink = InkOf(picture, operation);
  if (operation.Stopped) return stopped();
  const PageTurn turn = FindTurn(ink, operation);
  operation.Advance(1);
  if (operation.Stopped) return stopped();
  if (turn.Angle != 0 || turn.Skew != 0) ink = Upright(ink, turn.Angle, turn.Skew);
  const std::vector<InkBox> plots = FindPlots(ink, FindLongLines(ink));
  for (const InkBox& plot : plots) proposal.Plots.push_back(OnPicture(plot, ink, picture));
  if (!plots.empty() && !choice.Plot) {
    proposal.X.Reason = proposal.Y.Reason = Tr("there are several plots");
    return proposal;
  }
  if (choice.Plot && *choice.Plot >= 0 && static_cast<std::size_t>(*choice.Plot) < plots.size())
    ink = PartOf(ink, plots[static_cast<std::size_t>(*choice.Plot)]);
  operation.From = 0.2;
  operation.To = 0.8;
  LookedAtAxes axes = LookForAxes(ink, choice.XScale, choice.YScale, operation);
  if (operation.Stopped) return stopped();
  operation.From = 0.8;
  operation.To = 1;
  LookedAtAxis &x = axes.X, &y = axes.Y;
  const std::vector<InkBox> below = LabelBoxes(x, ink.Height), beside = LabelBoxes(y, ink.Height);
  std::vector<InkBox> labels = below;
  labels.insert(labels.end(), beside.begin(), beside.end());
  SecondReader reader(second);
  for (LookedAtAxis* axis : {&x, &y}) {
    TakeLastingDoubts(axis->Found, labels);
    Confirm(*axis, reader);
    operation.Advance(0.5);
    if (operation.Stopped) return stopped();
    BringUpright(*axis, axis == &x ? AxisCourse::Level : AxisCourse::Upright, ink.Height);
  }
  const bool both = !x.Found.Labels.empty() && !y.Found.Labels.empty();
  for (LookedAtAxis* axis : {&x, &y}) {
    if (std::fabs(turn.Skew) > kMostSkew)
      axis->Found.Doubts.push_back(Tr("the axes do not stand at a right angle"));
    if (both && !GoTogether(x.Found, y.Found))
      axis->Found.Doubts.push_back(Tr("the axes may belong to different plots"));
  }
  proposal.X = Judged(x, AxisCourse::Level, ink, choice.XScale.has_value());
  proposal.Y = Judged(y, AxisCourse::Upright, ink, choice.YScale.has_value());
  if (!below.empty()) proposal.X.IsAfter = below.front().MiddleY() > x.Found.Across;
  if (!beside.empty()) proposal.Y.IsAfter = beside.front().MiddleX() > y.Found.Across;
  proposal.Verdict = std::min(proposal.X.Verdict, proposal.Y.Verdict);
  if (both) proposal.Rows = RowsOf(x.Found, y.Found, ink);
  operation.Advance(1);
  return proposal;
}

}  // namespace graphize
