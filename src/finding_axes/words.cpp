#include "finding_axes/words.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/median.h"

namespace graphize {

namespace {

/// The greatest of 2 x kNear + 1 values along a row, for each of its pixels (van Herk 1992 over
/// both directions would do; the window is small enough to double).
constexpr int kNear = 6;

void SpreadMaximum(const std::uint8_t* from, std::uint8_t* to, int count, int stride) {
  std::vector<std::uint8_t> line(count + 2 * kNear);
  for (int i = 0; i < count; ++i) line[i + kNear] = from[static_cast<std::ptrdiff_t>(i) * stride];
  // Windows of 1, 2, 4, 8 and then 13 pixels.
  for (int have = 1; have < 2 * kNear + 1;) {
    const int step = std::min(have, 2 * kNear + 1 - have);
    for (int i = 0; i + step < count + 2 * kNear; ++i) line[i] = std::max(line[i], line[i + step]);
    have += step;
  }
  for (int i = 0; i < count; ++i) to[static_cast<std::ptrdiff_t>(i) * stride] = line[i];
}

std::vector<std::uint8_t> DarkestNearby(const InkImage& ink) {
  std::vector<std::uint8_t> darkest(ink.Values.size());
  for (int y = 0; y < ink.Height; ++y)
    SpreadMaximum(ink.Row(y), darkest.data() + static_cast<std::size_t>(y) * ink.Width, ink.Width,
                  1);
  // Rows below each other in blocks, so that memory is read along its rows.
  std::vector<std::uint8_t> result(darkest.size());
  for (int y = 0; y < ink.Height; ++y) {
    std::uint8_t* to = result.data() + static_cast<std::size_t>(y) * ink.Width;
    for (int j = std::max(y - kNear, 0); j <= std::min(y + kNear, ink.Height - 1); ++j) {
      const std::uint8_t* row = darkest.data() + static_cast<std::size_t>(j) * ink.Width;
      for (int x = 0; x < ink.Width; ++x) to[x] = std::max(to[x], row[x]);
    }
  }
  return result;
}

class Sets {
 public:
  int Make() {
    parents_.push_back(static_cast<int>(parents_.size()));
    return parents_.back();
  }
  int Root(int i) {
    while (parents_[i] != i) i = parents_[i] = parents_[parents_[i]];
    return i;
  }
  void Join(int a, int b) { parents_[std::max(Root(a), Root(b))] = std::min(Root(a), Root(b)); }
  int Count() const { return static_cast<int>(parents_.size()); }

 private:
  std::vector<int> parents_;
};

int GapBetween(const InkBox& a, const InkBox& b) {
  return std::max(a.Left, b.Left) - std::min(a.Right, b.Right) - 1;
}

/// Words grow out of the pieces that may be digits.
class WordMaker {
 public:
  WordMaker(const InkImage& ink, const InkPieces& pieces) : pieces_(pieces) {
    const int tallest = std::max(48, ink.Height / 14);
    for (int i = 0; i < static_cast<int>(pieces.Boxes.size()); ++i) {
      const InkBox& box = pieces.Boxes[i];
      if (box.Height() > tallest || box.Width() > 2 * tallest) continue;
      order_.push_back(i);
    }
    std::sort(order_.begin(), order_.end(),
              [&](int a, int b) { return pieces.Boxes[a].Left < pieces.Boxes[b].Left; });
    taken_.assign(pieces.Boxes.size(), false);
    alone_.assign(pieces.Boxes.size(), -1);
  }

  std::vector<Word> Make() {
    LinkDigits();
    AttachRest();
    std::vector<Word> words;
    for (const Core& core : cores_)
      if (!core.Pieces.empty()) words.push_back(WordOf(core));
    return words;
  }

 private:
  struct Core {
    std::vector<int> Pieces, Raised;
    InkBox Box;
    double Baseline = 0, Height = 0;
  };

  const InkBox& Box(int piece) const { return pieces_.Boxes[piece]; }

