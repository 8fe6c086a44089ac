#include "finding_axes/axis_doubts.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "base/translation.h"
#include "finding_axes/label_text.h"

namespace graphize {

namespace {

class Doubter {
 public:
  Doubter(const LabelPage& page, AxisCourse course, const std::set<int>& others, FoundAxis& axis)
      : page_(page),
        level_(course == AxisCourse::Level),
        axis_(axis),
        h_(axis.Height),
        others_(others) {
    for (const TiedLabel& label : axis.Labels) {
      words_.insert(label.Word);
      const Word& word = WordOf(label);
      box_ = words_.size() == 1 ? word.Box : box_;
      box_.Add(word.Box);
    }
    for (int i = 0; i < static_cast<int>(page.Words.size()); ++i)
      for (const auto* glyphs : {&page.Words[i].Is.Glyphs, &page.Words[i].Is.Exponent})
        for (const Glyph& glyph : *glyphs) {
          written_.insert(glyph.Pieces.begin(), glyph.Pieces.end());
          if (words_.contains(i) || others.contains(i))
            explained_.insert(glyph.Pieces.begin(), glyph.Pieces.end());
        }
  }

  void Look() {
    std::vector<double> values;
    std::size_t onTicks = 0;
    for (const TiedLabel& label : axis_.Labels) {
      values.push_back(label.Value);
      onTicks += label.OnTick ? 1 : 0;
    }
    if (onTicks < 3) Doubt(Tr("the labels stand at no ticks"));
    if (h_ < 6 * page_.Ink.Enlarged) Doubt(Tr("the digits are too small"));
    if (const char* doubt = ScaleDoubt(axis_.Law.Log, values)) Doubt(Tr(doubt));
    if (ErrorAtEnds() > 0.8 * page_.Ink.Enlarged)
      Doubt(Tr("the labels do not tell where the axis ends"));
    LookAtTexts();
    LookAtGaps();
    LookBesideLabels();
    LookForUnexplained();
    LookIntoGaps();
    LookForFactor();
    LookAtOtherSides();
  }

 private:
  const Word& WordOf(const TiedLabel& label) const { return page_.Words[label.Word].Is; }
  void Doubt(const std::string& text) {
    auto& doubts = axis_.Doubts;
    if (std::find(doubts.begin(), doubts.end(), text) == doubts.end()) doubts.push_back(text);
  }
  /// One that lasts.
  void Doubt(const std::string& text, const std::vector<InkBox>& words) {
    Doubt(text);
    axis_.Lasting.push_back({text, words});
  }

  /// The standard error of the fitted line at the ends of the axis, pixels; of each tick at least
  /// what rounding to whole pixels makes.
  double ErrorAtEnds() const {
    const double n = static_cast<double>(axis_.Labels.size());
    double mean = 0, squares = 0, spread = 0;
    for (const TiedLabel& label : axis_.Labels) mean += label.Position / n;
    for (const TiedLabel& label : axis_.Labels) {
      squares += label.Residual * label.Residual;
      spread += (label.Position - mean) * (label.Position - mean);
    }
    const double variance = std::max(squares / std::max(n - 2, 1.0), 1.0 / 12);
    const double far = std::max(std::fabs(axis_.LineFrom - mean), std::fabs(axis_.LineTo - mean));
    return std::sqrt(variance * (1 / n + far * far / spread));
  }

  void LookAtTexts() {
    bool powers = true;
    for (const TiedLabel& label : axis_.Labels) {
      const auto& [word, reading, meanings] = page_.Words[label.Word];
      if (const char* doubt = TextDoubt(reading.Text)) Doubt(Tr(doubt));
      if (word.Box.Left <= 1 || word.Box.Top <= 1 || word.Box.Right >= page_.Ink.Width - 2 ||
          word.Box.Bottom >= page_.Ink.Height - 2)
        Doubt(Tr("a label lies at the picture's edge"));
      powers = powers && reading.Exponent.empty() && reading.Text.size() >= 3 &&
               reading.Text.starts_with("10");
    }
    if (powers) Doubt(Tr("the labels may be powers of ten"));
  }

