#include "finding_axes/page_labels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "finding_axes/label_page.h"

namespace graphize {

namespace {

/// The box in which the held lines lie.
InkBox PlotOf(const HeldLines& lines) {
  double left = std::numeric_limits<double>::infinity(), top = left, right = -left, bottom = -left;
  for (const HeldLine& line : lines.Lines) {
    double& first = line.IsLevel ? top : left;
    double& last = line.IsLevel ? bottom : right;
    first = std::min(first, line.Across);
    last = std::max(last, line.Across);
  }
  return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right),
          static_cast<int>(bottom)};
}

/// A patch of ink, evened out a little: two pages are sampled at different parts of their pixels.
class Patch {
 public:
  Patch(const InkImage& ink, const InkBox& box, const AffineMap& toInk) : box_(box) {
    width_ = box.Width();
    for (int y = box.Top; y <= box.Bottom; ++y)
      for (int x = box.Left; x <= box.Right; ++x) {
        const double u = toInk.XX * x + toInk.XY * y + toInk.X;
        const double v = toInk.YX * x + toInk.YY * y + toInk.Y;
        constexpr double kNear = 0.5;
        values_.push_back(0.25 *
                          (ink.Sample(u - kNear, v - kNear) + ink.Sample(u + kNear, v - kNear) +
                           ink.Sample(u - kNear, v + kNear) + ink.Sample(u + kNear, v + kNear)));
      }
  }
  double At(int x, int y) const {
    return x < box_.Left || x > box_.Right || y < box_.Top || y > box_.Bottom
               ? 0
               : values_[static_cast<std::size_t>(y - box_.Top) * width_ + (x - box_.Left)];
  }

 private:
  InkBox box_;
  int width_ = 0;
  std::vector<double> values_;
};

InkBox Grown(const InkBox& box, int by) {
  return {box.Left - by, box.Top - by, box.Right + by, box.Bottom + by};
}

/// The correlation of two patches within a box, the second one shifted.
double Correlation(const Patch& a, const Patch& b, const InkBox& box, int dx, int dy) {
  double n = 0, sa = 0, sb = 0, aa = 0, bb = 0, ab = 0;
  for (int y = box.Top; y <= box.Bottom; ++y)
    for (int x = box.Left; x <= box.Right; ++x) {
      const double va = a.At(x, y), vb = b.At(x + dx, y + dy);
      ++n;
      sa += va;
      sb += vb;
      aa += va * va;
      bb += vb * vb;
      ab += va * vb;
    }
  const double square = (aa - sa * sa / n) * (bb - sb * sb / n);
  return square > 0 ? (ab - sa * sb / n) / std::sqrt(square) : 0;
}

bool IsSeen(const InkImage& other, const InkBox& box, const AffineMap& map) {
  const auto inside = [&](double x, double y) {
    const double u = map.XX * x + map.XY * y + map.X, v = map.YX * x + map.YY * y + map.Y;
    return u >= 0 && v >= 0 && u <= other.Width - 1 && v <= other.Height - 1;
  };
  return inside(box.Left, box.Top) && inside(box.Right, box.Top) && inside(box.Left, box.Bottom) &&
         inside(box.Right, box.Bottom);
}

/// How well each sign of a label is found again, the word as a whole first.
std::vector<double> LikenessOf(const PageLabel& label, const UprightPage& page,
                               const InkImage& other, const AffineMap& map) {
  constexpr int kShift = 2;
  const Patch here(page.Ink, Grown(label.Box, 1), page.ToInk);
  const Patch there(other, Grown(label.Box, 1 + 2 * kShift), map);
  const auto best = [&](const InkBox& box, int x, int y, int reach) {
    struct {
      double Most = -1;
      int X = 0, Y = 0;
    } found;
    for (int dy = y - reach; dy <= y + reach; ++dy)
      for (int dx = x - reach; dx <= x + reach; ++dx)
        if (const double c = Correlation(here, there, box, dx, dy); c > found.Most)
          found = {c, dx, dy};
    return found;
  };
  const auto whole = best(Grown(label.Box, 1), 0, 0, kShift);
  std::vector<double> likeness = {whole.Most};
  for (const InkBox& glyph : label.Glyphs)
    // A point or a minus is too small to be told by itself.
    if (glyph.Height() >= 0.4 * label.Height)
      likeness.push_back(best(Grown(glyph, 1), whole.X, whole.Y, 1).Most);
  return likeness;
}

}  // namespace

std::vector<PageLabel> PageLabelsOf(const UprightPage& page, const HeldLines& lines,
                                    PictureOperation& operation) {
  const InkBox plot = PlotOf(lines);
  std::vector<PageLabel> labels;
  const LabelPage read = ReadPage(page.Upright, 0.45, operation);
  for (const ReadWordRecord& word : read.Words) {
    if (word.Meanings.empty()) continue;
    const double x = word.Is.MiddleX(), y = word.Is.MiddleY();
    const bool beside = x < plot.Left || x > plot.Right, below = y < plot.Top || y > plot.Bottom;
    if (beside == below) continue;
    PageLabel label{.IsOfX = below, .Box = word.Is.Box, .Height = word.Is.Height};
    for (const auto* glyphs : {&word.Is.Glyphs, &word.Is.Exponent})
      for (const Glyph& glyph : *glyphs) label.Glyphs.push_back(glyph.Box);
    labels.push_back(std::move(label));
  }
  return labels;
}

LabelCounts CountUnlike(const std::vector<PageLabel>& labels, const UprightPage& page,
                        const InkImage& other, const AffineMap& map) {
  const AffineMap there = Then(page.ToInk, map);
  LabelCounts counts;
  struct Seen {
    bool IsOfX;
    std::vector<double> Likeness;
  };
  std::vector<Seen> seen;
  std::vector<double> all;
  for (const PageLabel& label : labels) {
    LabelCount& count = label.IsOfX ? counts.X : counts.Y;
    ++count.All;
    if (!IsSeen(other, label.Box, there)) {
      ++count.Hidden;
      continue;
    }
    seen.push_back({label.IsOfX, LikenessOf(label, page, other, there)});
    all.insert(all.end(), seen.back().Likeness.begin(), seen.back().Likeness.end());
  }
  if (all.empty()) return counts;
  const auto quartile = all.begin() + static_cast<std::ptrdiff_t>(all.size() * 3 / 4);
  std::nth_element(all.begin(), quartile, all.end());
  // Signs are as much alike as others of the page are: grain and softness spare none.
  const double limit = std::clamp(1 - 0.06 - 4 * (1 - *quartile), 0.75, 0.94);
  for (const auto& [ofX, likeness] : seen)
    if (*std::min_element(likeness.begin(), likeness.end()) < limit)
      ++(ofX ? counts.X : counts.Y).Unlike;
  return counts;
}

}  // namespace graphize
