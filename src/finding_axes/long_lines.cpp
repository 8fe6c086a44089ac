#include "finding_axes/long_lines.h"

#include <algorithm>
#include <cmath>

namespace graphize {

namespace {

InkImage Transposed(const InkImage& ink) {
  InkImage turned = ink;
  std::swap(turned.Width, turned.Height);
  constexpr int kBlock = 64;
  for (int top = 0; top < ink.Height; top += kBlock)
    for (int left = 0; left < ink.Width; left += kBlock)
      for (int y = top; y < std::min(top + kBlock, ink.Height); ++y)
        for (int x = left; x < std::min(left + kBlock, ink.Width); ++x)
          turned.Values[static_cast<std::size_t>(x) * turned.Width + y] =
              ink.Values[static_cast<std::size_t>(y) * ink.Width + x];
  return turned;
}

int ShortestLine(const InkImage& ink) {
  return std::clamp(std::min(ink.Width, ink.Height) / 7, 24, 70);
}

/// The mean row of the ink about a line, weighed by it.
double MiddleOf(const InkImage& ink, const LongLine& line) {
  double sum = 0, moment = 0;
  const int step = std::max(line.Length() / 256, 1);
  for (int y = line.First - 1; y <= line.Last + 1; ++y)
    for (int x = line.From; x <= line.To; x += step) {
      const int value = ink.At(x, y);
      if (value < ink.Weak / 2) continue;
      sum += value;
      moment += static_cast<double>(value) * y;
    }
  return sum > 0 ? moment / sum : 0.5 * (line.First + line.Last);
}

std::vector<LongLine> LevelLines(const InkImage& ink) {
  const int shortest = ShortestLine(ink);
  const int thickest = std::max(8, std::max(ink.Width, ink.Height) / 120);
  std::vector<LongLine> lines, open;
  for (int y = 0; y <= ink.Height; ++y) {
    std::vector<LongLine> grown;
    const auto add = [&](int from, int to) {
      LongLine line{0, y, y, from, to};
      for (LongLine& other : open) {
        const int overlap = std::min(other.To, to) - std::max(other.From, from);
        if (2 * overlap < std::min(other.Length(), to - from)) continue;
        line.First = std::min(line.First, other.First);
        line.From = std::min(line.From, other.From);
        line.To = std::max(line.To, other.To);
        other.Last = -1;
      }
      grown.push_back(line);
    };
    if (y < ink.Height) {
      const std::uint8_t* row = ink.Row(y);
      for (int x = 0; x < ink.Width; ++x) {
        if (row[x] < ink.Weak) continue;
        const int from = x;
        int gap = 0;
        for (; x < ink.Width && gap <= 1; ++x) gap = row[x] < ink.Weak ? gap + 1 : 0;
        const int to = x - 1 - gap;
        if (to - from + 1 >= shortest) add(from, to);
      }
    }
    for (LongLine& line : open)
      if (line.Last >= 0 && line.Thickness() <= thickest) lines.push_back(line);
    open = std::move(grown);
  }
  for (LongLine& line : lines) line.Across = MiddleOf(ink, line);
  return lines;
}

/// How well a turn gathers the upper edges of what is inked into few rows.
class Projection {
 public:
  explicit Projection(const InkImage& ink) : width_(ink.Width), height_(ink.Height) {
    for (int y = 1; y < ink.Height; ++y)
      for (int x = 0; x < ink.Width; ++x)
        if (ink.At(x, y) >= 2 * ink.Weak && ink.At(x, y - 1) < ink.Weak) edges_.push_back({x, y});
  }
  double Score(double slope) const {
    const int margin = static_cast<int>(std::fabs(slope) * width_) + 2;
    std::vector<int> counts(height_ + 2 * margin + 2);
    for (const auto& [x, y] : edges_)
      ++counts[static_cast<std::size_t>(std::lround(y - slope * x)) + margin];
    double score = 0;
    for (std::size_t i = 1; i < counts.size(); ++i) {
      const double part = static_cast<double>(counts[i] + counts[i - 1]) / width_;
      score += part * part * part;
    }
    return score;
  }

