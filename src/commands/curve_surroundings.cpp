#include "commands/curve_surroundings.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/translation.h"
#include "reading/written.h"
#include "tracing/ink_sight.h"
#include "tracing/plot_box.h"

namespace graphize {

namespace {

constexpr double kBeside = 3;  // pixels within which a place is still on a frame

/// That of the plot in which, or nearest to which, a place lies.
const DrawnFrame* FrameAt(const PlotSurroundings& around, double x, double y) {
  const auto distance = [&](const DrawnFrame& frame) {
    const AxesFrame& box = frame.Box;
    return TextBox{box.Left, box.Top, box.Right, box.Bottom}.Distance(box.U(x, y), box.V(x, y));
  };
  const auto nearest = std::ranges::min_element(around.Frames, {}, distance);
  return nearest == around.Frames.end() ? nullptr : &*nearest;
}

/// The drawn box as the axes' frame has it; nothing where it is turned otherwise.
std::optional<TextBox> Turned(const AxesFrame& box, const AxesFrame& axes) {
  constexpr double kSameTurn = 0.01;  // radians
  if (std::fabs(axes.Cos * box.Sin - axes.Sin * box.Cos) > kSameTurn) return {};
  const double u = 0.5 * (box.Left + box.Right), v = 0.5 * (box.Top + box.Bottom);
  const auto left = [&](double at) { return axes.U(box.X(at, v), box.Y(at, v)); };
  const auto top = [&](double at) { return axes.V(box.X(u, at), box.Y(u, at)); };
  return TextBox{left(box.Left), top(box.Top), left(box.Right), top(box.Bottom)};
}

/// The plot that axes belong to: their points need not stand at its ends, those of labels seldom
/// do. The smallest drawn frame around them, or what the points span.
AxesFrame PlotAround(AxesFrame axes, const PlotSurroundings& around) {
  std::optional<TextBox> smallest;
  const auto area = [](const TextBox& box) {
    return (box.Right - box.Left) * (box.Bottom - box.Top);
  };
  for (const DrawnFrame& frame : around.Frames) {
    const auto box = Turned(frame.Box, axes);
    if (box && box->Left <= axes.Left + kBeside && box->Right >= axes.Right - kBeside &&
        box->Top <= axes.Top + kBeside && box->Bottom >= axes.Bottom - kBeside &&
        (!smallest || area(*box) < area(*smallest)))
      smallest = box;
  }
  if (!smallest) return axes;
  axes.Left = std::min(axes.Left, smallest->Left);
  axes.Top = std::min(axes.Top, smallest->Top);
  axes.Right = std::max(axes.Right, smallest->Right);
  axes.Bottom = std::max(axes.Bottom, smallest->Bottom);
  return axes;
}

}  // namespace

bool IsInText(const PlotSurroundings& around, double x, double y) {
  const double u = around.Turn.U(x, y), v = around.Turn.V(x, y);
  return std::ranges::any_of(around.Texts,
                             [&](const TextBox& text) { return text.Distance(u, v) <= 1.5; });
}

AxesFrame ReadingFrame(const AxisCalibration& calibration, const Raster& picture,
                       const PlotSurroundings& around, double x, double y) {
  const AxesFrame axes = FrameOf(calibration, picture.Width(), picture.Height());
  if (calibration.IsComplete()) return PlotAround(axes, around);
  const DrawnFrame* frame = FrameAt(around, x, y);
  return frame != nullptr ? frame->Box : axes;
}

bool IsBeyondFrame(PlotImage& image, const AxisCalibration& calibration,
                   const PlotSurroundings& around, double x, double y) {
  if (!calibration.IsComplete()) {
    const DrawnFrame* frame = FrameAt(around, x, y);
    if (frame == nullptr) return false;
    const double u = frame->Box.U(x, y), v = frame->Box.V(x, y);
    return (frame->HasLeft && u < frame->Box.Left - kBeside) ||
           (frame->HasTop && v < frame->Box.Top - kBeside) ||
           (frame->HasRight && u > frame->Box.Right + kBeside) ||
           (frame->HasBottom && v > frame->Box.Bottom + kBeside);
  }
  const BasePictureShown base(image);
  const int width = image.Width(), height = image.Height();
  const AxesFrame axes = FrameOf(calibration, width, height);
  const double u = axes.U(x, y), v = axes.V(x, y);
  const auto isOutside = [&](double at, double first, double last) {
    return at < first - kBeside || at > last + kBeside;
  };
  if (!isOutside(u, axes.Left, axes.Right) && !isOutside(v, axes.Top, axes.Bottom)) return false;
  InkSight sight(image.Pixels);
  const auto isInk = [&](int column, int row) { return sight.IsInk(column, row); };
  const PlotFrame frame = FindPlotFrame(isInk, width, height, calibration);
  const AxesFrame &inner = frame.Inner, &outer = frame.Outer;
  return (outer.Left < inner.Left && u < std::min(outer.Left, axes.Left) - kBeside) ||
         (outer.Right > inner.Right && u > std::max(outer.Right, axes.Right) + kBeside) ||
         (outer.Top < inner.Top && v < std::min(outer.Top, axes.Top) - kBeside) ||
         (outer.Bottom > inner.Bottom && v > std::max(outer.Bottom, axes.Bottom) + kBeside);
}

std::string WrittenAt(const SymbolFinding& finding, const PlotSurroundings& around, double x,
                      double y) {
  const auto distance = [&](const FoundSymbol& symbol) {
    return std::hypot(symbol.X - x, symbol.Y - y);
  };
  const FoundSymbol& clicked = *std::ranges::min_element(finding.Symbols, {}, distance);
  const auto whole = [](double at) { return static_cast<int>(std::lround(at)); };
  const InkPiece piece{.Left = whole(clicked.X - 0.5 * finding.Width),
                       .Right = whole(clicked.X + 0.5 * finding.Width),
                       .Top = whole(clicked.Y - 0.5 * finding.Height),
                       .Bottom = whole(clicked.Y + 0.5 * finding.Height)};
  if (IsSample(piece) && !LabelOf(piece, around).empty())
    return Tr("a sample of the legend, no symbol");
  constexpr int kLeast = 3;  // clear ones elsewhere, or what was clicked is a letter
  int within = 0, elsewhere = 0;
  for (const FoundSymbol& symbol : finding.Symbols) {
    const bool isWithin = IsInText(around, symbol.X, symbol.Y);
    within += isWithin ? 1 : 0;
    elsewhere += !isWithin && symbol.Doubt.empty() ? 1 : 0;
  }
  const bool isLetter = IsInText(around, x, y) && elsewhere < kLeast;
  return isLetter || 10 * within > 8 * std::ssize(finding.Symbols) ? Tr("a word, no symbol") : "";
}

}  // namespace graphize
