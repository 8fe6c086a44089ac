#include "grid/stroke_protection.h"

#include <algorithm>
#include <cstdlib>

#include "grid/hidden_strokes.h"
#include "grid/stroke_ends.h"
#include "grid/stroke_links.h"

namespace graphize {

namespace {

/// Whether an end can be roughness of the line's edge: low, short and where the line is drawn.
bool IsRoughness(const BitMap& map, const LineBand& band, const StrokeEnd& end, int height,
                 int length) {
  if (end.Height > height || end.Columns.Length() > length) return false;
  for (int x = end.Columns.First; x <= end.Columns.Last; ++x)
    if (!IsBlackIn(map, band, x)) return false;
  return true;
}

/// Whether the line is a little thicker here on both sides alike, as where a line of the other
/// direction has gone.
bool IsKnot(const GridLine& line, const StrokeEnd& end, const std::vector<StrokeEnd>& ends) {
  const auto isLow = [&](const StrokeEnd& low) {
    return low.Height == 1 && low.Columns.Length() <= line.Thickness + 4;
  };
  return isLow(end) && std::any_of(ends.begin(), ends.end(), [&](const StrokeEnd& other) {
           return other.Side != end.Side && isLow(other) &&
                  std::abs(other.Columns.First - end.Columns.First) <= 1 &&
                  std::abs(other.Columns.Last - end.Columns.Last) <= 1;
         });
}

/// What is black at `end`, at most `height` rows away from the band, and at none of `strokes`.
void AddPixelsOf(const BitMap& map, const LineBand& band, const StrokeEnd& end,
                 const std::vector<StrokeEnd>& strokes, int height, std::vector<MapPixel>& pixels) {
  for (int x = end.Columns.First; x <= end.Columns.Last; ++x) {
    const auto isStroke = [&](const StrokeEnd& stroke) {
      return &stroke != &end && stroke.Side == end.Side && stroke.Columns.Contains(x);
    };
    if (std::any_of(strokes.begin(), strokes.end(), isStroke)) continue;
    const int rows = BlackBeyond(map, band, end.Side, x, height);
    for (int row = 1; row <= rows; ++row) {
      const BlackRun beyond = band.RowsBeyond(end.Side, x, row);
      for (int y = beyond.Top; y <= beyond.Bottom; ++y)
        if (map.Get(x, y)) pixels.push_back({x, y});
    }
  }
}

void KeepLink(const StrokeEnd& a, const StrokeEnd& b, HiddenStrokes& hidden) {
  const bool inOrder = a.Columns.First <= b.Columns.First;
  const StrokeEnd& left = inOrder ? a : b;
  const StrokeEnd& right = inOrder ? b : a;
  if (left.Side == right.Side)
    hidden.KeepTouch(left, right);
  else
    hidden.KeepCrossing(left, right);
}

}  // namespace

std::vector<MapPixel> PixelsOfLineOnly(const BlackMap& black, const GridLine& line) {
  const BitMap& map = black.Bits;
  std::vector<MapPixel> pixels;
  const LineBand band = BandOf(line);
  std::vector<StrokeEnd> ends = FindStrokeEnds(map, band, BandSide::Above, black.Slope);
  const std::vector<StrokeEnd> below = FindStrokeEnds(map, band, BandSide::Below, black.Slope);
  ends.insert(ends.end(), below.begin(), below.end());
  // Roughness is the line's. What is a little too large for it may still turn out to be nothing
  // else, when it belongs to no stroke.
  const bool rough = line.Thickest > line.Thinnest;
  const int height = rough ? line.Thickest - line.Thinnest : 1;
  std::vector<StrokeEnd> strokes, bumps;
  for (const StrokeEnd& end : ends) {
    const bool isBump =
        IsRoughness(map, band, end, height, rough ? 6 : 4) || IsKnot(line, end, ends);
    (isBump ? bumps : strokes).push_back(end);
  }

  HiddenStrokes hidden(map, band);
  const StrokeLinks links = LinkStrokeEnds(map, band, line.Thickness, strokes);
  for (const StrokeLink& link : links.Links)
    KeepLink(strokes[link.Left], strokes[link.Right], hidden);
  for (std::size_t i = 0; i < strokes.size(); ++i) {
    const StrokeEnd& end = strokes[i];
    if (!links.IsLinked[i] && IsRoughness(map, band, end, 2, 8)) {
      AddPixelsOf(map, band, end, strokes, 2, pixels);
      continue;
    }
    hidden.KeepSunkenPart(end);
    if (links.IsLinked[i] || end.Height == 1) continue;
    if (!end.IsShallow()) hidden.KeepFoot(end);
    if (end.IsShallow() && end.LeftRun > 0) hidden.KeepSinking(end, -1, strokes);
    if (end.IsShallow() && end.RightRun > 0) hidden.KeepSinking(end, 1, strokes);
    if (end.IsShallow() || end.IsUpright) continue;
    // The other end of a lone steep stroke may be what was taken for roughness: a peak's tip.
    const auto tip = std::find_if(bumps.begin(), bumps.end(), [&](const StrokeEnd& bump) {
      return bump.Side != end.Side && Between(end, bump).Length() <= 1;
    });
    if (tip == bumps.end()) continue;
    KeepLink(end, *tip, hidden);
    bumps.erase(tip);
  }
  for (const StrokeEnd& bump : bumps) AddPixelsOf(map, band, bump, strokes, height, pixels);

  for (const Span& piece : line.Pieces) {
    for (int x = piece.First; x <= piece.Last; ++x) {
      const BlackRun& rows = band.At(x);
      for (int y = rows.Top; y <= rows.Bottom; ++y)
        if (map.Get(x, y) && !hidden.IsKept(x, y)) pixels.push_back({x, y});
    }
  }
  return pixels;
}

}  // namespace graphize
