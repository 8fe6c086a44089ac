#include "app/commands.h"

#include <vector>

#include "base/translation.h"
#include "batch/other_pictures.h"
#include "commands/capture_commands.h"
#include "commands/do.h"
#include "commands/export_points.h"
#include "commands/extraction_commands.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/recipe_file.h"
#include "commands/save_points.h"
#include "commands/scan_commands.h"
#include "commands/toolbar.h"
#include "commands/view_commands.h"
#include "session/project_commands.h"

namespace graphize {

namespace {

using Kind = MenuEntry::Kind;

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
    {.Is = Kind::Menu, .Name = "MNU_File", .Caption = Marked("&File")},
    {.Name = "MNU_FileOpen",
     .Caption = Marked("&Open Image..."),
     .Key = "Ctrl+Shift+O",
     .Tip = Marked("Open a picture of a graph"),
     .Run = OpenImage},
    {.Name = "MNU_FileOpenOther",
     .Caption = Marked("Open O&ther Picture..."),
     .Key = "Ctrl+O",
     .Tip = Marked("Open a picture of any type that can be read"),
     .Run = OpenOtherPicture},
    {.Name = "MNU_FileReload",
     .Caption = Marked("Reloa&d Image"),
     .Key = "F5",
     .Tip = Marked("Read the picture's file again; points and axes stay"),
     .Can = CanReload,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, ReloadStep{.Ask = true}); }},
    {.Name = "MNU_FILE_SaveImage",
     .Caption = Marked("Save &Image As..."),
     .Key = "Ctrl+Shift+S",
     .Tip = Marked("Write the picture to an image file"),
     .Can = CanSaveImage,
     .Run = SaveImageAs},
    kSeparator,
    {.Name = "MNU_FileSave",
     .Caption = Marked("&Save Data..."),
     .Key = "Ctrl+S",
     .Tip = Marked("Write the data list to a data file"),
     .Can = CanSavePoints,
     .Run = [](Workspace& ws, const Desktop& desktop) { SavePoints(ws, desktop); }},
    {.Is = Kind::Check,
     .Name = "MNU_FileSaveErrors",
     .Caption = Marked("Save With &Errors"),
     .Tip = Marked("Data files get two more columns: the size of one pixel in X and in Y"),
     .Run = [](Workspace& ws, const Desktop&) { ToggleSaveErrors(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.SaveErrors; }},
    {.Name = "MNU_FILE_Export",
     .Caption = Marked("Ex&port..."),
     .Tip = Marked("Write points as CSV or JSON, with all their digits"),
     .Can = CanExport,
     .Run = ShowExport},
    {.Name = "MNU_FileSaveRecipe",
     .Caption = Marked("Save &Recipe..."),
     .Tip = Marked("Write down every step, so that they can be done again"),
     .Can = CanSaveRecipe,
     .Run = SaveRecipe},
    {.Name = "MNU_FILE_OtherPictures",
     .Caption = Marked("Do &for Other Pictures..."),
     .Tip = Marked("Do the same on a list of pictures of the same layout, each moved, turned or "
                   "scaled a little"),
     .Can = CanShowOtherPictures,
     .Run = ShowOtherPictures},
    kSeparator,
    {.Name = "MNU_FILE_OpenProject",
     .Caption = Marked("Open Pro&ject..."),
     .Key = "Ctrl+Alt+O",
     .Tip = Marked("Go on with work that was saved as a project"),
     .Run = [](Workspace& ws, const Desktop& desktop) { OpenProject(ws, desktop); }},
    {.Name = "MNU_FILE_SaveProject",
     .Caption = Marked("Sa&ve Project..."),
     .Key = "Ctrl+Alt+S",
     .Tip = Marked("Write picture, axes, points and steps to one file"),
     .Can = CanSaveProject,
     .Run = SaveProject},
    {.Is = Kind::SubMenu, .Name = "MNU_FILE_Recent", .Caption = Marked("Rece&nt")},
    kSeparator,
    {.Name = "MNU_FILE_SelectSource",
     .Caption = Marked("Select Sour&ce..."),
     .Tip = Marked("Choose the scanner"),
     .Can = CanSelectSource,
     .Run = SelectSource},
    {.Name = "MNU_FILE_Aquire",
     .Caption = Marked("&Aquire..."),
     .Tip = Marked("Scan a page and take it as the picture"),
     .Can = CanScan,
     .Run = [](Workspace& ws, const Desktop& d) { Toolbar_ButtonClick(ws, d, "aquire"); }},
    kSeparator,
    {.Name = "MNU_FILE_Exit",
     .Caption = Marked("E&xit"),
     .Key = "Ctrl+Q",
     .Tip = Marked("Close the program")},

    {.Is = Kind::Menu, .Name = "MNU_Edit", .Caption = Marked("&Edit")},
    {.Name = "MNU_EDIT_Undo",
     .Caption = Marked("Undo"),
     .Key = "Ctrl+Z",
     .Tip = Marked("Take back what was done last"),
     .Can = [](const Workspace& ws) { return !ws.undoNames.Undo.empty(); },
     .Text = [](const Workspace& ws) { return Tr("Undo %1", ws.undoNames.Undo); }},
    {.Name = "MNU_EDIT_Redo",
     .Caption = Marked("Redo"),
     .Key = "Ctrl+Shift+Z; Ctrl+Y",
     .Tip = Marked("Do again what was taken back last"),
     .Can = [](const Workspace& ws) { return !ws.undoNames.Redo.empty(); },
     .Text = [](const Workspace& ws) { return Tr("Redo %1", ws.undoNames.Redo); }},
    kSeparator,
    {.Name = "MNU_EDIT_CopyXY",
     .Caption = Marked("&Copy X,Y"),
     .Key = "Ctrl+C",
     .Tip = Marked("Copy the data list as text"),
     .Can = CanSavePoints,
     .Run = CopyPoints},
    {.Name = "MNU_EDIT_Paste",
     .Caption = Marked("&Paste Image"),
     .Key = "Ctrl+V",
     .Tip = Marked("Take the picture in the clipboard"),
     .Can = [](const Workspace& ws) { return ws.commands.Paste; },
     .Run = PasteImage},
    kSeparator,
    {.Name = "MNU_EDIT_ClearSel",
     .Caption = Marked("Clear &Selected"),
     .Key = "Del",
     .Tip = Marked("Remove the selected points from the list"),
     .Can = CanClear,
     .Run = Clear},
    {.Name = "MNU_EDIT_Clear_Data",
     .Caption = Marked("Clear &all Data"),
     .Tip = Marked("Remove all captured points"),
     .Can = CanSavePoints,
     .Run = [](Workspace& ws, const Desktop& d) { Do(ws, d, ClearDataStep{.Ask = true}); }},
    kSeparator,
    {.Is = Kind::Check,
     .Name = "MNU_EDIT_EditPoints",
     .Caption = Marked("&Edit Points"),
     .Key = "Ctrl+E",
     .Tip = Marked(
         "Move captured points on the picture, by dragging or with the arrow keys, or delete them"),
     .Can = CanEditPoints,
     .Run = SwitchEditPoints,
     .Checked = IsIn<Mode::EditPoints>},
    {.Name = "MNU_EDIT_Recalculate",
     .Caption = Marked("&Recalculate Points"),
     .Tip =
         Marked("Give all points the values that the axes, as they are now, have at their places"),
     .Can = CanRecalculate,
     .Run = Does<RecalculateStep>},
    kSeparator,
    {.Name = "MNU_EDIT_ClearLastBlocker",
     .Caption = Marked("Clear &Last Blocker"),
     .Tip = Marked("Take the last blocker back"),
     .Can = CanRemoveBlockers,
     .Run = Does<ClearLastBlockerStep>},
    {.Name = "MNU_EDIT_ClearBlockers",
     .Caption = Marked("Clear All &Blockers"),
     .Tip = Marked("Take all blockers back"),
     .Can = CanRemoveBlockers,
     .Run = Does<ClearBlockersStep>},
    kSeparator,
    {.Name = "MNU_Edit_UndoErase",
     .Caption = Marked("&Undo Erase/Grids"),
     .Tip = Marked("The picture as it was before the last erasure or grid removal"),
     .Can = CanUndoErase,
     .Run = Does<UndoEditStep>},

    {.Is = Kind::Menu, .Name = "MNU_VIEW", .Caption = Marked("&View")},
    {.Name = "MNU_VIEW_ZoomIn",
     .Caption = Marked("Zoom &In"),
     .Key = "Ctrl++; Ctrl+=",
     .Tip = Marked("Enlarge the picture; also Ctrl and the wheel"),
     .Can = CanZoomIn},
    {.Name = "MNU_VIEW_ZoomOut",
     .Caption = Marked("Zoom &Out"),
     .Key = "Ctrl+-",
     .Tip = Marked("See more of the picture; also Ctrl and the wheel"),
     .Can = CanZoomOut},
    kSeparator,
    {.Is = Kind::Check,
     .Name = "MNU_VIEW_Fit",
     .Caption = Marked("&Fit in Window"),
     .Key = "Ctrl+0",
     .Tip = Marked("The whole picture as large as the window shows it"),
     .Can = CanZoom,
     .Checked = IsFitted},
    {.Name = "MNU_VIEW_ActualSize",
     .Caption = Marked("&Actual Size"),
     .Key = "Ctrl+1",
     .Tip = Marked("A pixel of the picture is a pixel of the screen"),
     .Can = CanZoom},

    kSeparator,
    {.Is = Kind::Check,
     .Name = "MNU_VIEW_AxesGrid",
     .Caption = Marked("Axes &Grid"),
     .Tip = Marked("Draw the lines of round values over the picture, as the axes have them"),
     .Can = [](const Workspace& ws) { return ws.calibration.IsComplete(); },
     .Run = [](Workspace& ws, const Desktop&) { ws.commands.AxesGrid = !ws.commands.AxesGrid; },
     .Checked = [](const Workspace& ws) { return ws.commands.AxesGrid; }},

    {.Is = Kind::Menu, .Name = "MNU_MODE", .Caption = Marked("&Mode")},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_axisdef",
     .Caption = Marked("&Define Axis"),
     .Key = "Alt+1",
     .Tip = Marked("Clicks are the origin, a point on the X axis and one on the Y axis"),
     .Can = CanEnter<Mode::AxisDef>,
     .Run = Enter<Mode::AxisDef>,
     .Checked = IsIn<Mode::AxisDef>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_graphize",
     .Caption = Marked("&Graphize"),
     .Key = "Alt+2; Ctrl+2",
     .Tip = Marked("Clicks capture points, right clicks follow curves"),
     .Can = CanEnter<Mode::Graphize>,
     .Run = Enter<Mode::Graphize>,
     .Checked = IsIn<Mode::Graphize>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_blocktest",
     .Caption = Marked("&Auto-Trace Test/Block"),
     .Key = "Alt+3; Ctrl+3",
     .Tip = Marked("Clicks paint blockers, right clicks test the tracer"),
     .Can = CanEnter<Mode::BlockTest>,
     .Run = Enter<Mode::BlockTest>,
     .Checked = IsIn<Mode::BlockTest>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_drawerase",
     .Caption = Marked("D&raw/Erase"),
     .Key = "Alt+4; Ctrl+4",
     .Tip = Marked("The left button draws on the picture, the right one erases"),
     .Can = CanEnter<Mode::DrawErase>,
     .Run = Enter<Mode::DrawErase>,
     .Checked = IsIn<Mode::DrawErase>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_gridbuster",
     .Caption = Marked("Grid &Buster"),
     .Key = "Alt+5; Ctrl+5",
     .Tip = Marked("Clicks remove grid lines"),
     .Can = CanEnter<Mode::GridBuster>,
     .Run = Enter<Mode::GridBuster>,
     .Checked = IsIn<Mode::GridBuster>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_readcurve",
     .Caption = Marked("Read &Curve"),
     .Key = "Ctrl+6",
     .Tip = Marked("A click reads a curve of any colour, which is shown before it is captured"),
     .Can = CanEnter<Mode::ReadCurve>,
     .Run = Enter<Mode::ReadCurve>,
     .Checked = IsIn<Mode::ReadCurve>},
    {.Is = Kind::Check,
     .Name = "MNU_MODE_findsymbols",
     .Caption = Marked("&Find Symbols"),
     .Key = "Ctrl+7",
     .Tip = Marked("A click finds all symbols of one kind, shown before they are captured"),
     .Can = CanEnter<Mode::FindSymbols>,
     .Run = Enter<Mode::FindSymbols>,
     .Checked = IsIn<Mode::FindSymbols>},
    kSeparator,
    {.Name = "MNU_MODE_Pointer",
     .Caption = Marked("&Pointer to Picture"),
     .Key = "F6",
     .Tip = Marked("Put the pointer on the picture, where the arrow keys move it"),
     .Can = CanPutPointer,
     .Run = PutPointer},
};

