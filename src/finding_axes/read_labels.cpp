#include "finding_axes/read_labels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/run_time_error.h"
#include "raster/paper.h"

namespace graphize {

namespace {

/// Heights of a word, pixels of the line: at the first the recogniser reads best.
constexpr double kHeight = 30, kOtherHeight = 22;

/// How much each place of a row of words differs from the paper.
TextLine LineOf(const Raster& picture, const Paper& paper, const AxesFrame& turn,
                const std::vector<TextBox>& boxes, double wordHeight) {
  TextBox all = boxes.front();
  double height = 1;
  for (const TextBox& box : boxes) {
    all = {std::min(all.Left, box.Left), std::min(all.Top, box.Top), std::max(all.Right, box.Right),
           std::max(all.Bottom, box.Bottom)};
    height = std::max(height, box.Height() + 1);
  }
  // Brackets reach beyond the letters.
  const double step = height / wordHeight, above = 0.45 * height, beside = 0.7 * height;
  TextLine line;
  line.Width = static_cast<int>((all.Right - all.Left + 2 * beside) / step) + 1;
  line.Height = static_cast<int>((all.Bottom - all.Top + 2 * above) / step) + 1;
  const auto difference = [&](double x, double y) {
    const int column = std::clamp(static_cast<int>(x), 0, picture.Width() - 1);
    const int row = std::clamp(static_cast<int>(y), 0, picture.Height() - 1);
    return Length(paper.At(column, row) - RgbOf(picture.Row(row)[column]));
  };
  std::vector<float> inks;
  float most = 1;
  for (int row = 0; row < line.Height; ++row)
    for (int column = 0; column < line.Width; ++column) {
      const double u = all.Left - beside + column * step, v = all.Top - above + row * step;
      const double x = turn.X(u, v), y = turn.Y(u, v);
      const double x0 = std::floor(x), y0 = std::floor(y);
      const auto s = static_cast<float>(x - x0), t = static_cast<float>(y - y0);
      inks.push_back((1 - t) * ((1 - s) * difference(x0, y0) + s * difference(x0 + 1, y0)) +
                     t * ((1 - s) * difference(x0, y0 + 1) + s * difference(x0 + 1, y0 + 1)));
      most = std::max(most, inks.back());
    }
  for (const float ink : inks)
    line.Grey.push_back(static_cast<std::uint8_t>(std::lround(255 * (1 - ink / most))));
  return line;
}

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n"), last = text.find_last_not_of(" \t\r\n");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

bool HasPairedBrackets(const std::string& text) {
  int open = 0;
  for (const char c : text) {
    open += c == '(' || c == '[' ? 1 : c == ')' || c == ']' ? -1 : 0;
    if (open < 0) return false;
  }
  return open == 0;
}

bool IsSameButBlanks(std::string a, std::string b) {
  std::erase(a, ' ');
  std::erase(b, ' ');
  return a == b;
}

/// Of two looks the first, unless it lost a bracket that the other one has found.
LabelReading Judged(std::string first, std::string second) {
  const bool isBetter = !HasPairedBrackets(first) && HasPairedBrackets(second) &&
                        second.find_first_of("([") != std::string::npos;
  if (first.empty() || isBetter) std::swap(first, second);
  const bool isAlike = IsSameButBlanks(first, second);
  return {.Text = first,
          .Second = isAlike ? "" : second,
          .IsDoubtful = !isAlike || !HasPairedBrackets(first)};
}

}  // namespace

std::vector<LabelReading> ReadLabels(const Raster& picture, const AxesFrame& turn,
                                     const std::vector<std::vector<TextBox>>& labels,
                                     const PictureOperation& operation,
                                     const TextLineReader& reader) {
  std::vector<LabelReading> texts(labels.size());
  if (std::ranges::all_of(labels, &std::vector<TextBox>::empty)) return texts;
  const Paper paper = PaperOf(picture, &operation);
  const auto look = [&](const std::vector<TextBox>& boxes, double height) {
    return Trimmed(reader(LineOf(picture, paper, turn, boxes, height)));
  };
  try {
    for (std::size_t i = 0; i < labels.size() && !operation.Stopped; ++i) {
      if (labels[i].empty()) continue;
      std::string first = look(labels[i], kHeight);
      texts[i] = Judged(std::move(first), look(labels[i], kOtherHeight));
    }
  } catch (const RunTimeError&) {
    // Without a recogniser curves are numbered.
  }
  return texts;
}

}  // namespace graphize
