#include "finding_axes/label_looks.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace graphize {

namespace {

bool IsClear(const FoundAxis& axis) {
  return !axis.Labels.empty() && axis.Doubts.empty() && axis.Unexplained.empty();
}

/// Whether a page tells more of an axis than another.
bool IsBetter(const FoundAxis& a, const FoundAxis& b) {
  if (IsClear(a) != IsClear(b)) return IsClear(a);
  if (a.Labels.size() != b.Labels.size()) return a.Labels.size() > b.Labels.size();
  return a.Doubts.size() + a.Unexplained.size() < b.Doubts.size() + b.Unexplained.size();
}

constexpr LabelLook kLooks[] = {{0.45, false, false}, {0.28, false, false}, {0.4, false, true},
                                {0.45, true, false},  {0.28, true, false},  {0.4, true, true}};
/// Beyond it nothing is enlarged, pixels.
constexpr double kMostToEnlarge = 1.6e6;

/// From a page that was enlarged.
void Reduce(FoundAxis& axis, int times) {
  const auto reduce = [&](double& place) { place = (place + 0.5) / times - 0.5; };
  axis.Law.Step /= times;
  reduce(axis.Law.Start);
  reduce(axis.Across);
  axis.Height /= times;
  for (TiedLabel& label : axis.Labels) {
    reduce(label.Position);
    label.Residual /= times;
  }
}

/// From the page that was turned to the left: its rows are columns.
void TurnBack(FoundAxis& axis, AxisCourse course, int height) {
  if (course == AxisCourse::Upright) {
    axis.Law.Start = height - 1 - axis.Law.Start;
    axis.Law.Step = -axis.Law.Step;
    for (TiedLabel& label : axis.Labels) {
      label.Position = height - 1 - label.Position;
      label.Residual = -label.Residual;
    }
    std::reverse(axis.Labels.begin(), axis.Labels.end());
  } else {
    axis.Across = height - 1 - axis.Across;
  }
}

/// From a page that is enlarged or turned to the upright one, `height` rows high.
InkBox OnUpright(InkBox box, const LabelLook& look, int height) {
  if (look.IsEnlarged) box = {box.Left / 2, box.Top / 2, box.Right / 2, box.Bottom / 2};
  if (!look.IsTurned) return box;
  return {box.Top, height - 1 - box.Right, box.Bottom, height - 1 - box.Left};
}

bool LiesIn(const InkBox& word, const std::vector<InkBox>& boxes) {
  return std::any_of(boxes.begin(), boxes.end(), [&](const InkBox& box) {
    return word.MiddleX() >= box.Left && word.MiddleX() <= box.Right && word.MiddleY() >= box.Top &&
           word.MiddleY() <= box.Bottom;
  });
}

}  // namespace

LookedAtAxes LookForAxes(const InkImage& upright, std::optional<int> xScale,
                         std::optional<int> yScale, PictureOperation& operation) {
  LookedAtAxes axes;
  for (const LabelLook& look : kLooks) {
    const auto isWanted = [&](const LookedAtAxis& axis) {
      return look.IsTurned && !axis.How.IsTurned ? axis.Found.Labels.empty() : !IsClear(axis.Found);
    };
    const bool large = static_cast<double>(upright.Values.size()) > kMostToEnlarge;
    if ((!isWanted(axes.X) && !isWanted(axes.Y)) || (look.IsEnlarged && large)) continue;
    InkImage image = look.IsTurned ? QuarterTurned(upright) : upright;
    if (look.IsEnlarged) image = Enlarged(image);
    axes.Pages.push_back(
        std::make_unique<LabelPage>(ReadPage(std::move(image), look.Part, operation)));
    if (operation.Stopped) break;
    const LabelPage& page = *axes.Pages.back();
    const auto find = [&](LookedAtAxis& axis, AxisCourse there, std::optional<int> scale) {
      if (!isWanted(axis)) return;
      FoundAxis found = FindAxis(page, there, scale, operation);
      std::vector<LastingDoubt> lasting = std::move(axis.Found.Lasting);
      for (LastingDoubt& doubt : found.Lasting) {
        for (InkBox& word : doubt.Words) word = OnUpright(word, look, upright.Height);
        lasting.push_back(std::move(doubt));
      }
      if (IsBetter(found, axis.Found)) axis = {std::move(found), &page, there, look};
      axis.Found.Lasting = std::move(lasting);
    };
    find(axes.X, look.IsTurned ? AxisCourse::Upright : AxisCourse::Level, xScale);
    find(axes.Y, look.IsTurned ? AxisCourse::Level : AxisCourse::Upright, yScale);
    if (operation.Stopped) break;
    operation.Advance(static_cast<double>(axes.Pages.size()) /
                      static_cast<double>(std::size(kLooks)));
  }
  return axes;
}

std::vector<InkBox> LabelBoxes(const LookedAtAxis& axis, int height) {
  std::vector<InkBox> boxes;
  for (const TiedLabel& label : axis.Found.Labels)
    boxes.push_back(OnUpright(axis.Page->Words[label.Word].Is.Box, axis.How, height));
  return boxes;
}

void TakeLastingDoubts(FoundAxis& axis, const std::vector<InkBox>& labels) {
  const auto restsOn = [](const LastingDoubt& doubt, const std::vector<InkBox>& boxes) {
    return std::all_of(doubt.Words.begin(), doubt.Words.end(),
                       [&](const InkBox& word) { return LiesIn(word, boxes); });
  };
  std::erase_if(axis.Lasting, [&](const LastingDoubt& doubt) {
    if (!restsOn(doubt, labels)) return false;
    std::erase(axis.Doubts, doubt.Text);
    return true;
  });
  std::vector<InkBox> told;
  const auto isTold = [&](const LastingDoubt& doubt) {
    return std::find(axis.Doubts.begin(), axis.Doubts.end(), doubt.Text) != axis.Doubts.end();
  };
  for (const LastingDoubt& doubt : axis.Lasting)
    if (isTold(doubt)) told.insert(told.end(), doubt.Words.begin(), doubt.Words.end());
  for (const LastingDoubt& doubt : axis.Lasting) {
    if (isTold(doubt) || restsOn(doubt, told)) continue;
    axis.Doubts.push_back(doubt.Text);
    told.insert(told.end(), doubt.Words.begin(), doubt.Words.end());
  }
}

void BringUpright(LookedAtAxis& axis, AxisCourse course, int height) {
  if (axis.Page != nullptr) Reduce(axis.Found, axis.Page->Ink.Enlarged);
  if (axis.How.IsTurned) TurnBack(axis.Found, course, height);
}

}  // namespace graphize
