#include "finding_axes/page_match.h"

#include <algorithm>
#include <cmath>

#include "finding_axes/long_lines.h"

namespace graphize {

namespace {

/// How far from a line's place its part of a profile reaches, pixels.
constexpr int kSoft = 3;
constexpr double kLeastScale = 0.945, kMostScale = 1.055, kScaleStep = 0.0015;

/// Each place's share is spread over its neighbours, less with their distance.
std::vector<float> Softened(const std::vector<float>& profile) {
  std::vector<float> soft(profile.size());
  const int count = static_cast<int>(profile.size());
  for (int i = 0; i < count; ++i)
    for (int d = -kSoft + 1; d < kSoft; ++d)
      if (i + d >= 0 && i + d < count)
        soft[i + d] += profile[i] * (1 - static_cast<float>(std::abs(d)) / kSoft);
  return soft;
}

/// The share of each row that lies in long runs of ink; gaps of two pixels do not end a run.
std::vector<float> RunsAlong(const InkImage& ink, bool columns) {
  const int rows = columns ? ink.Width : ink.Height, length = columns ? ink.Height : ink.Width;
  const std::ptrdiff_t step = columns ? ink.Width : 1;
  const int shortest = std::clamp(std::min(ink.Width, ink.Height) / 20, 20, 60);
  std::vector<float> shares(rows);
  for (int row = 0; row < rows; ++row) {
    const std::uint8_t* at = ink.Values.data() + (columns ? row : std::ptrdiff_t{row} * ink.Width);
    int run = 0, gap = 0, sum = 0;
    for (int i = 0; i < length; ++i, at += step) {
      if (*at >= ink.Weak) {
        run += gap + 1;
        gap = 0;
      } else if (run > 0 && ++gap > 2) {
        if (run >= shortest) sum += run;
        run = gap = 0;
      }
    }
    if (run >= shortest) sum += run;
    shares[row] = static_cast<float>(sum) / static_cast<float>(length);
  }
  return Softened(shares);
}

struct Spike {
  double Place;  // from the middle
  float Share;
};

/// The few places of a profile that hold most of it.
std::vector<Spike> SpikesOf(const std::vector<float>& profile) {
  const float most = profile.empty() ? 0 : *std::max_element(profile.begin(), profile.end());
  const double middle = 0.5 * static_cast<double>(profile.size() - 1);
  std::vector<Spike> spikes;
  for (std::size_t i = 0; i < profile.size(); ++i)
    if (profile[i] > 0.1f * most) spikes.push_back({static_cast<double>(i) - middle, profile[i]});
  return spikes;
}

double LengthOf(const std::vector<float>& profile) {
  double sum = 0;
  for (const float value : profile) sum += static_cast<double>(value) * value;
  return std::sqrt(sum);
}

struct Shift {
  int By = 0;
  double Score = 0;
};

/// The best shifts of the profile `to` against the spikes, whose distances grow by `scale`.
std::vector<Shift> BestShifts(const std::vector<Spike>& spikes, const std::vector<float>& to,
                              double scale, double length) {
  constexpr std::size_t kMost = 3;
  const int size = static_cast<int>(to.size()), reach = std::max(size / 4, 100);
  const double middle = 0.5 * (size - 1);
  std::vector<double> scores(2 * reach + 1);
  for (const Spike& spike : spikes) {
    const int place = static_cast<int>(std::lround(middle + scale * spike.Place));
    const int first = std::max(-reach, -place), last = std::min(reach, size - 1 - place);
    for (int by = first; by <= last; ++by) scores[by + reach] += spike.Share * to[place + by];
  }
  std::vector<Shift> best;
  for (int i = 0; i < static_cast<int>(scores.size()); ++i) {
    const bool falls = (i > 0 && scores[i - 1] > scores[i]) ||
                       (i + 1 < static_cast<int>(scores.size()) && scores[i + 1] >= scores[i]);
    if (scores[i] > 0 && !falls) best.push_back({i - reach, scores[i] / length});
  }
  const auto better = [](const Shift& a, const Shift& b) { return a.Score > b.Score; };
  std::sort(best.begin(), best.end(), better);
  if (best.size() > kMost) best.resize(kMost);
  return best;
}

}  // namespace

UprightPage UprightPageOf(const Raster& picture, PictureOperation& operation) {
  UprightPage page;
  page.Ink = InkOf(picture, operation);
  if (operation.Stopped || page.Ink.Values.empty()) return {};
  const PageTurn turn = FindTurn(page.Ink, operation);
  if (operation.Stopped) return {};
  if (turn.Angle != 0) {
    page.Upright = Upright(page.Ink, turn.Angle, 0);
    page.ToInk = Then(page.Upright.ToPicture, Inverse(page.Ink.ToPicture));
  } else {
    page.Upright = page.Ink;
  }
  page.Rows = RunsAlong(page.Upright, false);
  page.Columns = RunsAlong(page.Upright, true);
  return page;
}

std::vector<PageMatch> MatchPages(const UprightPage& from, const UprightPage& to) {
  const std::vector<Spike> rows = SpikesOf(from.Rows), columns = SpikesOf(from.Columns);
  const double rowLength = LengthOf(from.Rows) * LengthOf(to.Rows);
  const double columnLength = LengthOf(from.Columns) * LengthOf(to.Columns);
  std::vector<PageMatch> matches;
  if (!(rowLength > 0 && columnLength > 0)) return matches;
  struct Way {
    double Scale;
    int X, Y;
    double Score;
  };
  std::vector<Way> ways;
  // Pages of different size may be reduced by different factors.
  const double unit = from.Ink.Scale / to.Ink.Scale;
  for (double scale = kLeastScale; scale <= kMostScale; scale += kScaleStep)
    for (const Shift& y : BestShifts(rows, to.Rows, unit * scale, rowLength))
      for (const Shift& x : BestShifts(columns, to.Columns, unit * scale, columnLength))
        ways.push_back({unit * scale, x.By, y.By, x.Score + y.Score});
  std::sort(ways.begin(), ways.end(), [](const Way& a, const Way& b) { return a.Score > b.Score; });
  constexpr std::size_t kMost = 8;
  std::vector<Way> taken;
  const double side = std::max(to.Upright.Width, to.Upright.Height);
  for (const Way& way : ways) {
    const auto isSame = [&](const Way& other) {
      return std::hypot(way.X - other.X, way.Y - other.Y) +
                 0.5 * side * std::fabs(way.Scale - other.Scale) <
             6;
    };
    if (taken.size() == kMost || way.Score < 0.6 * ways.front().Score) break;
    if (std::none_of(taken.begin(), taken.end(), isSame)) taken.push_back(way);
  }
  const auto middle = [](int size) { return 0.5 * (size - 1); };
  for (const Way& way : taken) {
    const AffineMap map =
        Turned(1, 0, way.Scale, way.Scale, middle(from.Upright.Width), middle(from.Upright.Height),
               middle(to.Upright.Width) + way.X, middle(to.Upright.Height) + way.Y);
    matches.push_back({Then(Then(Inverse(from.ToInk), map), to.ToInk), way.Score});
  }
  return matches;
}

}  // namespace graphize
