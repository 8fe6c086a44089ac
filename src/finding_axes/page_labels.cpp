#include "finding_axes/page_labels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

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
        const auto [u, v] = Mapped(toInk, x, y);
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
    const auto [u, v] = Mapped(map, x, y);
    return u >= 0 && v >= 0 && u <= other.Width - 1 && v <= other.Height - 1;
  };
  return inside(box.Left, box.Top) && inside(box.Right, box.Top) && inside(box.Left, box.Bottom) &&
         inside(box.Right, box.Bottom);
}

/// How well each sign of a label is found again, the word as a whole first, and by how much it is
/// shifted.
struct Likeness {
  std::vector<double> OfSigns;
  int X = 0, Y = 0;
};
Likeness LikenessOf(const PageLabel& label, const UprightPage& page, const InkImage& other,
                    const AffineMap& map) {
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
  Likeness likeness{{whole.Most}, whole.X, whole.Y};
  for (const InkBox& glyph : label.Glyphs)
    // A point or a minus is too small to be told by itself.
    if (glyph.Height() >= 0.4 * label.Height)
      likeness.OfSigns.push_back(best(Grown(glyph, 1), whole.X, whole.Y, 1).Most);
  return likeness;
}

/// Whether the other page has a piece of ink of at least this size in a box where this one has
/// none.
bool HasMore(const InkBox& box, double size, const UprightPage& page, const InkImage& other,
             const AffineMap& map) {
  // What is printed alike may be sampled between other pixels.
  constexpr double kNear = 0.75;
  const auto at = [](const InkImage& image, const AffineMap& to, double x, double y) {
    const auto [u, v] = Mapped(to, x, y);
    return image.Sample(u, v);
  };
  const double ink = std::max<double>(other.Weak, 0.2 * other.Full);
  const double paper = 0.75 * std::max<double>(page.Ink.Weak, 0.2 * page.Ink.Full);
  InkImage more;
  more.Width = box.Width();
  more.Height = box.Height();
  for (int y = box.Top; y <= box.Bottom; ++y)
    for (int x = box.Left; x <= box.Right; ++x) {
      bool isNew = at(other, map, x, y) >= ink;
      for (int j = -1; j <= 1 && isNew; ++j)
        for (int i = -1; i <= 1 && isNew; ++i)
          isNew = at(page.Ink, page.ToInk, x + kNear * i, y + kNear * j) < paper;
      more.Values.push_back(isNew ? 255 : 0);
    }
  const InkPieces pieces = FindPieces(more);
  return std::any_of(pieces.Boxes.begin(), pieces.Boxes.end(), [&](const InkBox& piece) {
    return std::max(piece.Width(), piece.Height()) >= size;
  });
}

/// A sign at least.
bool HasMoreBeside(const InkBox& around, double height, const UprightPage& page,
                   const InkImage& other, const AffineMap& map) {
  return HasMore(around, std::max(0.28 * height, 3.0), page, other, map);
}

/// A label of the axis to which it is nearer, or of none within the plot.
std::optional<PageLabel> LabelOf(const Word& word, const InkBox& plot) {
  const double x = word.MiddleX(), y = word.MiddleY();
  const double beside = std::max(plot.Left - x, x - plot.Right);
  const double below = std::max(plot.Top - y, y - plot.Bottom);
  if (beside <= 0 && below <= 0) return std::nullopt;
  PageLabel label{.IsOfX = below > beside,
                  .Box = word.Box,
                  .Height = word.Height,
                  .Glyphs = {},
                  .Around = word.Box};
  for (const auto* glyphs : {&word.Glyphs, &word.Exponent})
    for (const Glyph& glyph : *glyphs) label.Glyphs.push_back(glyph.Box);
  InkBox& around = label.Around;
  const int reach = static_cast<int>(1.3 * word.Height);
  around.Left -= reach;
  around.Right += reach;
  // Ticks and what is drawn in the plot are no part of it.
  const int gap = static_cast<int>(0.4 * word.Height) + 2;
  if (!label.IsOfX && x < plot.Left)
    around.Right = std::max(std::min(around.Right, plot.Left - gap), word.Box.Right);
  if (!label.IsOfX && x > plot.Right)
    around.Left = std::min(std::max(around.Left, plot.Right + gap), word.Box.Left);
  return label;
}

