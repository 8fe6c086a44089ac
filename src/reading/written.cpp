#include "reading/written.h"

#include <algorithm>
#include <cmath>

#include "base/translation.h"

namespace graphize {

namespace {

constexpr int kLargest = 150;  // pixels of a letter or a sample

}  // namespace

bool IsInText(const PlotSurroundings& around, const InkPiece& piece) {
  const double x = 0.5 * (piece.Left + piece.Right), y = 0.5 * (piece.Top + piece.Bottom);
  const double u = around.Turn.U(x, y), v = around.Turn.V(x, y);
  return std::ranges::any_of(around.Texts, [&](const TextBox& text) {
    const double high = text.Height() + 1;
    return piece.Height() <= 2 * high && piece.Width() <= text.Right - text.Left + high &&
           text.Distance(u, v) <= (piece.Extent() < 2.5 * high ? 0.7 * high : 1);
  });
}

bool IsSample(const InkPiece& piece) {
  return piece.Width() >= 10 && piece.Width() <= 90 && piece.Height() <= 12 &&
         piece.Width() >= 3 * piece.Height();
}

bool IsLegendSample(const InkPiece& piece, const PlotSurroundings& around) {
  return IsSample(piece) && !LabelOf(piece, around).empty();
}

std::vector<TextBox> LabelOf(const InkPiece& sample, const PlotSurroundings& around) {
  const AxesFrame& turn = around.Turn;
  const double row = 0.5 * (sample.Top + sample.Bottom);
  const double left = turn.U(sample.Left, row), right = turn.U(sample.Right, row),
               v = turn.V(0.5 * (sample.Left + sample.Right), row);
  std::vector<TextBox> line;
  for (const TextBox& text : around.Texts)
    if (v > text.Top - 0.3 * text.Height() && v < text.Bottom + 0.3 * text.Height())
      line.push_back(text);
  for (const int towards : {1, -1}) {
    std::sort(line.begin(), line.end(), [&](const TextBox& a, const TextBox& b) {
      return a.Left * towards < b.Left * towards;
    });
    std::vector<TextBox> label;
    double end = towards > 0 ? right : left;
    for (const TextBox& text : line) {
      const double gap = towards > 0 ? text.Left - end : end - text.Right;
      const double most = (label.empty() ? 3 : 1.2) * std::max(text.Height(), 8.0);
      // Dots may have been taken for letters, and stand where the stroke does.
      if (gap < -0.6 * text.Height() || gap > most) continue;
      label.push_back(text);
      end = towards > 0 ? text.Right : text.Left;
    }
    if (label.empty()) continue;
    if (towards < 0) std::reverse(label.begin(), label.end());
    return label;
  }
  return {};
}

std::string NameOfWritten(const InkMap& map, const InkPiece& piece,
                          const PlotSurroundings& around) {
  if (IsInText(around, piece)) return Tr("a word, no curve");
  if (IsLegendSample(piece, around)) return Tr("a sample of the legend, no curve");
  if (IsRectangle(map, piece)) return Tr("a box, no curve");
  return {};
}

void Wipe(InkMap& map, const InkPiece& piece) {
  std::vector<PathPixel> rim = {piece.Start};
  const auto take = [&](int x, int y) {
    if (!map.Contains(x, y)) return;
    std::uint8_t& value = map.Cell(x, y);
    if (value == 0 || value > InkMap::kFull) return;
    // Fainter ink goes with the clear one that it is beside.
    const bool isClear = value >= InkMap::kClear;
    value = 0;
    if (isClear) rim.push_back({x, y});
  };
  while (!rim.empty()) {
    const PathPixel at = rim.back();
    rim.pop_back();
    for (int v = -1; v <= 1; ++v)
      for (int u = -1; u <= 1; ++u) take(at.X + u, at.Y + v);
  }
}

void WipeWritten(InkMap& map, const PlotSurroundings& around) {
  const AxesFrame& turn = around.Turn;
  for (const TextBox& text : around.Texts) {
    // A sample stands within three heights.
    const double beside = 3.5 * std::max(text.Height(), 8.0), above = 0.7 * text.Height();
    for (double v = text.Top - above; v <= text.Bottom + above; ++v)
      for (double u = text.Left - beside; u <= text.Right + beside; ++u) {
        const PathPixel at{static_cast<int>(std::lround(turn.X(u, v))),
                           static_cast<int>(std::lround(turn.Y(u, v)))};
        const auto piece = PieceAt(map, at, kLargest);
        if (piece && (IsInText(around, *piece) || IsLegendSample(*piece, around)))
          Wipe(map, *piece);
      }
  }
}

}  // namespace graphize
