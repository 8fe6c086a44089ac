#include "finding_axes/plot_areas.h"

#include <algorithm>
#include <numeric>

namespace graphize {

namespace {

constexpr double kLeastSide = 0.15;  // of the image's
constexpr double kLeastArea = 0.25;  // of the largest plot's: what is smaller is a legend
constexpr int kTouch = 4;            // pixels that lines may miss each other by

bool Touch(const LongLine& level, const LongLine& upright) {
  return upright.Across >= level.From - kTouch && upright.Across <= level.To + kTouch &&
         level.Across >= upright.From - kTouch && level.Across <= upright.To + kTouch;
}

/// The boxes of lines that hang together.
std::vector<InkBox> FramesOf(const LineSet& lines) {
  const std::size_t levels = lines.Level.size(), count = levels + lines.Upright.size();
  std::vector<std::size_t> parent(count);
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  const auto root = [&](std::size_t i) {
    while (parent[i] != i) i = parent[i] = parent[parent[i]];
    return i;
  };
  for (std::size_t i = 0; i < levels; ++i)
    for (std::size_t j = levels; j < count; ++j)
      if (Touch(lines.Level[i], lines.Upright[j - levels])) parent[root(i)] = root(j);
  struct Frame {
    InkBox Box;
    bool HasLevel = false, HasUpright = false;
  };
  std::vector<Frame> frames(count);
  for (std::size_t i = 0; i < count; ++i) {
    Frame& frame = frames[root(i)];
    const bool level = i < levels;
    const LongLine& line = level ? lines.Level[i] : lines.Upright[i - levels];
    const InkBox box = BoxOf(line, level);
    if (!frame.HasLevel && !frame.HasUpright) frame.Box = box;
    frame.Box.Add(box);
    (level ? frame.HasLevel : frame.HasUpright) = true;
  }
  std::vector<InkBox> boxes;
  for (const Frame& frame : frames)
    if (frame.HasLevel && frame.HasUpright) boxes.push_back(frame.Box);
  return boxes;
}

bool Contains(const InkBox& outer, const InkBox& inner) {
  return inner.Left >= outer.Left && inner.Right <= outer.Right && inner.Top >= outer.Top &&
         inner.Bottom <= outer.Bottom;
}

/// The middle of the widest stretch without ink in a gap between two plots, columns or rows; of
/// what crosses it, `first` to `last` counts.
int GutterOf(const InkImage& ink, bool columns, int from, int to, int first, int last) {
  int best = from + (to - from) / 4, widest = 0, start = from + 1;
  const auto isEmpty = [&](int at) {
    for (int across = first; across <= last; ++across)
      if ((columns ? ink.At(at, across) : ink.At(across, at)) >= ink.Weak) return false;
    return true;
  };
  for (int at = from + 1; at <= to; ++at) {
    if (at < to && isEmpty(at)) continue;
    if (at - start > widest) {
      widest = at - start;
      best = start + widest / 2;
    }
    start = at + 1;
  }
  return best;
}

bool Overlap(int a0, int a1, int b0, int b1) {
  return std::min(a1, b1) > std::max(a0, b0);
}

}  // namespace

InkBox BoxOf(const LongLine& line, bool level) {
  return level ? InkBox{line.From, line.First, line.To, line.Last}
               : InkBox{line.First, line.From, line.Last, line.To};
}

std::vector<InkBox> FindFrames(const InkImage& upright, const LineSet& lines) {
  std::vector<InkBox> boxes = FramesOf(lines);
  std::erase_if(boxes, [&](const InkBox& box) {
    return box.Width() < kLeastSide * upright.Width || box.Height() < kLeastSide * upright.Height;
  });
  const auto inside = [&](const InkBox& outer) {
    return std::count_if(boxes.begin(), boxes.end(),
                         [&](const InkBox& box) { return &box != &outer && Contains(outer, box); });
  };
  std::vector<InkBox> plots;
  for (const InkBox& box : boxes) {
    const bool isInner = std::any_of(boxes.begin(), boxes.end(), [&](const InkBox& outer) {
      return &outer != &box && Contains(outer, box) && inside(outer) < 2;
    });
    if (inside(box) < 2 && !isInner) plots.push_back(box);
  }
  double largest = 0;
  for (const InkBox& box : plots) largest = std::max(largest, box.Area());
  std::erase_if(plots, [&](const InkBox& box) { return box.Area() < kLeastArea * largest; });
  return plots;
}

std::vector<InkBox> FindPlots(const InkImage& upright, const LineSet& lines) {
  const std::vector<InkBox> frames = FindFrames(upright, lines);
  if (frames.size() < 2) return {};
  std::vector<InkBox> areas(frames.size(), InkBox{0, 0, upright.Width - 1, upright.Height - 1});
  for (std::size_t i = 0; i < frames.size(); ++i)
    for (std::size_t j = 0; j < frames.size(); ++j) {
      const InkBox &a = frames[i], &b = frames[j];
      // Each pair once, from the left or the upper one.
      if (b.Left > a.Right && Overlap(a.Top, a.Bottom, b.Top, b.Bottom)) {
        const int cut = GutterOf(upright, true, a.Right, b.Left, std::min(a.Top, b.Top),
                                 std::max(a.Bottom, b.Bottom));
        areas[i].Right = std::min(areas[i].Right, cut - 1);
        areas[j].Left = std::max(areas[j].Left, cut);
      } else if (b.Top > a.Bottom && Overlap(a.Left, a.Right, b.Left, b.Right)) {
        const int cut = GutterOf(upright, false, a.Bottom, b.Top, std::min(a.Left, b.Left),
                                 std::max(a.Right, b.Right));
        areas[i].Bottom = std::min(areas[i].Bottom, cut - 1);
        areas[j].Top = std::max(areas[j].Top, cut);
      }
    }
  std::vector<std::size_t> order(frames.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) {
    const InkBox &a = frames[i], &b = frames[j];
    return Overlap(a.Top, a.Bottom, b.Top, b.Bottom) ? a.Left < b.Left : a.Top < b.Top;
  });
  std::vector<InkBox> plots;
  for (const std::size_t i : order) plots.push_back(areas[i]);
  return plots;
}

InkImage PartOf(const InkImage& ink, const InkBox& part) {
  InkImage cut = ink;
  cut.Width = part.Width();
  cut.Height = part.Height();
  cut.Values.clear();
  for (int y = part.Top; y <= part.Bottom; ++y)
    cut.Values.insert(cut.Values.end(), ink.Row(y) + part.Left, ink.Row(y) + part.Right + 1);
  const MappedPlace corner = Mapped(ink.ToPicture, part.Left, part.Top);
  cut.ToPicture.X = corner.X;
  cut.ToPicture.Y = corner.Y;
  return cut;
}

}  // namespace graphize
