#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "capture/list_page.h"
#include "capture/point_set.h"
#include "desktop/command_states.h"
#include "desktop/desktop.h"

namespace graphize {

/// Where a point was captured: a picture position, row downward, between pixels where a tracer or a
/// scan found it there.
struct Place {
  float Column = 0, Row = 0;

  bool operator==(const Place&) const = default;
};
/// The place of a point whose picture is no longer there.
inline constexpr Place kNoPlace = {-std::numeric_limits<float>::infinity(),
                                   -std::numeric_limits<float>::infinity()};

/// A place in double precision, as readings measure it.
struct RealPlace {
  double Column = 0, Row = 0;

  bool operator==(const RealPlace&) const = default;
};
/// What single precision leaves of such a place, to be added.
struct PlaceRest {
  double Columns = 0, Rows = 0;

  bool operator==(const PlaceRest&) const = default;
};

/// How well a point is known that was read off a stroke.
struct Certainty {
  // Across the stroke and one standard uncertainty long: pixels, rows downward. Without length
  // where nothing is known.
  float AcrossColumns = 0, AcrossRows = 0;
  std::uint32_t IsBridged = 0;  // 1: the stroke is not seen there; as long as a float, no padding

  bool IsKnown() const { return AcrossColumns != 0 || AcrossRows != 0; }
  bool operator==(const Certainty&) const = default;
};

/// The captured points, twice: in capture order and as the data list that is sorted, swapped,
/// thinned and saved. Arrays are used from index 1; element 0 stays (0, 0). The ids move as the
/// values do.
struct PointStore {
  /// What the list's rows are: places in the graph, such places with X and Y exchanged, or neither
  /// (lengths, or points added to exchanged ones).
  enum class Rows { Places, SwappedPlaces, Other };

  std::vector<float> CaptureX = std::vector<float>(501);
  std::vector<float> CaptureY = std::vector<float>(501);
  std::vector<PointId> CaptureId = std::vector<PointId>(501);
  std::int16_t CaptureCount = 0;
  std::vector<float> ListX = std::vector<float>(501);
  std::vector<float> ListY = std::vector<float>(501);
  std::vector<PointId> ListId = std::vector<PointId>(501);
  std::int16_t ListCount = 0;
  std::int16_t MaxPoints = 32767;
  bool ListIsCaptured = true;  // the list's rows are captured points (not lengths, not resampled)
  Rows ListRows = Rows::Places;

  std::vector<Place> Places = std::vector<Place>(1);  // of each id
  std::vector<Certainty> Certainties;                 // of each id, as far as any is known
  std::vector<PlaceRest> Rests;                       // of each id, as far as any place has one

  /// The points as they were when the data file was last written; element 0 left out.
  struct Points {
    std::vector<float> CaptureX, CaptureY, ListX, ListY;
  };
  // One for all states of a curve that Undo knows: what lies on the disk is not taken back.
  std::shared_ptr<Points> Saved = std::make_shared<Points>();

  float CurrentX = 0, CurrentY = 0;                   // graph values under the cursor
  Place CurrentPlace;                                 // the cursor itself
  std::int16_t CurrentPixelX = 0, CurrentPixelY = 0;  // pixel under the cursor, row upward
  std::int16_t LastPixelX = 0, LastPixelY = 0;        // pixel of the last appended point

  ListPage Page;    // what the data list panel shows
  int NPoints = 0;  // the number in the label npts
};

/// Points found one after the other, to be captured together.
struct FoundPoints {
  std::vector<Place> Places;
  std::vector<float> X, Y;  // their graph values, as far as they have been read
};

/// How many points may still be appended.
int RoomFor(const PointStore& store);
/// Appends the current point. UpdateLabel shows the new list tail and the count at once. True when
/// the store is full: nothing was stored and a message says so.
bool AddPoint(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel);
/// The same for a pair of graph values.
bool AddValuePoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
                   bool UpdateLabel, float X, float Y);

/// The same for the first `count` of found points, which the cursor has just come along; all or
/// none.
bool AddPoints(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel,
               const FoundPoints& points, std::size_t count);

/// Empties the store; with Ask only after the user's Yes to a question, which ends with `note`.
/// False when the user said no. The caller redraws the plot.
bool DeleteAllData(PointStore& store, CommandStates& commands, const Desktop& desktop, bool Ask,
                   const std::string& note = {});

/// The data file holds the points as they are.
void NoteSaved(const PointStore& store);
/// Whether there are captured points or list rows, and any of them, or their order, is not as it
/// was saved.
bool HasUnsaved(const PointStore& store);

void EnableDataCommands(CommandStates& commands, bool State);
void EnableBlockerCommands(CommandStates& commands, bool State);

/// Whether the point can be found on the picture.
inline bool HasPlace(const PointStore& store, PointId id) {
  return id != 0 && id < store.Places.size() && store.Places[id] != kNoPlace;
}
/// What is known of a point, and how it is told; what is not told is not known.
inline Certainty CertaintyOf(const PointStore& store, PointId id) {
  return id < store.Certainties.size() ? store.Certainties[id] : Certainty();
}
void NoteCertainty(PointStore& store, PointId id, const Certainty& certainty);
/// The place of a point that has one, to the last bit, and the way to give it another.
RealPlace RealPlaceOf(const PointStore& store, PointId id);
void SetPlace(PointStore& store, PointId id, const RealPlace& place);

/// The last captured point's place is the pixel of its marker again, after places have changed.
void FollowLastPoint(PointStore& store, int pictureHeight);

/// The page at its scroll position, its newest rows, and an empty page.
void ShowPage(PointStore& store);
void ShowNewest(PointStore& store);
void ClearList(PointStore& store);

}  // namespace graphize