constexpr ToolButton kButtons[] = {
    {"open", Marked("Open Graphics")},
    {"aquire", Marked("Aquire from scanner")},
    {"save", Marked("Save Data")},
    {"copy", Marked("Copy Data"), false, true},
    {"paste", Marked("Paste Graphics")},
    {"setup", Marked("Change Settings...")},
    {"refresh", Marked("Refresh Plot"), false, true},
    {"undo", Marked("Undo Blocker")},
    {"delete", Marked("Delete all data")},
    {"axisdef", Marked("Define Axis"), true, true},
    {"graphize", Marked("Graphize"), true},
    {"blocktest", Marked("Auto-Trace Test/Block"), true},
    {"drawerase", Marked("Draw/Erase"), true},
    {"gridbuster", Marked("Grid Buster"), true},
};

}  // namespace

std::span<const MenuEntry> MenuEntries() {
  static const std::vector<MenuEntry> all = [] {
    std::vector<MenuEntry> entries(std::begin(kMenus), std::end(kMenus));
    for (const std::span<const MenuEntry> menus : {DataMenu(), ImageMenu(), OptionMenus()})
      entries.insert(entries.end(), menus.begin(), menus.end());
    return entries;
  }();
  return all;
}

std::span<const ToolButton> ToolButtons() {
  return kButtons;
}

}  // namespace graphize