  /// Or several that touch; a solid flat piece is a sign.
  bool MayBeDigit(int piece) const {
    const InkBox& box = Box(piece);
    const bool flat = 2 * box.Width() > 3 * box.Height() &&
                      4 * pieces_.Areas[piece] > 3 * box.Width() * box.Height();
    return box.Height() >= 5 && !flat && box.Width() <= 4.5 * box.Height() &&
           box.Height() <= 14 * box.Width();
  }

  /// Neighbours on one base line: digits, and small letters, which are lower.
  void LinkDigits() {
    Sets sets;
    std::vector<int> digits;
    for (const int piece : order_)
      if (MayBeDigit(piece)) {
        digits.push_back(piece);
        sets.Make();
      }
    for (std::size_t i = 0; i < digits.size(); ++i) {
      const InkBox& a = Box(digits[i]);
      for (std::size_t j = i + 1; j < digits.size(); ++j) {
        const InkBox& b = Box(digits[j]);
        const double height = std::max(a.Height(), b.Height());
        if (b.Left > a.Right + 0.78 * std::max(height, 6.0) * 2) break;
        const double lower = std::min(a.Height(), b.Height());
        if (GapBetween(a, b) < 0.78 * height && lower >= 0.6 * height &&
            std::abs(a.Bottom - b.Bottom) <= std::max(0.22 * height, 1.0))
          sets.Join(static_cast<int>(i), static_cast<int>(j));
      }
    }
    std::vector<int> numbers(digits.size(), -1);
    for (std::size_t i = 0; i < digits.size(); ++i) {
      int& number = numbers[sets.Root(static_cast<int>(i))];
      if (number < 0) {
        number = static_cast<int>(cores_.size());
        cores_.emplace_back();
      }
      cores_[number].Pieces.push_back(digits[i]);
    }
    for (Core& core : cores_) Measure(core);
  }

  void Measure(Core& core) const {
    std::vector<double> heights, bottoms;
    core.Box = Box(core.Pieces.front());
    for (const int piece : core.Pieces) {
      heights.push_back(Box(piece).Height());
      bottoms.push_back(Box(piece).Bottom);
      core.Box.Add(Box(piece));
    }
    core.Height = Median(heights);
    core.Baseline = Median(bottoms);
  }

  /// Signs, points and exponents go to the word beside; an exponent's digits have been taken for a
  /// word of their own.
  void AttachRest() {
    std::vector<int> bySize(cores_.size());
    std::iota(bySize.begin(), bySize.end(), 0);
    std::sort(bySize.begin(), bySize.end(),
              [&](int a, int b) { return cores_[a].Height > cores_[b].Height; });
    for (std::size_t i = 0; i < cores_.size(); ++i)
      for (const int piece : cores_[i].Pieces) {
        taken_[piece] = true;
        if (cores_[i].Pieces.size() == 1) alone_[piece] = static_cast<int>(i);
      }
    for (const int index : bySize) {
      Core& core = cores_[index];
      if (core.Pieces.empty()) continue;
      for (int round = 0; round < 6 && (AttachSmall(core) || AttachRaised(core)); ++round) {
      }
    }
    JoinAcrossPoints();
  }

  /// Digits with a point between them stand further apart than others.
  void JoinAcrossPoints() {
    std::vector<int> order;
    for (int i = 0; i < static_cast<int>(cores_.size()); ++i)
      if (!cores_[i].Pieces.empty()) order.push_back(i);
    const auto left = [&](int i) { return cores_[i].Box.Left; };
    std::sort(order.begin(), order.end(), [&](int a, int b) { return left(a) < left(b); });
    for (std::size_t i = 0; i < order.size(); ++i) {
      Core& core = cores_[order[i]];
      // What was joined reaches further.
      for (std::size_t j = i + 1; j < order.size(); ++j) {
        Core& other = cores_[order[j]];
        if (other.Box.Left > core.Box.Right + core.Height) break;
        if (other.Pieces.empty() || !core.Raised.empty() || !HasPointBetween(core, other)) continue;
        core.Pieces.insert(core.Pieces.end(), other.Pieces.begin(), other.Pieces.end());
        core.Raised = std::move(other.Raised);
        core.Box.Add(other.Box);
        other.Pieces.clear();
      }
    }
  }

