#include "app/commands.h"

#include "session/project_commands.h"
#include "workspace/black_white_commands.h"
#include "workspace/capture_commands.h"
#include "workspace/data_commands.h"
#include "workspace/do.h"
#include "workspace/export_points.h"
#include "workspace/extraction_commands.h"
#include "workspace/help_commands.h"
#include "workspace/image_tools_commands.h"
#include "workspace/ink_check_commands.h"
#include "workspace/next_step.h"
#include "workspace/options_commands.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/point_edit_commands.h"
#include "workspace/recipe_file.h"
#include "workspace/save_points.h"
#include "workspace/scan_commands.h"
#include "workspace/system_programs.h"
#include "workspace/toolbar.h"
#include "workspace/view_commands.h"

namespace graphize {

namespace {

using Kind = MenuEntry::Kind;

constexpr MenuEntry kSeparator{.Is = Kind::Separator};

/// A menu entry that asks for one step.
template <class Asked>
void Does(Workspace& ws, const Desktop& desktop) {
  Do(ws, desktop, Asked{});
}

bool HasData(const Workspace& ws) {
  return ws.commands.Data;
}

bool CanSort(const Workspace& ws) {
  return ws.commands.Sort;
}

template <Mode mode>
bool CanEnter(const Workspace& ws) {
  return CanPress(ws, ModeKey(mode));
}

template <Mode mode>
void Enter(Workspace& ws, const Desktop& desktop) {
  Toolbar_ButtonClick(ws, desktop, ModeKey(mode));
}

template <Mode mode>
bool IsIn(const Workspace& ws) {
  return IsPressed(ws, ModeKey(mode));
}

/// While points are edited, the selected ones go as points; else the rows of the list's selection.
bool CanClear(const Workspace& ws) {
  return ws.mode == Mode::EditPoints ? HasSelectedPoints(ws) : ws.commands.ClearSelected;
}

void Clear(Workspace& ws, const Desktop& desktop) {
  if (ws.mode == Mode::EditPoints) return DeleteSelectedPoints(ws, desktop);
  Do(ws, desktop, SelectedRows(ws.store));
}

bool CanEditPoints(const Workspace& ws) {
  return ws.mode == Mode::EditPoints ||
         (CanPress(ws, ModeKey(Mode::EditPoints)) && ws.store.CaptureCount > 0);
}

void SwitchEditPoints(Workspace& ws, const Desktop& desktop) {
  ws.mode == Mode::EditPoints ? ReleaseButtons(ws, desktop) : Enter<Mode::EditPoints>(ws, desktop);
}

const MenuEntry kMenus[] = {
    {.Is = Kind::Menu, .Name = "MNU_File", .Caption = "&File"},
    {.Name = "MNU_FileOpen",
     .Caption = "&Open Image...",
     .Key = "Ctrl+Shift+O",
     .Tip = "Open a picture of a graph",
     .Run = OpenImage},
    {.Name = "MNU_FileOpenOther",
     .Caption = "Open O&ther Picture...",
     .Key = "Ctrl+O",
     .Tip = "Open a picture of any type that can be read",
     .Run = OpenOtherPicture},
    {.Name = "MNU_FileReload",
     .Caption = "Reloa&d Image",
     .Key = "F5",
     .Tip = "Read the picture's file again; points and axes stay",
     .Can = CanReload,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, ReloadStep{.Ask = true}); }},
    {.Name = "MNU_FILE_SaveImage",
     .Caption = "Save &Image As...",
     .Key = "Ctrl+Shift+S",
     .Tip = "Write the picture to an image file",
     .Can = CanSaveImage,
     .Run = SaveImageAs},
    kSeparator,
    {.Name = "MNU_FileSave",
     .Caption = "&Save Data...",
     .Key = "Ctrl+S",
     .Tip = "Write the data list to a data file",
     .Can = CanSavePoints,
     .Run = [](Workspace& ws, const Desktop& desktop) { SavePoints(ws, desktop); }},
    {.Is = Kind::Check,
     .Name = "MNU_FileSaveErrors",
     .Caption = "Save With &Errors",
     .Tip = "Data files get two more columns: the size of one pixel in X and in Y",
     .Run = [](Workspace& ws, const Desktop&) { ToggleSaveErrors(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.SaveErrors; }},
    {.Name = "MNU_FILE_Export",
     .Caption = "Ex&port...",
     .Tip = "Write points as CSV or JSON, with all their digits",
     .Can = CanExport,
     .Run = ShowExport},
    {.Name = "MNU_FileSaveRecipe",
     .Caption = "Save &Recipe...",
     .Tip = "Write down every step, so that they can be done again",
     .Can = CanSaveRecipe,
     .Run = SaveRecipe},
    kSeparator,
    {.Name = "MNU_FILE_OpenProject",
     .Caption = "Open Pro&ject...",
     .Key = "Ctrl+Alt+O",
     .Tip = "Go on with work that was saved as a project",
     .Run = [](Workspace& ws, const Desktop& desktop) { OpenProject(ws, desktop); }},
    {.Name = "MNU_FILE_SaveProject",
     .Caption = "Sa&ve Project...",
     .Key = "Ctrl+Alt+S",
     .Tip = "Write picture, axes, points and steps to one file",
     .Can = CanSaveProject,
     .Run = SaveProject},
    {.Is = Kind::SubMenu, .Name = "MNU_FILE_Recent", .Caption = "Rece&nt"},
    kSeparator,
    {.Name = "MNU_FILE_SelectSource",
     .Caption = "Select Sour&ce...",
     .Tip = "Choose the scanner",
     .Can = CanSelectSource,
     .Run = SelectSource},
    {.Name = "MNU_FILE_Aquire",
     .Caption = "&Aquire...",
     .Tip = "Scan a page and take it as the picture",
     .Can = CanScan,
     .Run = [](Workspace& ws, const Desktop& d) { Toolbar_ButtonClick(ws, d, "aquire"); }},
    kSeparator,
    {.Name = "MNU_FILE_Exit", .Caption = "E&xit", .Key = "Ctrl+Q", .Tip = "Close the program"},

    {.Is = Kind::Menu, .Name = "MNU_Edit", .Caption = "&Edit"},
    {.Name = "MNU_EDIT_Undo",
     .Caption = "Undo",
     .Key = "Ctrl+Z",
     .Tip = "Take back what was done last",
     .Can = [](const Workspace& ws) { return !ws.undoNames.Undo.empty(); },
     .Text = [](const Workspace& ws) { return "Undo " + ws.undoNames.Undo; }},
    {.Name = "MNU_EDIT_Redo",
     .Caption = "Redo",
     .Key = "Ctrl+Shift+Z",
     .Tip = "Do again what was taken back last",
     .Can = [](const Workspace& ws) { return !ws.undoNames.Redo.empty(); },
     .Text = [](const Workspace& ws) { return "Redo " + ws.undoNames.Redo; }},
    kSeparator,
    {.Name = "MNU_EDIT_CopyXY",
     .Caption = "&Copy X,Y",
     .Key = "Ctrl+C",
     .Tip = "Copy the data list as text",
     .Can = HasData,
     .Run = CopyPoints},
    {.Name = "MNU_EDIT_Paste",
     .Caption = "&Paste Image",
     .Key = "Ctrl+V",
     .Tip = "Take the picture in the clipboard",
     .Can = [](const Workspace& ws) { return ws.commands.Paste; },
     .Run = PasteImage},
    kSeparator,
    {.Name = "MNU_EDIT_ClearSel",
     .Caption = "Clear &Selected",
     .Key = "Del",
     .Tip = "Remove the selected points from the list",
     .Can = CanClear,
     .Run = Clear},
    {.Name = "MNU_EDIT_Clear_Data",
     .Caption = "Clear &all Data",
     .Tip = "Remove all captured points",
     .Can = HasData,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, ClearDataStep{.Ask = true}); }},
    kSeparator,
    {.Is = Kind::Check,
     .Name = "MNU_EDIT_EditPoints",
     .Caption = "&Edit Points",
     .Key = "Ctrl+E",
     .Tip =
         "Move captured points on the picture, by dragging or with the arrow keys, or delete them",
     .Can = CanEditPoints,
     .Run = SwitchEditPoints,
     .Checked = IsIn<Mode::EditPoints>},
    {.Name = "MNU_EDIT_Recalculate",
     .Caption = "&Recalculate Points",
     .Tip = "Give all points the values that the axes, as they are now, have at their places",
     .Can = CanRecalculate,
     .Run = Does<RecalculateStep>},
    kSeparator,
    {.Name = "MNU_EDIT_ClearLastBlocker",
     .Caption = "Clear &Last Blocker",
     .Tip = "Take the last blocker back",
     .Can = CanRemoveBlockers,
     .Run = Does<ClearLastBlockerStep>},
    {.Name = "MNU_EDIT_ClearBlockers",
     .Caption = "Clear All &Blockers",
     .Tip = "Take all blockers back",
     .Can = CanRemoveBlockers,
     .Run = Does<ClearBlockersStep>},
    kSeparator,
    {.Name = "MNU_Edit_UndoErase",
     .Caption = "&Undo Erase/Grids",
     .Tip = "The picture as it was before the last erasure or grid removal",
     .Can = CanUndoErase,
     .Run = Does<UndoEditStep>},

    {.Is = Kind::Menu, .Name = "MNU_VIEW", .Caption = "&View"},
    {.Name = "MNU_VIEW_ZoomIn",
     .Caption = "Zoom &In",
     .Key = "Ctrl++; Ctrl+=",
     .Tip = "Enlarge the picture; also Ctrl and the wheel",
     .Can = CanZoomIn},
    {.Name = "MNU_VIEW_ZoomOut",
     .Caption = "Zoom &Out",
     .Key = "Ctrl+-",
     .Tip = "See more of the picture; also Ctrl and the wheel",
     .Can = CanZoomOut},
    kSeparator,
    {.Is = Kind::Check,
     .Name = "MNU_VIEW_Fit",
     .Caption = "&Fit in Window",
     .Key = "Ctrl+0",
     .Tip = "The whole picture as large as the window shows it",
     .Can = CanZoom,
     .Run = [](Workspace& ws, const Desktop&) { FitPicture(ws); },
     .Checked = IsFitted},
    {.Name = "MNU_VIEW_ActualSize",
     .Caption = "&Actual Size",
     .Key = "Ctrl+1",
     .Tip = "A pixel of the picture is a pixel of the screen",
     .Can = CanZoom},

    {.Is = Kind::Menu, .Name = "MNU_MODE", .Caption = "&Mode"},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_axisdef",
     .Caption = "&Define Axis",
     .Key = "Alt+1",
     .Tip = "Clicks are the origin, a point on the X axis and one on the Y axis",
     .Can = CanEnter<Mode::AxisDef>,
     .Run = Enter<Mode::AxisDef>,
     .Checked = IsIn<Mode::AxisDef>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_graphize",
     .Caption = "&Graphize",
     .Key = "Alt+2; Ctrl+2",
     .Tip = "Clicks capture points, right clicks follow curves",
     .Can = CanEnter<Mode::Graphize>,
     .Run = Enter<Mode::Graphize>,
     .Checked = IsIn<Mode::Graphize>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_blocktest",
     .Caption = "&Auto-Trace Test/Block",
     .Key = "Alt+3; Ctrl+3",
     .Tip = "Clicks paint blockers, right clicks test the tracer",
     .Can = CanEnter<Mode::BlockTest>,
     .Run = Enter<Mode::BlockTest>,
     .Checked = IsIn<Mode::BlockTest>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_drawerase",
     .Caption = "D&raw/Erase",
     .Key = "Alt+4; Ctrl+4",
     .Tip = "The left button draws on the picture, the right one erases",
     .Can = CanEnter<Mode::DrawErase>,
     .Run = Enter<Mode::DrawErase>,
     .Checked = IsIn<Mode::DrawErase>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_gridbuster",
     .Caption = "Grid &Buster",
     .Key = "Alt+5; Ctrl+5",
     .Tip = "Clicks remove grid lines",
     .Can = CanEnter<Mode::GridBuster>,
     .Run = Enter<Mode::GridBuster>,
     .Checked = IsIn<Mode::GridBuster>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_readcurve",
     .Caption = "Read &Curve",
     .Key = "Ctrl+6",
     .Tip = "A click reads a curve of any colour, which is shown before it is captured",
     .Can = CanEnter<Mode::ReadCurve>,
     .Run = Enter<Mode::ReadCurve>,
     .Checked = IsIn<Mode::ReadCurve>},
    kSeparator,
    {.Name = "MNU_MODE_Pointer",
     .Caption = "&Pointer to Picture",
     .Key = "F6",
     .Tip = "Put the pointer on the picture, where the arrow keys move it",
     .Can = CanPutPointer,
     .Run = PutPointer},

    {.Is = Kind::Menu, .Name = "MNU_DATA", .Caption = "&Data"},
    {.Is = Kind::SubMenu, .Name = "MNU_DATA_SORT", .Caption = "&Sort", .Can = CanSort},
    {.Name = "MNU_DATA_SORT_Asc",
     .Caption = "&Ascending",
     .Tip = "Order the list by X, smallest first",
     .Can = CanSort,
     .Run = Does<SortStep>},
    {.Name = "MNU_DATA_SORT_Dec",
     .Caption = "&Descending",
     .Tip = "Order the list by X, largest first",
     .Can = CanSort,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, SortStep{SortOrder::Descending}); }},
    kSeparator,
    {.Name = "MNU_DATA_SwapXY",
     .Caption = "S&wap X-Y",
     .Tip = "Exchange X and Y in every row of the list",
     .Can = [](const Workspace& ws) { return ws.commands.SwapXY; },
     .Run = Does<SwapStep>},
    {.Name = "MNU_DATA_CurveLenght",
     .Caption = "&Curve length",
     .Tip = "Make the list the lengths between the captured points",
     .Can = [](const Workspace& ws) { return ws.commands.CurveLength; },
     .Run = Does<CurveLengthStep>},
    {.Name = "MNU_DATA_integrate",
     .Caption = "&Integrate...",
     .Tip = "The area under the captured points",
     .Can = [](const Workspace& ws) { return ws.commands.Integrate; },
     .Run = [](Workspace& ws, const Desktop&) { ShowIntegrate(ws); }},
    {.Name = "MNU_Data_Sample",
     .Caption = "&Resample...",
     .Tip = "More or fewer points, interpolated at even steps of X",
     .Can = [](const Workspace& ws) { return ws.commands.Resample; },
     .Run = ShowSample},
    {.Name = "MNU_DATA_CheckInk",
     .Caption = "Chec&k Points on Picture",
     .Tip = "Find points that lie on no ink, on the frame or between two strokes",
     .Can = CanCheckPoints,
     .Run = [](Workspace& ws, const Desktop&) { CheckPoints(ws); }},
    kSeparator,
    {.Name = "MNU_Data_XY2List",
     .Caption = "&Graphized X Y (Undo)",
     .Tip = "Make the list the captured points again",
     .Can = [](const Workspace& ws) { return ws.commands.ListUndo; },
     .Run = Does<UndoListStep>},

    {.Is = Kind::Menu, .Name = "MNU_IMAGE", .Caption = "&Image"},
    {.Name = "MNU_IMAGE_Refresh",
     .Caption = "&Refresh Plot",
     .Key = "Ctrl+R",
     .Tip = "Clear the marks on the picture",
     .Can = [](const Workspace& ws) { return CanPress(ws, "refresh"); },
     .Run = [](Workspace& ws, const Desktop& d) { Toolbar_ButtonClick(ws, d, "refresh"); }},
    {.Name = "MNU_IMAGE_BlackWhite",
     .Caption = "&Black && White...",
     .Tip = "Reduce the picture to black and white, and see before what becomes of it",
     .Can = CanShowImageTools,
     .Run = [](Workspace& ws, const Desktop&) { ShowBlackWhite(ws); }},
    {.Name = "MNU_IMAGE_ImageTools",
     .Caption = "Image &Tools...",
     .Tip = "Sharpen, scale or turn the picture before points are captured",
     .Can = CanShowImageTools,
     .Run = [](Workspace& ws, const Desktop&) { ShowImageTools(ws); }},

    {.Is = Kind::Menu, .Name = "MNU_OPT", .Caption = "&Options"},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_ShowLastPoint",
     .Caption = "Show &Last Point",
     .Tip = "Mark the last captured point in blue",
     .Run = [](Workspace& ws, const Desktop&) { ToggleLastPoint(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.ShowLastPoint; }},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_Overlay",
     .Caption = "&Overlay Data",
     .Tip = "Draw the data list over the picture",
     .Run = [](Workspace& ws, const Desktop&) { ToggleOverlay(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.Overlay; }},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_WhatComesNext",
     .Caption = "&What Comes Next",
     .Tip = "A line above the picture says what is to be done next",
     .Run = [](Workspace& ws, const Desktop&) { SwitchNext(ws); },
     .Checked = IsNextShown},
    kSeparator,
    {.Name = "MNU_OPT_Settings",
     .Caption = "&Settings...",
     .Tip = "Tracer, snapping, colours, cursor and number format",
     .Run = [](Workspace& ws, const Desktop&) { ShowOptions(ws); }},

    {.Is = Kind::Menu, .Name = "MNU_SYS", .Caption = "&System"},
    {.Name = "MNU_SYS_Mouse",
     .Caption = "&Mouse...",
     .Tip = "The desktop's settings of mouse and touchpad",
     .Run = [](Workspace&, const Desktop& desktop) { MouseSettings(desktop); }},

    {.Is = Kind::Menu, .Name = "MNU_Help", .Caption = "&Help"},
    {.Name = "MNU_Help_UsingGraphize",
     .Caption = "&Using Graphize",
     .Key = "F1",
     .Tip = "How it is done, step by step, and what everything is for",
     .Run = [](Workspace& ws, const Desktop& desktop) { ShowHelp(ws, desktop); }},
    {.Name = "MNU_Help_About",
     .Caption = "&About Graphize",
     .Tip = "Version and licence",
     .Run = [](Workspace& ws, const Desktop&) { ShowAbout(ws); }},
};

constexpr ToolButton kButtons[] = {
    {"open", "Open Graphics"},
    {"aquire", "Aquire from scanner"},
    {"save", "Save Data"},
    {"copy", "Copy Data", false, true},
    {"paste", "Paste Graphics"},
    {"setup", "Change Settings..."},
    {"refresh", "Refresh Plot", false, true},
    {"undo", "Undo Blocker"},
    {"delete", "Delete all data"},
    {"axisdef", "Define Axis", true, true},
    {"graphize", "Graphize", true},
    {"blocktest", "Auto-Trace Test/Block", true},
    {"drawerase", "Draw/Erase", true},
    {"gridbuster", "Grid Buster", true},
};

}  // namespace

std::span<const MenuEntry> MenuEntries() {
  return kMenus;
}

std::span<const ToolButton> ToolButtons() {
  return kButtons;
}

}  // namespace graphize