  /// A point that was lost leaves a wide gap, or a trace of ink in it.
  void LookAtGaps() {
    double narrowest = 1e9, widest = 0;
    bool isWide = false;
    for (const TiedLabel& label : axis_.Labels) {
      const auto& [word, reading, meanings] = page_.Words[label.Word];
      for (std::size_t i = 1; i < word.Glyphs.size() && i < reading.Text.size(); ++i) {
        const char a = reading.Text[i - 1], b = reading.Text[i];
        if (a < '0' || a > '9' || b < '0' || b > '9') continue;
        const InkBox& left = word.Glyphs[i - 1].Box;
        const InkBox& right = word.Glyphs[i].Box;
        if (HasTrace(word, left.Right, right.Left))
          Doubt(Tr("there may be a point between digits"));
        const bool one = a == '1' || b == '1';  // which is narrow
        if (right.Left - left.Right - 1 > (one ? 0.62 : 0.36) * h_) isWide = true;
        if (one) continue;
        const double pitch = right.MiddleX() - left.MiddleX();
        narrowest = std::min(narrowest, pitch);
        widest = std::max(widest, pitch);
      }
    }
    if (isWide || widest > 1.12 * h_ || widest > 1.3 * narrowest + 1)
      Doubt(Tr("digits stand so far apart that a point may be lost between them"));
  }

  bool HasTrace(const Word& word, int left, int right) const {
    const int bottom = static_cast<int>(word.Baseline);
    for (int x = left + 2; x <= right - 2; ++x)
      for (int y = bottom - static_cast<int>(0.25 * word.Height);
           y <= bottom + static_cast<int>(0.2 * word.Height); ++y)
        if (page_.Ink.At(x, y) >= std::max(page_.Ink.Weak, page_.Ink.Full / 6)) return true;
    return false;
  }

  /// A short thin minus may be too pale for a piece of ink.
  bool HasPaleInkBefore(const Word& word) const {
    const int pale = std::max(page_.Ink.Weak, page_.Ink.Full / 8);
    const int right = word.Box.Left - 2, left = word.Box.Left - static_cast<int>(0.9 * h_);
    for (int y = static_cast<int>(word.Baseline - 0.65 * h_); y <= word.Baseline - 0.15 * h_; ++y)
      for (int x = std::max(left, 0); x <= right; ++x) {
        if (page_.Ink.At(x, y) < pale) continue;
        const std::int32_t label =
            page_.Pieces.Labels[static_cast<std::size_t>(y) * page_.Ink.Width + x];
        if (label == 0 ||
            (!explained_.contains(label - 1) && page_.Pieces.Boxes[label - 1].Height() <= 1.5 * h_))
          return true;
      }
    return false;
  }

  /// Pieces in a label or close behind it that are none of its letters, nor a tick.
  bool HasMoreInk(const Word& word) const {
    for (std::size_t i = 0; i < page_.Pieces.Boxes.size(); ++i) {
      const InkBox& box = page_.Pieces.Boxes[i];
      if (explained_.contains(static_cast<int>(i)) || box.Height() > 1.5 * h_ ||
          box.Right < word.Box.Left || box.Left > word.Box.Right + 0.6 * h_ ||
          box.Bottom < word.Box.Top || box.Top > word.Baseline + 0.2 * h_)
        continue;
      const bool isTick = box.Height() < 0.4 * h_ && 2 * box.Width() > 3 * box.Height() &&
                          box.Left > word.Box.Right;
      if (!isTick && page_.Pieces.Areas[i] >= 2 && page_.Pieces.Areas[i] > 0.01 * h_ * h_)
        return true;
    }
    return false;
  }

  /// Ink before a label, at the height of a minus.
  void LookBesideLabels() {
    for (const TiedLabel& label : axis_.Labels) {
      const Word& word = WordOf(label);
      if (HasPaleInkBefore(word)) return Doubt(Tr("there may be a sign before a label"));
      for (std::size_t i = 0; i < page_.Pieces.Boxes.size(); ++i) {
        const InkBox& box = page_.Pieces.Boxes[i];
        if (explained_.contains(static_cast<int>(i)) || box.Right >= word.Box.Left ||
            box.Left < word.Box.Left - 1.3 * h_ || box.Height() > 1.5 * h_)
          continue;
        const double above = word.Baseline - box.MiddleY();
        if (above > -0.2 * h_ && above < 1.2 * h_ && page_.Pieces.Areas[i] >= 2 &&
            page_.Pieces.Areas[i] > 0.01 * h_ * h_)
          return Doubt(Tr("there may be a sign before a label"));
      }
      if (HasMoreInk(word)) return Doubt(Tr("there may be more of a label than was read"));
    }
  }

