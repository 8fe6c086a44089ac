// The menu "Data".

#include "app/commands.h"
#include "base/translation.h"
#include "commands/data_commands.h"
#include "commands/ink_check_commands.h"
#include "commands/read_all_preview.h"

namespace graphize {

namespace {

using Kind = MenuEntry::Kind;

bool CanSort(const Workspace& ws) {
  return ws.commands.Sort;
}

const MenuEntry kMenu[] = {
    {.Is = Kind::Menu, .Name = "MNU_DATA", .Caption = Marked("&Data")},
    {.Is = Kind::SubMenu, .Name = "MNU_DATA_SORT", .Caption = Marked("&Sort"), .Can = CanSort},
    {.Name = "MNU_DATA_SORT_Asc",
     .Caption = Marked("&Ascending"),
     .Tip = Marked("Order the list by X, smallest first"),
     .Can = CanSort,
     .Run = Does<SortStep>},
    {.Name = "MNU_DATA_SORT_Dec",
     .Caption = Marked("&Descending"),
     .Tip = Marked("Order the list by X, largest first"),
     .Can = CanSort,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, SortStep{SortOrder::Descending}); }},
    kSeparator,
    {.Name = "MNU_DATA_SwapXY",
     .Caption = Marked("S&wap X-Y"),
     .Tip = Marked("Exchange X and Y in every row of the list"),
     .Can = [](const Workspace& ws) { return ws.commands.SwapXY; },
     .Run = Does<SwapStep>},
    {.Name = "MNU_DATA_CurveLenght",
     .Caption = Marked("&Curve length"),
     .Tip = Marked("Make the list the lengths between the captured points"),
     .Can = [](const Workspace& ws) { return ws.commands.CurveLength; },
     .Run = Does<CurveLengthStep>},
    {.Name = "MNU_DATA_integrate",
     .Caption = Marked("&Integrate..."),
     .Tip = Marked("The area under the captured points"),
     .Can = [](const Workspace& ws) { return ws.commands.Integrate; },
     .Run = [](Workspace& ws, const Desktop&) { ShowIntegrate(ws); }},
    {.Name = "MNU_Data_Sample",
     .Caption = Marked("&Resample..."),
     .Tip = Marked("More or fewer points, interpolated at even steps of X"),
     .Can = [](const Workspace& ws) { return ws.commands.Resample; },
     .Run = ShowSample},
    {.Name = "MNU_DATA_CheckInk",
     .Caption = Marked("Chec&k Points on Picture"),
     .Tip = Marked("Find points that lie on no ink, on the frame or between two strokes"),
     .Can = CanCheckPoints,
     .Run = [](Workspace& ws, const Desktop&) { AskForCheck(ws); }},
    {.Name = "MNU_DATA_ReadAll",
     .Caption = Marked("Read A&ll Curves..."),
     .Tip = Marked("Read the curves of every ink of the plot, each to a curve of its own"),
     .Can = CanReadAll,
     .Run = ShowReadAll},
    kSeparator,
    {.Name = "MNU_Data_XY2List",
     .Caption = Marked("&Graphized X Y (Undo)"),
     .Tip = Marked("Make the list the captured points again"),
     .Can = [](const Workspace& ws) { return ws.commands.ListUndo; },
     .Run = Does<UndoListStep>},
};

}  // namespace

std::span<const MenuEntry> DataMenu() {
  return kMenu;
}

}  // namespace graphize