  bool HasPointBetween(const Core& a, const Core& b) const {
    const double h = std::max(a.Height, b.Height);
    if (GapBetween(a.Box, b.Box) >= 0.78 * h || b.Box.Left < a.Box.Left ||
        std::min(a.Height, b.Height) < 0.6 * h ||
        std::fabs(a.Baseline - b.Baseline) > std::max(0.22 * h, 1.0))
      return false;
    const auto isPoint = [&](int piece) {
      const InkBox& box = Box(piece);
      return box.Height() <= 0.4 * h && box.Width() <= 0.4 * h && box.Top > a.Baseline - 0.45 * h;
    };
    return std::any_of(
               a.Pieces.begin(), a.Pieces.end(),
               [&](int piece) { return Box(piece).Right == a.Box.Right && isPoint(piece); }) ||
           std::any_of(b.Pieces.begin(), b.Pieces.end(),
                       [&](int piece) { return Box(piece).Left == b.Box.Left && isPoint(piece); });
  }

  bool AttachSmall(Core& core) {
    bool found = false;
    const double h = core.Height;
    for (const int piece : Near(core.Box, 0.8 * h)) {
      const InkBox& box = Box(piece);
      // The points of large letters are as high as small digits.
      const int alone = box.Height() < 0.4 * h ? alone_[piece] : -1;
      if ((taken_[piece] && alone < 0) || box.Height() > 0.85 * h || box.Width() > 1.3 * h)
        continue;
      const double top = core.Baseline - h;
      if (box.MiddleY() < top - 0.1 * h || box.Top > core.Baseline + 0.2 * h ||
          box.Bottom > core.Baseline + 0.5 * h || GapBetween(box, core.Box) > 0.75 * h)
        continue;
      if (IsRaised(core, box)) {
        core.Raised.push_back(piece);
      } else {
        if (pieces_.Areas[piece] < 0.006 * h * h && pieces_.Areas[piece] < 2) continue;
        core.Pieces.push_back(piece);
      }
      core.Box.Add(box);
      taken_[piece] = found = true;
      if (alone >= 0) {
        cores_[alone].Pieces.clear();
        alone_[piece] = -1;
      }
    }
    return found;
  }

  /// Behind two digits and well above the line of a minus.
  static bool IsRaised(const Core& core, const InkBox& box) {
    return core.Pieces.size() >= 2 && box.Left > core.Box.Right - 1 &&
           box.Bottom < core.Baseline - 0.52 * core.Height;
  }

  bool AttachRaised(Core& core) {
    if (core.Pieces.size() < 2) return false;
    bool found = false;
    for (Core& other : cores_) {
      if (&other == &core || other.Pieces.empty() || !other.Raised.empty()) continue;
      const double part = other.Height / core.Height;
      const double rise = (core.Baseline - other.Baseline) / core.Height;
      const double gap = other.Box.Left - core.Box.Right - 1;
      if (part < 0.4 || part > 0.92 || rise < 0.22 || rise > 0.95 || gap < -0.2 * core.Height ||
          gap > 0.5 * core.Height)
        continue;
      core.Raised.insert(core.Raised.end(), other.Pieces.begin(), other.Pieces.end());
      core.Box.Add(other.Box);
      other.Pieces.clear();
      found = true;
    }
    return found;
  }

  std::vector<int> Near(const InkBox& box, double reach) const {
    std::vector<int> near;
    const auto first =
        std::lower_bound(order_.begin(), order_.end(), box.Left - 4 * reach,
                         [&](int piece, double left) { return Box(piece).Left < left; });
    for (auto i = first; i != order_.end() && Box(*i).Left <= box.Right + reach; ++i)
      if (Box(*i).Right >= box.Left - reach && Box(*i).Bottom >= box.Top - reach &&
          Box(*i).Top <= box.Bottom + reach)
        near.push_back(*i);
    return near;
  }

