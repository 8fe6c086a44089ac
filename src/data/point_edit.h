#pragma once

#include <optional>
#include <string>
#include <vector>

#include "calibration/transform.h"
#include "capture/point_set.h"
#include "capture/point_store.h"

namespace graphize {

// Points corrected on the picture. All of it is about the points that the list has: a point may
// have more than one row, a row need not be a point, and the captured points follow by their ids.

/// A rectangle of picture pixels with its edges, row downward.
struct PlaceArea {
  float Left = 0, Top = 0, Right = 0, Bottom = 0;
};

/// The point nearest to `at`, no further than `reach` pixels; of equally near ones that of the last
/// row.
std::optional<PointId> NearestPoint(const PointStore& store, Place at, float reach);
/// Those within the area, those of the rows `first` to `last`, and all.
PointSet PointsWithin(const PointStore& store, const PlaceArea& area);
PointSet PointsOfRows(const PointStore& store, int first, int last);
PointSet AllPoints(const PointStore& store);
/// The smallest area that holds these points' places; nothing without any.
std::optional<PlaceArea> AreaOf(const PointStore& store, const PointSet& points);

/// The first row of a point, 0 without one.
int RowOf(const PointStore& store, PointId id);
/// Selects points: the lines of the list show it. Rows that follow each other are the list's own
/// selection, too.
void SelectPoints(PointStore& store, PointSet points);

/// Why none of it can be, in plain words; empty where it was done. `height` of the picture.
///
/// Moves points by so many pixels, row downward. A place is counted in decimals, so that ten times
/// a tenth is one. The values are what Pixels2Real reads at the new places.
std::string MovePoints(PointStore& store, const AxisCalibration& calibration, int width, int height,
                       const PointSet& points, float columns, float rows);
/// Every row of these points, and the captured points themselves, go.
std::string DeletePoints(PointStore& store, CommandStates& commands, const PointSet& points,
                         int height);

/// Values that points are to get: of each id; absent where a point stays as it is.
using NewValues = std::vector<std::optional<GraphValues>>;

/// What Pixels2Real reads at the places of all points that are captured.
NewValues ValuesOfPlaces(const PointStore& store, const AxisCalibration& calibration, int height);
/// Points to which the axes give no number.
int CountWithoutValue(const NewValues& values);
/// Gives points their values, in the list and among the captured ones. A row with X and Y exchanged
/// keeps them so.
void TakeValues(PointStore& store, const NewValues& values);
/// Captured points whose values would be others then, bit by bit.
int CountOthers(const PointStore& store, const NewValues& values);
/// Rows of the list that lie at no place: lengths, resampled ones, those of another picture.
int RowsWithoutPlace(const PointStore& store);

}  // namespace graphize