std::vector<InkBox> EndsOf(const std::vector<PageLabel>& labels, const InkBox& plot) {
  double height = 0;
  int left = plot.Left, bottom = plot.Bottom;
  for (const PageLabel& label : labels) {
    height = std::max(height, label.Height);
    if (!label.IsOfX) left = std::min(left, label.Box.Left);
    if (label.IsOfX) bottom = std::max(bottom, label.Box.Bottom);
  }
  const auto h = static_cast<int>(height);
  if (h == 0) return {};
  return {{left, plot.Top - 3 * h, plot.Left + 5 * h, plot.Top - h / 3 - 1},
          {plot.Right - 5 * h, bottom + h / 2, plot.Right + 4 * h, bottom + 3 * h}};
}

}  // namespace

PageLabels PageLabelsOf(const UprightPage& page, const HeldLines& lines,
                        PictureOperation& operation) {
  const InkBox plot = PlotOf(lines);
  PageLabels found;
  std::vector<PageLabel> words;
  const LabelPage read = ReadPage(page.Upright, 0.45, operation);
  for (const ReadWordRecord& word : read.Words) {
    auto label = LabelOf(word.Is, plot);
    if (!label) continue;
    (word.Meanings.empty() ? words : found.Labels).push_back(*std::move(label));
  }
  for (const bool ofX : {true, false}) {
    if (std::any_of(found.Labels.begin(), found.Labels.end(),
                    [&](const PageLabel& label) { return label.IsOfX == ofX; }))
      continue;
    for (const PageLabel& word : words) {
      const double apart = ofX ? std::max(plot.Top - word.Box.Bottom, word.Box.Top - plot.Bottom)
                               : std::max(plot.Left - word.Box.Right, word.Box.Left - plot.Right);
      if (word.IsOfX == ofX && word.Height >= 5 && apart < 2.5 * word.Height)
        found.Labels.push_back(word);
    }
  }
  found.Ends = EndsOf(found.Labels, plot);
  return found;
}

LabelCounts CountUnlike(const PageLabels& labels, const UprightPage& page, const InkImage& other,
                        const AffineMap& map) {
  const AffineMap there = Then(page.ToInk, map);
  LabelCounts counts;
  struct Seen {
    bool IsOfX;
    std::vector<double> Likeness;
  };
  std::vector<Seen> seen;
  std::vector<double> all;
  std::array<int, 2> moreBeside{};  // X, Y
  for (const PageLabel& label : labels.Labels) {
    LabelCount& count = label.IsOfX ? counts.X : counts.Y;
    ++count.All;
    if (!IsSeen(other, label.Box, there)) {
      ++count.Hidden;
      continue;
    }
    const Likeness likeness = LikenessOf(label, page, other, there);
    seen.push_back({label.IsOfX, likeness.OfSigns});
    all.insert(all.end(), likeness.OfSigns.begin(), likeness.OfSigns.end());
    const AffineMap shift{1, 0, static_cast<double>(likeness.X),
                          0, 1, static_cast<double>(likeness.Y)};
    const AffineMap shifted = Then(shift, there);
    int& more = moreBeside[label.IsOfX ? 0 : 1];
    if (HasMoreBeside(label.Around, label.Height, page, other, shifted)) ++more;
    // Specks lie as often beside them.
    InkBox control = label.Around;
    control.Top += static_cast<int>(1.5 * label.Height);
    control.Bottom += static_cast<int>(1.5 * label.Height);
    if (HasMoreBeside(control, label.Height, page, other, shifted)) --more;
  }
  if (all.empty()) return counts;
  const auto quartile = all.begin() + static_cast<std::ptrdiff_t>(all.size() * 3 / 4);
  std::nth_element(all.begin(), quartile, all.end());
  // Signs are as much alike as others of the page are: grain and softness spare none.
  const double limit = std::clamp(1 - 0.06 - 4 * (1 - *quartile), 0.75, 0.94);
  for (const auto& [ofX, likeness] : seen)
    if (*std::min_element(likeness.begin(), likeness.end()) < limit)
      ++(ofX ? counts.X : counts.Y).Unlike;
  counts.X.Unlike = std::max(counts.X.Unlike, moreBeside[0]);
  counts.Y.Unlike = std::max(counts.Y.Unlike, moreBeside[1]);
  const double height = labels.Labels.front().Height;
  counts.HasMoreAtEnds =
      std::any_of(labels.Ends.begin(), labels.Ends.end(), [&](const InkBox& end) {
        return HasMore(end, std::max(0.5 * height, 4.0), page, other, there);
      });
  return counts;
}

}  // namespace graphize
