#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/palette.h"
#include "capture/point_store.h"

namespace graphize {

/// A list of points with a name, and with a colour for its marks on the picture.
struct Curve {
  std::string Name;  // one line, not empty, unique
  Colour MarkColour = kBlack;
  bool Shown = true;
  // Null for the active curve, whose points are the PointStore that everything works on. Never
  // changed: whoever holds it has the curve as it was.
  std::shared_ptr<const PointStore> Points;

  bool operator==(const Curve&) const = default;
};

/// The colours of new curves, in this order: told apart also by the colour-blind, on any ground by
/// their marks' edges. (Okabe and Ito, "Color Universal Design", 2008, without black.)
inline constexpr Colour kCurveColours[] = {MakeColour(213, 94, 0),    MakeColour(0, 114, 178),
                                           MakeColour(0, 158, 115),   MakeColour(230, 159, 0),
                                           MakeColour(204, 121, 167), MakeColour(86, 180, 233),
                                           MakeColour(240, 228, 66)};
inline constexpr int kMostCurves = 1000;
inline constexpr std::size_t kLongestCurveName = 200;  // bytes

/// The curves of a document, at least one. With one alone nothing but its name is seen of this.
struct CurveList {
  std::vector<Curve> Curves = {{.Name = "curve 1", .MarkColour = kCurveColours[0]}};
  int Active = 0;  // the one that is worked on

  // What the active curve was when it became so: put away unchanged, it takes no new memory.
  std::shared_ptr<const PointStore> Origin;
  // What was active before, when another curve became so, for the history to take.
  std::shared_ptr<const PointStore> Left;
};

inline Curve& ActiveCurve(CurveList& list) {
  return list.Curves[list.Active];
}
inline const Curve& ActiveCurve(const CurveList& list) {
  return list.Curves[list.Active];
}

/// What was typed as a name, without blanks around it.
std::string CurveNameOf(std::string_view typed);
/// Why a curve cannot have this name, in plain words; empty when it can. `current` is the curve
/// that may have it already, -1: none.
std::string CurveNameFault(const CurveList& list, std::string_view name, int current = -1);
/// "curve 2", or the next number that is free.
std::string FreeCurveName(const CurveList& list);
/// The curve of this name; -1: there is none.
int FindCurve(const CurveList& list, std::string_view name);

/// The points of any curve; `active` are those of the active one.
const PointStore& PointsOf(const CurveList& list, const PointStore& active, int curve);

/// Changes the points of every curve that has been given any.
void ChangePoints(CurveList& list, PointStore& active,
                  const std::function<void(PointStore& points, std::size_t curve)>& change);

/// Another curve becomes the active one. What is under the cursor stays.
void SelectCurve(CurveList& list, PointStore& active, int curve);
/// An empty curve comes behind the others and becomes the active one.
void AddCurve(CurveList& list, PointStore& active, const std::string& name);
/// The active curve goes, and the one behind it becomes active; of the last one, that before it.
/// Never the only one.
void DeleteCurve(CurveList& list, PointStore& active);
/// One empty curve, as at the start.
void ResetCurves(CurveList& list, PointStore& active);

/// These curves take the place of all; each has its points, also the one that becomes active.
void ReplaceCurves(CurveList& list, PointStore& active, std::vector<Curve> curves, int activeCurve);

/// The active curve's points become these, beside what is under the cursor. Returns what they were.
std::shared_ptr<const PointStore> ExchangePoints(CurveList& list, PointStore& active,
                                                 std::shared_ptr<const PointStore> points);

/// The curves with points that no data file holds as they are.
std::vector<int> UnsavedCurves(const CurveList& list, const PointStore& active);
/// Whether any curve has captured points or rows in its list.
bool AnyPoints(const CurveList& list, const PointStore& active);

}  // namespace graphize
