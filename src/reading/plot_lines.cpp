#include "reading/plot_lines.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "reading/ink_pieces.h"

namespace graphize {

namespace {

constexpr int kMostSections = 40;
constexpr double kLeastSide = 40;  // pixels of a plot; lines of a smaller one are not told
constexpr float kLeastShare = 0.06f;
constexpr float kSolid = 0.5f;

/// How much ink lies at each offset across the lines of a direction, by sections along them.
struct Profile {
  int First = 0;  // offset of the first bin
  std::vector<std::array<float, kMostSections>> Bins;
  int Sections = kMostSections;
  float SectionLength = 1;

  float SectionShare(int bin, int section) const {
    return Bins[static_cast<std::size_t>(bin)][static_cast<std::size_t>(section)] / SectionLength;
  }
  float Share(int bin) const {
    if (bin < 0 || bin >= static_cast<int>(Bins.size())) return 0;
    float sum = 0;
    for (int i = 0; i < Sections; ++i) sum += SectionShare(bin, i);
    return sum / static_cast<float>(Sections);
  }
};

struct Profiles {
  Profile Level, Upright;
};

Profiles ProfilesOf(const InkMap& map, const AxesFrame& frame, const PictureOperation& operation) {
  Profiles profiles;
  const auto prepare = [&](Profile& profile, double from, double to, double length) {
    profile.First = static_cast<int>(std::floor(from)) - 1;
    profile.Bins.resize(static_cast<std::size_t>(std::ceil(to - from) + 3));
    // Long enough for the dashes of a line.
    profile.Sections = std::clamp(static_cast<int>(length / 8), 1, kMostSections);
    profile.SectionLength = static_cast<float>(length / profile.Sections);
  };
  const double w = map.Width, h = map.Height;
  const std::array us = {frame.U(0, 0), frame.U(w, 0), frame.U(0, h), frame.U(w, h)};
  const std::array vs = {frame.V(0, 0), frame.V(w, 0), frame.V(0, h), frame.V(w, h)};
  prepare(profiles.Level, *std::min_element(vs.begin(), vs.end()),
          *std::max_element(vs.begin(), vs.end()), frame.Right - frame.Left);
  prepare(profiles.Upright, *std::min_element(us.begin(), us.end()),
          *std::max_element(us.begin(), us.end()), frame.Bottom - frame.Top);
  const auto add = [](Profile& profile, double across, double part, float share) {
    if (part < 0 || part >= 1) return;
    const auto bin = static_cast<std::size_t>(std::lround(across) - profile.First);
    profile.Bins[bin][static_cast<std::size_t>(part * profile.Sections)] += share;
  };
  for (int y = 0; y < map.Height && !operation.Stopped; ++y) {
    for (int x = 0; x < map.Width; ++x) {
      const auto share = static_cast<float>(map.Share(x, y));
      if (share <= 0) continue;
      const double u = frame.U(x, y), v = frame.V(x, y);
      add(profiles.Level, v, (u - frame.Left) / (frame.Right - frame.Left), share);
      add(profiles.Upright, u, (v - frame.Top) / (frame.Bottom - frame.Top), share);
    }
  }
  return profiles;
}

/// A bin of a line, and how evenly its ink lies.
struct LineBin {
  float Share = 0;
  bool IsEven = false;
};

/// For every bin, the line that it belongs to.
std::vector<std::optional<LineBin>> LinesIn(const Profile& profile) {
  const int count = static_cast<int>(profile.Bins.size());
  std::vector<float> shares;
  for (int bin = 0; bin < count; ++bin) shares.push_back(profile.Share(bin));
  const auto share = [&](int bin) {
    return bin < 0 || bin >= count ? 0 : shares[static_cast<std::size_t>(bin)];
  };
  std::vector<std::optional<LineBin>> lines(static_cast<std::size_t>(count));
  for (int bin = 0; bin < count; ++bin) {
    const float here = share(bin);
    if (here < kLeastShare) continue;
    float before = here, behind = here;
    for (int i = 1; i <= 9; ++i) {
      before = std::min(before, share(bin - i));
      behind = std::min(behind, share(bin + i));
    }
    if (here - std::max(before, behind) < 0.75f * here) continue;
    int present = 0, even = 0;
    const auto isPresent = [&](int i) { return profile.SectionShare(bin, i) > 0.4f * here; };
    for (int i = 0; i < profile.Sections; ++i) {
      present += isPresent(i) ? 1 : 0;
      even += std::fabs(profile.SectionShare(bin, i) - here) < 0.25f * here ? 1 : 0;
    }
    // From side to side: a level curve seldom begins and ends on the frame.
    if (!isPresent(0) || !isPresent(profile.Sections - 1)) continue;
    const int needed = here < 0.16f ? 90 : 80, all = 100 * profile.Sections;
    if (100 * 100 * present >= needed * all)
      lines[static_cast<std::size_t>(bin)] = LineBin{here, 100 * even >= 85 * profile.Sections};
  }
  return lines;
}

/// The outermost solid line on one side of the click (`towards` is -1 or 1): a side of the frame,
/// unless lines across go on beyond it.
std::optional<int> SideOf(const std::vector<std::optional<LineBin>>& lines, int click, int towards,
                          const auto& goesOnBeyond) {
  const int count = static_cast<int>(lines.size());
  const auto isLine = [&](int bin) {
    return bin >= 0 && bin < count && lines[static_cast<std::size_t>(bin)];
  };
  for (int bin = towards < 0 ? 0 : count - 1;
       bin >= 0 && bin < count && (click - bin) * towards <= 0; bin -= towards) {
    const auto& line = lines[static_cast<std::size_t>(bin)];
    if (!line || line->Share < kSolid) continue;
    if (goesOnBeyond(bin)) return std::nullopt;
    // Its inner edge.
    while (isLine(bin - towards)) bin -= towards;
    return bin;
  }
  return std::nullopt;
}

/// Whether what lies along a level line is a curve that leaves it and comes back, as a spectrum
/// does its base: where the line is interrupted, ink leads away from both ends of the gap, to one
/// side only. What crosses a line does so on both sides.
bool IsBaseOfCurve(const InkMap& map, const AxesFrame& frame, int offset) {
  constexpr int kLeast = 5, kEnd = 3;  // pixels of a gap, and of what leads away from its ends
  const auto share = [&](int u, int v) {
    return map.Share(static_cast<int>(std::lround(frame.X(u, v))),
                     static_cast<int>(std::lround(frame.Y(u, v))));
  };
  const auto isOn = [&](int u) {
    return std::max({share(u, offset - 1), share(u, offset), share(u, offset + 1)}) > 0.3;
  };
  const auto leads = [&](int u, int side) {  // away, within the next pixels
    for (int along = -kEnd; along <= kEnd; ++along)
      for (int away = 3; away <= 6; ++away)
        if (share(u + along, offset + side * away) > 0.3) return true;
    return false;
  };
  const int left = static_cast<int>(std::ceil(frame.Left)) + 1,
            right = static_cast<int>(frame.Right) - 1;
  int before = right;  // the last place on the line; none yet
  for (int u = left; u <= right; ++u) {
    if (!isOn(u)) continue;
    if (u - before > kLeast)
      for (const int side : {-1, 1})
        if (leads(before, side) && leads(u, side) && !leads(before, -side) && !leads(u, -side))
          return true;
    before = u;
  }
  return false;
}

/// Drops the lines that are a curve's own, all bins of each.
void DropBasesOfCurves(const InkMap& map, const AxesFrame& frame, int firstBin,
                       std::vector<std::optional<LineBin>>& lines) {
  const int count = static_cast<int>(lines.size());
  for (int bin = 0; bin < count; ++bin) {
    if (!lines[static_cast<std::size_t>(bin)]) continue;
    int end = bin, fullest = bin;
    for (; end < count && lines[static_cast<std::size_t>(end)]; ++end)
      if (lines[static_cast<std::size_t>(end)]->Share >
          lines[static_cast<std::size_t>(fullest)]->Share)
        fullest = end;
    if (lines[static_cast<std::size_t>(fullest)]->Share >= kSolid &&
        IsBaseOfCurve(map, frame, firstBin + fullest))
      std::fill(lines.begin() + bin, lines.begin() + end, std::nullopt);
    bin = end;
  }
}

/// What is left of a pixel's ink without the line that it lies on.
void TakeOut(const std::vector<std::optional<LineBin>>& lines, const Profile& profile,
             double across, std::uint8_t& value) {
  const auto& line = lines[static_cast<std::size_t>(std::lround(across) - profile.First)];
  if (!line || value == InkMap::kWall) return;
  if (value > InkMap::kFull || line->Share >= 0.4f || !line->IsEven) {
    value = InkMap::kHidden;
    return;
  }
  const float share = static_cast<float>(value) / InkMap::kFull;
  value = static_cast<std::uint8_t>(std::lround(
      std::clamp((share - line->Share) / (1 - line->Share), 0.0f, 1.0f) * InkMap::kFull));
}

}  // namespace

std::vector<PlotLine> TakeOutLines(InkMap& map, const AxesFrame& frame, double x, double y,
                                   const PictureOperation& operation) {
  std::vector<PlotLine> found;
  if (frame.Right - frame.Left < kLeastSide || frame.Bottom - frame.Top < kLeastSide) return found;
  const Profiles profiles = ProfilesOf(map, frame, operation);
  auto level = LinesIn(profiles.Level);
  const auto upright = LinesIn(profiles.Upright);
  DropBasesOfCurves(map, frame, profiles.Level.First, level);
  const auto note = [&](const auto& lines, const Profile& profile, bool isLevel) {
    for (std::size_t i = 0; i < lines.size(); ++i)
      if (lines[i])
        found.push_back({isLevel, profile.First + static_cast<int>(i), lines[i]->Share});
  };
  note(level, profiles.Level, true);
  note(upright, profiles.Upright, false);

  // Whether a solid line across goes on for 26 pixels: ticks are shorter, and numbers do not touch.
  const auto goesOn = [&](bool isLevel, int offset, int towards) {
    return std::any_of(found.begin(), found.end(), [&](const PlotLine& line) {
      if (line.IsLevel == isLevel || line.Share < kSolid) return false;
      int without = 0;
      for (int beyond = 2; beyond <= 26; ++beyond) {
        const double along = offset + towards * beyond, across = line.Offset;
        const double u = isLevel ? across : along, v = isLevel ? along : across;
        const double share = map.Share(static_cast<int>(std::lround(frame.X(u, v))),
                                       static_cast<int>(std::lround(frame.Y(u, v))));
        without += share < 0.3 ? 1 : 0;
      }
      return without <= 2;
    });
  };
  const double clickU = frame.U(x, y), clickV = frame.V(x, y);
  const auto side = [&](bool isLevel, int towards) -> std::optional<int> {
    const Profile& profile = isLevel ? profiles.Level : profiles.Upright;
    const int click = static_cast<int>(std::lround(isLevel ? clickV : clickU)) - profile.First;
    const auto bin = SideOf(isLevel ? level : upright, click, towards,
                            [&](int at) { return goesOn(isLevel, profile.First + at, towards); });
    return bin ? std::optional(profile.First + *bin) : std::nullopt;
  };
  const auto top = side(true, -1), bottom = side(true, 1);
  const auto left = side(false, -1), right = side(false, 1);
  if (found.empty()) return found;

  for (int row = 0; row < map.Height && !operation.Stopped; ++row) {
    for (int column = 0; column < map.Width; ++column) {
      const double u = frame.U(column, row), v = frame.V(column, row);
      std::uint8_t& value = map.Cell(column, row);
      if ((top && v < *top + 1.5) || (bottom && v > *bottom - 1.5) || (left && u < *left + 1.5) ||
          (right && u > *right - 1.5)) {
        value = InkMap::kWall;
        continue;
      }
      if (value == 0 || value == InkMap::kHidden) continue;
      TakeOut(level, profiles.Level, v, value);
      TakeOut(upright, profiles.Upright, u, value);
    }
  }
  return found;
}

bool IsOnFrame(const InkMap& map, const std::vector<PlotLine>& lines, const AxesFrame& frame,
               double x, double y, int reach) {
  constexpr double kOn = 2, kBlur = 2.5;  // pixels; soft and compressed lines are wider than told
  constexpr double kAside = 3;
  constexpr int kLongestTick = 15;
  const auto isOutermost = [&](const PlotLine& line) {
    int least = line.Offset, most = line.Offset;
    for (const PlotLine& other : lines)
      if (other.IsLevel == line.IsLevel && other.Share >= kSolid) {
        least = std::min(least, other.Offset);
        most = std::max(most, other.Offset);
      }
    const auto isNear = [&](double at) { return std::fabs(line.Offset - at) <= kAside; };
    return isNear(least) || isNear(most) || isNear(line.IsLevel ? frame.Top : frame.Left) ||
           isNear(line.IsLevel ? frame.Bottom : frame.Right);
  };
  const auto across = [&](const PlotLine& line, double column, double row) {
    return std::fabs((line.IsLevel ? frame.V(column, row) : frame.U(column, row)) - line.Offset);
  };
  const double u = frame.U(x, y), v = frame.V(x, y);
  const auto isOn = [&](const PlotLine& line) {
    const bool isBeside = line.IsLevel ? u >= frame.Left - kAside && u <= frame.Right + kAside
                                       : v >= frame.Top - kAside && v <= frame.Bottom + kAside;
    return line.Share >= kSolid && isBeside && across(line, x, y) <= kOn && isOutermost(line);
  };
  const auto line = std::find_if(lines.begin(), lines.end(), isOn);
  if (line == lines.end()) return false;
  const int cx = static_cast<int>(std::lround(x)), cy = static_cast<int>(std::lround(y));
  for (int row = cy - reach; row <= cy + reach; ++row)
    for (int column = cx - reach; column <= cx + reach; ++column)
      if (map.Share(column, row) >= 0.3 && std::hypot(column - x, row - y) <= reach &&
          across(*line, column, row) > kBlur && !PieceAt(map, {column, row}, kLongestTick))
        return false;
  return true;
}

}  // namespace graphize