  /// Among the labels, and as far as they go on, stands nothing that was not read.
  void LookForUnexplained() {
    const int first = (level_ ? box_.Left : box_.Top), last = level_ ? box_.Right : box_.Bottom;
    const double reach = 0.6 * (last - first);
    const auto isAmong = [&](const InkBox& box) {
      const double along = level_ ? box.MiddleX() : box.MiddleY();
      if (along < first - reach || along > last + reach) return false;
      return level_ ? box.MiddleY() >= box_.Top && box.MiddleY() <= box_.Bottom
                    : box.MiddleX() >= box_.Left - 0.5 * h_ && box.MiddleX() <= box_.Right;
    };
    for (std::size_t i = 0; i < page_.Words.size(); ++i)
      if (!words_.contains(static_cast<int>(i)) && isAmong(page_.Words[i].Is.Box) &&
          page_.Words[i].Is.Height > 0.6 * h_)
        axis_.Unexplained.push_back(static_cast<int>(i));
    for (std::size_t i = 0; i < page_.Pieces.Boxes.size(); ++i) {
      const InkBox& box = page_.Pieces.Boxes[i];
      if (!written_.contains(static_cast<int>(i)) && box.Height() >= 0.6 * h_ &&
          box.Height() <= 1.8 * h_ && box.Width() <= 8 * h_ && box.Width() >= 0.3 * h_ &&
          isAmong(box))
        return Doubt(Tr("among the labels stands something that could not be read"));
    }
  }

  /// Where the scale goes on between two labels stands no ink that was read as none.
  void LookIntoGaps() {
    const auto& labels = axis_.Labels;
    double step = 1e30;
    for (std::size_t i = 1; i < labels.size(); ++i)
      step = std::min(step, labels[i].Position - labels[i - 1].Position);
    for (std::size_t i = 1; i < labels.size(); ++i) {
      const double from = labels[i - 1].Position, gap = labels[i].Position - from;
      const auto parts = static_cast<int>(std::lround(gap / step));
      for (int k = 1; k < parts; ++k)
        if (HasInkAt(from + k * gap / parts))
          return Doubt(Tr("among the labels stands something that could not be read"));
    }
  }

  bool HasInkAt(double along) const {
    const int near = static_cast<int>(0.6 * h_), at = static_cast<int>(std::lround(along));
    const InkBox place = level_ ? InkBox{at - near, box_.Top, at + near, box_.Bottom}
                                : InkBox{box_.Left, at - near, box_.Right, at + near};
    int inked = 0;
    for (int y = std::max(place.Top, 0); y <= std::min(place.Bottom, page_.Ink.Height - 1); ++y)
      for (int x = std::max(place.Left, 0); x <= std::min(place.Right, page_.Ink.Width - 1); ++x) {
        const std::int32_t piece =
            page_.Pieces.Labels[static_cast<std::size_t>(y) * page_.Ink.Width + x] - 1;
        if (piece >= 0 && !explained_.contains(piece) &&
            page_.Pieces.Boxes[piece].Height() <= 1.5 * h_)
          ++inked;
      }
    return inked > 0.15 * h_ * h_;
  }

  /// "1e6" or "x10^3" beside the far end of an axis holds for all of its labels. Of several such
  /// words the one that is read best is told.
  void LookForFactor() {
    std::vector<InkBox> words;
    const WordReading* best = nullptr;
    for (std::size_t i = 0; i < page_.Words.size(); ++i) {
      const auto& [word, reading, meanings] = page_.Words[i];
      if (words_.contains(static_cast<int>(i)) || others_.contains(static_cast<int>(i)) ||
          reading.Text.empty() || word.Glyphs.size() + word.Exponent.size() < 2 ||
          !(IsBehind(word.Box) || (IsAtEnd(word.Box) && MayBeFactor(reading.Text))))
        continue;
      words.push_back(word.Box);
      if (best == nullptr || reading.Share > best->Share) best = &reading;
    }
    if (best != nullptr)
      Doubt(Tr("at the axis's end stands \"%1\", which may be a factor",
               ShownLabel(best->Text, best->Exponent)),
            words);
  }

