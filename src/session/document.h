#pragma once

#include <tuple>
#include <utility>
#include <vector>

#include "session/array_change.h"
#include "workspace/workspace.h"

namespace graphize {

// The document: what Undo takes back. Not in it are options, what is read at the cursor, view and
// zoom, and the forms. The recipe's steps and the raster, which are too large to compare, come
// beside it.

/// The small records. A change of the first kPassingRecords alone is none that Undo stops at. The
/// last kPointNumbers go with the points.
inline auto RecordsOf(Workspace& ws) {
  PointStore& store = ws.store;
  CommandStates& commands = ws.commands;
  return std::tie(ws.mode, ws.window.AxisPanelShown, ws.plot.PersistentDrawing, ws.recipe.Number,
                  ws.recipe.Pictures, ws.recipe.SavedPoints, ws.recipe.Options, ws.dataFileName,
                  ws.dataFileTitle,
                  // what is worked on
                  ws.calibration, ws.axisPanel.Rows, ws.axisPanel.Angle, ws.axisPanel.Tips,
                  ws.axisPanel.Note, ws.picture, ws.map, ws.blockers, ws.plot.HasUndo,
                  ws.plot.SourceName, ws.colours, ws.window.Caption, ws.status.SizeX,
                  ws.status.SizeY, ws.curves.Curves, ws.curves.Active, commands.Data,
                  commands.Blockers, commands.Picture, commands.Graphize, commands.GridBuster,
                  store.CaptureCount, store.ListCount, store.ListIsCaptured, store.ListRows,
                  store.LastPixelX, store.LastPixelY, store.NPoints);
}
inline constexpr std::size_t kPassingRecords = 9;
inline constexpr std::size_t kPointNumbers = 7;

/// The points, with what lies behind their numbers.
template <class Store>
auto ArraysOf(Store& store) {
  return std::tie(store.CaptureX, store.CaptureY, store.CaptureId, store.ListX, store.ListY,
                  store.ListId, store.Places, store.Certainties, store.Rests);
}

template <class... Types>
std::tuple<Types...> CopyOfTie(const std::tuple<Types&...>& tie) {
  return tie;
}
using RecordCopies = decltype(CopyOfTie(RecordsOf(std::declval<Workspace&>())));
using ArrayCopies = decltype(CopyOfTie(ArraysOf(std::declval<PointStore&>())));

template <class... Types>
std::tuple<ArrayChange<Types>...> ChangesOf(const std::tuple<std::vector<Types>...>& arrays);
using ArrayChanges = decltype(ChangesOf(std::declval<ArrayCopies>()));

/// Calls visit(integral_constant<I>) for every element of the tuple.
template <class Tuple, class Visit>
void ForEachIn(Visit visit) {
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (visit(std::integral_constant<std::size_t, I>()), ...);
  }
  (std::make_index_sequence<std::tuple_size_v<Tuple>>());
}

}  // namespace graphize
