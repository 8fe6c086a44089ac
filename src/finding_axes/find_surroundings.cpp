#include "finding_axes/find_surroundings.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "finding_axes/long_lines.h"
#include "finding_axes/plot_areas.h"
#include "finding_axes/words.h"

namespace graphize {

namespace {

/// Letters differ in size; dots, dashes and symbols of one curve do not, but for their boxes where
/// they turn with it.
bool AreLetters(const Word& word, const InkImage& page, const InkPieces& pieces) {
  // What a fine grid leaves of itself beside a curve is larger.
  if (word.Box.Height() > std::max(16.0, 0.055 * page.Height)) return false;
  int area = 0, ink = 0;
  int little = 1 << 20, much = 0;
  bool areSolid = true;
  int narrow = 1 << 20, wide = 0, low = 1 << 20, high = 0;
  for (const auto* glyphs : {&word.Glyphs, &word.Exponent})
    for (const Glyph& glyph : *glyphs) {
      narrow = std::min(narrow, glyph.Box.Width());
      wide = std::max(wide, glyph.Box.Width());
      low = std::min(low, glyph.Box.Height());
      high = std::max(high, glyph.Box.Height());
      const int box = glyph.Box.Width() * glyph.Box.Height();
      int own = 0;
      for (const int piece : glyph.Pieces) own += pieces.Areas[static_cast<std::size_t>(piece)];
      little = std::min(little, own);
      much = std::max(much, own);
      areSolid = areSolid && 20 * own >= 9 * box;
      area += box;
      ink += own;
    }
  if (areSolid && 4 * much <= 5 * little) return false;
  const auto differ = [](int least, int most) {
    return most - least >= 2 && 4 * (most - least) >= most;
  };
  // Pieces of a curve between the lines of a grid fill little of their boxes.
  return word.Glyphs.size() + word.Exponent.size() >= 2 && 8 * ink >= area &&
         (differ(narrow, wide) || differ(low, high));
}

/// The longest lines, which are axes that do not touch.
std::optional<InkBox> AxesApart(const InkImage& ink, const LineSet& lines) {
  constexpr double kLeastPart = 0.3;  // of the picture
  const auto level = std::ranges::max_element(lines.Level, {}, &LongLine::Length);
  const auto upright = std::ranges::max_element(lines.Upright, {}, &LongLine::Length);
  if (level == lines.Level.end() || upright == lines.Upright.end() ||
      level->Length() < kLeastPart * ink.Width || upright->Length() < kLeastPart * ink.Height)
    return std::nullopt;
  InkBox box = BoxOf(*level, true);
  box.Add(BoxOf(*upright, false));
  return box;
}

/// The line along most of a side of a box, the outermost one within `reach` of it; inward is -1 or
/// 1. Grid lines that go on as ticks reach beyond a frame.
const LongLine* SideOf(std::span<const LongLine> lines, int side, int inward, int reach, int from,
                       int to) {
  const LongLine* found = nullptr;
  for (const LongLine& line : lines) {
    const int common = std::min(line.To, to) - std::max(line.From, from);
    const double depth = inward * (line.Across - side);
    if (depth < -3 || depth > reach || 10 * common < 7 * (to - from)) continue;
    if (found == nullptr || depth < inward * (found->Across - side)) found = &line;
  }
  return found;
}

/// A box of lines with its sides where they are drawn.
struct SidedBox {
  double Left, Top, Right, Bottom;
  bool HasLeft, HasTop, HasRight, HasBottom;
};
SidedBox SidesOf(const LineSet& lines, const InkBox& box) {
  const int reach = std::clamp(std::min(box.Width(), box.Height()) / 15, 3, 40);
  const auto side = [&](const std::vector<LongLine>& along, int at, int inward, int from, int to) {
    return SideOf(along, at, inward, reach, from, to);
  };
  const LongLine* left = side(lines.Upright, box.Left, 1, box.Top, box.Bottom);
  const LongLine* right = side(lines.Upright, box.Right, -1, box.Top, box.Bottom);
  const LongLine* top = side(lines.Level, box.Top, 1, box.Left, box.Right);
  const LongLine* bottom = side(lines.Level, box.Bottom, -1, box.Left, box.Right);
  const auto at = [](const LongLine* line, int end) { return line ? line->Across : end; };
  return {at(left, box.Left), at(top, box.Top), at(right, box.Right), at(bottom, box.Bottom),
          left != nullptr,    top != nullptr,   right != nullptr,     bottom != nullptr};
}

}  // namespace

PlotSurroundings FindSurroundings(const Raster& picture, PictureOperation& operation) {
  PlotSurroundings found;
  AxesFrame& turn = found.Turn;
  turn = FrameOf({}, picture.Width(), picture.Height());
  InkImage ink = InkOf(picture, operation);
  if (operation.Stopped) return found;
  const PageTurn page = FindTurn(ink, operation);
  // Less than a pixel over the whole picture is no turn.
  const bool isTurned = std::fabs(page.Angle) * std::max(ink.Width, ink.Height) > 1;
  if (isTurned) {
    turn.Cos = std::cos(page.Angle);
    turn.Sin = std::sin(page.Angle);
    ink = Upright(ink, page.Angle, page.Skew);
  }
  if (operation.Stopped) return found;
  const auto frameOf = [&](double left, double top, double right, double bottom) {
    const auto across = [&](double u, double v) {
      const MappedPlace at = Mapped(ink.ToPicture, u, v);
      return turn.U(at.X, at.Y);
    };
    const auto down = [&](double u, double v) {
      const MappedPlace at = Mapped(ink.ToPicture, u, v);
      return turn.V(at.X, at.Y);
    };
    AxesFrame frame = turn;
    const double u = 0.5 * (left + right), v = 0.5 * (top + bottom);
    frame.Left = across(left, v);
    frame.Right = across(right, v);
    frame.Top = down(u, top);
    frame.Bottom = down(u, bottom);
    return frame;
  };
  const LineSet lines = FindLongLines(ink);
  std::vector<InkBox> frames = FindFrames(ink, lines);
  if (frames.empty())
    if (const auto axes = AxesApart(ink, lines)) frames.push_back(*axes);
  std::stable_sort(frames.begin(), frames.end(),
                   [](const InkBox& a, const InkBox& b) { return a.Area() > b.Area(); });
  for (const InkBox& box : frames) {
    const SidedBox sides = SidesOf(lines, box);
    found.Frames.push_back({frameOf(sides.Left, sides.Top, sides.Right, sides.Bottom),
                            sides.HasLeft, sides.HasTop, sides.HasRight, sides.HasBottom});
  }
  if (operation.Stopped) return found;
  const InkPieces pieces = FindPieces(ink);
  for (const Word& word : FindWords(ink, pieces))
    if (AreLetters(word, ink, pieces)) {
      const InkBox& at = word.Box;
      const AxesFrame box = frameOf(at.Left, at.Top, at.Right, at.Bottom);
      found.Texts.push_back({box.Left, box.Top, box.Right, box.Bottom});
    }
  return found;
}

}  // namespace graphize