  /// Above an upright axis stands nothing else; below a level one, its title, too.
  bool MayBeFactor(const std::string& text) const {
    const auto digits =
        std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return !level_ || (digits >= 1 && 2 * digits + 1 >= static_cast<std::ptrdiff_t>(text.size()));
  }

  /// On a level axis's line as it goes on.
  bool IsBehind(const InkBox& box) const {
    return level_ && box.MiddleX() > axis_.LineTo && box.Left < axis_.LineTo + 8 * h_ &&
           std::fabs(box.MiddleY() - axis_.Across) < 2.5 * h_;
  }

  bool IsAtEnd(const InkBox& box) const {
    if (!level_)
      return box.Left < std::max<double>(box_.Right, axis_.Across) + 8 * h_ &&
             box.Right > box_.Left - 5 * h_ && box.Bottom < box_.Top + h_ &&
             box.Bottom > std::min<double>(box_.Top, axis_.LineFrom) - 5 * h_;
    const double past = axis_.LineTo - 0.15 * (axis_.LineTo - axis_.LineFrom) - 8 * h_;
    return box.Right > past && box.Top > box_.Bottom - 0.3 * h_ && box.Top < box_.Bottom + 4 * h_;
  }

  /// A second scale of two labels makes no law, and one that was read badly neither, but it stands
  /// at a line of its own.
  void LookAtOtherSides() {
    if (!axis_.Scales.empty()) return;
    for (const LongLine& line : level_ ? page_.Lines.Level : page_.Lines.Upright) {
      const double length = axis_.LineTo - axis_.LineFrom;
      if (line.Length() < 0.6 * length || std::fabs(line.Across - axis_.Across) < 2 * h_) continue;
      std::vector<const InkBox*> numbers;
      int read = 0;
      for (std::size_t i = 0; i < page_.Words.size(); ++i) {
        if (words_.contains(static_cast<int>(i)) || others_.contains(static_cast<int>(i)) ||
            !MayBeLabel(page_.Words[i]))
          continue;
        const InkBox& box = page_.Words[i].Is.Box;
        const double along = level_ ? box.MiddleX() : box.MiddleY();
        // On the far side from the axis.
        const double gap = line.Across < axis_.Across
                               ? line.Across - (level_ ? box.Bottom : box.Right)
                               : (level_ ? box.Top : box.Left) - line.Across;
        if (gap <= 0 || gap >= 3 * h_ || along <= line.From - 0.3 * h_ ||
            along >= line.To + 0.3 * h_)
          continue;
        numbers.push_back(&box);
        read += page_.Words[i].Meanings.empty() ? 0 : 1;
      }
      if (read < 2 && numbers.size() < kFewestUnread) continue;
      for (const InkBox* a : numbers)
        for (const InkBox* b : numbers) {
          const double apart = level_ ? b->MiddleX() - a->MiddleX() : b->MiddleY() - a->MiddleY();
          if (apart <= 0.35 * length) continue;
          std::vector<InkBox> words;
          for (const InkBox* box : numbers) words.push_back(*box);
          return Doubt(Tr("there may be a second scale"), words);
        }
    }
  }

  static constexpr std::size_t kFewestUnread = 3;
  bool MayBeLabel(const ReadWordRecord& record) const {
    if (!record.Meanings.empty()) return true;
    const Word& word = record.Is;
    return word.Glyphs.size() >= 2 && word.Glyphs.size() <= 7 && word.Height > 0.75 * h_ &&
           word.Height < 1.34 * h_;
  }

  const LabelPage& page_;
  bool level_;
  FoundAxis& axis_;
  double h_;
  InkBox box_;
  std::set<int> words_;          // of the labels
  const std::set<int>& others_;  // words of scales across
  std::set<int> written_;        // pieces of any word
  std::set<int> explained_;      // of these and of the labels
};

}  // namespace

void AddDoubts(const LabelPage& page, AxisCourse course, const std::set<int>& others,
               FoundAxis& axis) {
  Doubter(page, course, others, axis).Look();
}

}  // namespace graphize