 private:
  struct Pixel {
    int X, Y;
  };
  std::vector<Pixel> edges_;
  int width_, height_;
};

/// The greatest ink of squares: thin lines stay.
InkImage Coarse(const InkImage& ink, int side) {
  const int factor = std::max((std::max(ink.Width, ink.Height) + side - 1) / side, 1);
  InkImage coarse = ink;
  coarse.Width = ink.Width / factor;
  coarse.Height = ink.Height / factor;
  coarse.Values.assign(static_cast<std::size_t>(coarse.Width) * coarse.Height, 0);
  for (int y = 0; y < coarse.Height * factor; ++y)
    for (int x = 0; x < coarse.Width * factor; ++x) {
      std::uint8_t& to =
          coarse.Values[static_cast<std::size_t>(y / factor) * coarse.Width + x / factor];
      to = std::max(to, ink.Row(y)[x]);
    }
  return coarse;
}

double RoughAngle(const InkImage& ink, const PictureOperation& operation) {
  const InkImage coarse = Coarse(ink, 900);
  const Projection level(coarse), upright(Transposed(coarse));
  const auto score = [&](double degrees) {
    const double slope = std::tan(degrees * kDegree);
    return level.Score(slope) + upright.Score(-slope);
  };
  const double straight = score(0);
  double best = 0, most = straight;
  const auto look = [&](double from, double to, double step) {
    for (double degrees = from; degrees <= to && !operation.Stopped; degrees += step)
      if (const double s = score(degrees); s > most) {
        most = s;
        best = degrees;
      }
  };
  look(-8, 8, 0.125);
  look(best - 0.12, best + 0.12, 0.03);
  // A picture that a program has drawn stands upright; steep curves only look like lines.
  return std::fabs(best) < 0.15 || most > 1.25 * straight ? best * kDegree : 0;
}

struct Slope {
  double Value = 0;  // rows per column
  double Length = 0;
};

/// A level line followed from its middle to both sides, and its slope by least squares.
Slope Follow(const InkImage& ink, const LongLine& line) {
  std::vector<std::pair<double, double>> points;
  const int half = line.Thickness() / 2 + 3;
  for (const int step : {4, -4}) {
    double row = line.Across;
    int missing = 0;
    for (int x = (line.From + line.To) / 2; x >= 0 && x < ink.Width && missing < 8; x += step) {
      double sum = 0, moment = 0;
      const int middle = static_cast<int>(std::lround(row));
      for (int y = middle - half; y <= middle + half; ++y) {
        const int value = ink.At(x, y);
        if (value < ink.Weak) continue;
        sum += value;
        moment += static_cast<double>(value) * y;
      }
      // What stands across it hides its middle.
      const bool open = ink.At(x, middle - half) < ink.Weak && ink.At(x, middle + half) < ink.Weak;
      if (sum < ink.Weak) ++missing;
      if (sum < ink.Weak || !open) continue;
      missing = 0;
      const double found = moment / sum;
      if (std::fabs(found - row) > 1.5) continue;
      row += 0.25 * (found - row);
      points.emplace_back(x, found);
    }
  }
  Slope slope;
  for (int round = 0; round < 3 && points.size() >= 8; ++round) {
    double n = 0, sx = 0, sy = 0;
    for (const auto& [x, y] : points) {
      ++n;
      sx += x;
      sy += y;
    }
    double xx = 0, xy = 0;
    for (const auto& [x, y] : points) {
      xx += (x - sx / n) * (x - sx / n);
      xy += (x - sx / n) * (y - sy / n);
    }
    if (xx <= 0) return {};
    slope = {xy / xx, std::sqrt(12 * xx / n)};
    const double limit = 1.5 / (round + 1);
    std::erase_if(points, [&](const auto& p) {
      return std::fabs(p.second - sy / n - slope.Value * (p.first - sx / n)) > limit;
    });
  }
  return slope;
}

/// The middle slope of the six longest lines; Length is that of all.
Slope MiddleSlope(const InkImage& ink, std::vector<LongLine> lines) {
  std::sort(lines.begin(), lines.end(),
            [](const LongLine& a, const LongLine& b) { return a.Length() > b.Length(); });
  if (lines.size() > 8) lines.resize(8);
  std::vector<Slope> slopes;
  double length = 0;
  for (const LongLine& line : lines)
    if (const Slope slope = Follow(ink, line); slope.Length > 0.15 * ink.Width) {
      slopes.push_back(slope);
      length += slope.Length;
    }
  if (slopes.empty()) return {};
  std::sort(slopes.begin(), slopes.end(),
            [](const Slope& a, const Slope& b) { return a.Value < b.Value; });
  double sum = 0;
  for (const Slope& slope : slopes)
    if ((sum += slope.Length) * 2 >= length) return {slope.Value, length};
  return {};
}

/// The sum of the four longest.
double LongestLines(const InkImage& upright) {
  std::vector<LongLine> lines = LevelLines(upright);
  const std::vector<LongLine> across = LevelLines(Transposed(upright));
  lines.insert(lines.end(), across.begin(), across.end());
  std::sort(lines.begin(), lines.end(),
            [](const LongLine& a, const LongLine& b) { return a.Length() > b.Length(); });
  double sum = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(lines.size(), 4); ++i) sum += lines[i].Length();
  return sum;
}

}  // namespace

LineSet FindLongLines(const InkImage& upright) {
  return {LevelLines(upright), LevelLines(Transposed(upright))};
}

PageTurn FindTurn(const InkImage& ink, const PictureOperation& operation) {
  PageTurn turn{RoughAngle(ink, operation), 0};
  // Curves alone may look like lines that are turned: these must be longer than those there are.
  if (std::fabs(turn.Angle) > 0.15 * kDegree) {
    const double turned = LongestLines(Upright(ink, turn.Angle, 0));
    if (turned < 0.4 * std::min(ink.Width, ink.Height) || turned < 1.3 * LongestLines(ink))
      turn.Angle = 0;
  }
  for (int round = 0; round < 2 && !operation.Stopped; ++round) {
    const bool straight = turn.Angle == 0 && turn.Skew == 0;
    const InkImage upright = straight ? ink : Upright(ink, turn.Angle, turn.Skew);
    const InkImage across = Transposed(upright);
    const Slope level = MiddleSlope(upright, LevelLines(upright));
    const Slope lean = MiddleSlope(across, LevelLines(across));
    const double falls = std::atan(level.Value), leans = std::atan(lean.Value);
    if (level.Length > 0) {
      turn.Angle += falls;
      if (lean.Length > 0) turn.Skew += leans + falls;
    } else if (lean.Length > 0) {
      turn.Angle -= leans;
    }
    // Pixels of a drawing program are exact.
    if (straight && std::fabs(turn.Angle) < 0.012 * kDegree &&
        std::fabs(turn.Skew) < 0.03 * kDegree)
      return {};
    if (straight && round == 0 && std::fabs(turn.Angle) < 0.012 * kDegree) turn.Angle = 0;
  }
  if (std::fabs(turn.Skew) < 0.03 * kDegree) turn.Skew = 0;
  return turn;
}

}  // namespace graphize