  /// Pieces above each other, such as those of a colon, are one letter.
  std::vector<Glyph> GlyphsOf(std::vector<int> pieces) const {
    std::sort(pieces.begin(), pieces.end(),
              [&](int a, int b) { return Box(a).Left < Box(b).Left; });
    std::vector<Glyph> glyphs;
    for (const int piece : pieces) {
      const InkBox& box = Box(piece);
      if (!glyphs.empty()) {
        Glyph& last = glyphs.back();
        if (-2 * GapBetween(last.Box, box) > std::min(last.Box.Width(), box.Width())) {
          last.Box.Add(box);
          last.Pieces.push_back(piece);
          continue;
        }
      }
      glyphs.push_back({box, {piece}});
    }
    return glyphs;
  }

  Word WordOf(const Core& core) const {
    Word word;
    word.Glyphs = GlyphsOf(core.Pieces);
    word.Exponent = GlyphsOf(core.Raised);
    word.Box = core.Box;
    word.Baseline = core.Baseline;
    word.Height = core.Height;
    if (word.Exponent.empty()) return word;
    // A minus has no height of its own to go by.
    double tallest = 0, bottom = 0;
    for (const Glyph& glyph : word.Exponent)
      if (glyph.Box.Height() > tallest) {
        tallest = glyph.Box.Height();
        bottom = glyph.Box.Bottom;
      }
    word.ExponentHeight = tallest;
    word.ExponentBaseline = bottom;
    return word;
  }

  const InkPieces& pieces_;
  std::vector<int> order_;  // from the left
  std::vector<bool> taken_;
  std::vector<int> alone_;  // the core that a piece alone is
  std::vector<Core> cores_;
};

}  // namespace

void InkBox::Add(const InkBox& other) {
  Left = std::min(Left, other.Left);
  Top = std::min(Top, other.Top);
  Right = std::max(Right, other.Right);
  Bottom = std::max(Bottom, other.Bottom);
}

InkPieces FindPieces(const InkImage& upright, double part) {
  const std::vector<std::uint8_t> darkest = DarkestNearby(upright);
  const int width = upright.Width, height = upright.Height;
  InkPieces pieces;
  pieces.Labels.assign(upright.Values.size(), 0);
  Sets sets;
  sets.Make();
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const std::size_t at = static_cast<std::size_t>(y) * width + x;
      const int value = upright.Values[at];
      if (value < upright.Weak || value < part * darkest[at]) continue;
      std::int32_t& label = pieces.Labels[at];
      const auto join = [&](std::size_t other) {
        const std::int32_t beside = pieces.Labels[other];
        if (beside == 0) return;
        if (label == 0)
          label = beside;
        else if (label != beside)
          sets.Join(label, beside);
      };
      if (x > 0) join(at - 1);
      if (y > 0) {
        if (x > 0) join(at - width - 1);
        join(at - width);
        if (x + 1 < width) join(at - width + 1);
      }
      if (label == 0) label = sets.Make();
    }
  std::vector<int> numbers(sets.Count(), -1);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::int32_t& label = pieces.Labels[static_cast<std::size_t>(y) * width + x];
      if (label == 0) continue;
      int& number = numbers[sets.Root(label)];
      if (number < 0) {
        number = static_cast<int>(pieces.Boxes.size());
        pieces.Boxes.push_back({x, y, x, y});
        pieces.Areas.push_back(0);
      }
      pieces.Boxes[number].Add({x, y, x, y});
      ++pieces.Areas[number];
      label = number + 1;
    }
  return pieces;
}

std::vector<Word> FindWords(const InkImage& upright, const InkPieces& pieces) {
  return WordMaker(upright, pieces).Make();
}

}  // namespace graphize
