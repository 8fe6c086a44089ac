// The menu "Image".

#include "app/commands.h"
#include "base/translation.h"
#include "commands/black_white_commands.h"
#include "commands/image_tools_commands.h"
#include "commands/ink_commands.h"
#include "commands/ink_preview.h"
#include "commands/propose_axes_commands.h"
#include "commands/toolbar.h"

namespace graphize {

namespace {

using Kind = MenuEntry::Kind;

const MenuEntry kMenu[] = {
    {.Is = Kind::Menu, .Name = "MNU_IMAGE", .Caption = Marked("&Image")},
    {.Name = "MNU_IMAGE_Refresh",
     .Caption = Marked("&Refresh Plot"),
     .Key = "Ctrl+R",
     .Tip = Marked("Clear the marks on the picture"),
     .Can = [](const Workspace& ws) { return CanPress(ws, "refresh"); },
     .Run = [](Workspace& ws, const Desktop& d) { Toolbar_ButtonClick(ws, d, "refresh"); }},
    {.Name = "MNU_IMAGE_ProposeAxes",
     .Caption = Marked("&Propose Axes"),
     .Tip = Marked("Find the axes on the picture and show them before they are accepted"),
     .Can = CanProposeAxes,
     .Run = [](Workspace& ws, const Desktop& desktop) { ShowProposedAxes(ws, desktop); }},
    {.Name = "MNU_IMAGE_BlackWhite",
     .Caption = Marked("&Black && White..."),
     .Tip = Marked("Reduce the picture to black and white, and see before what becomes of it"),
     .Can = CanShowImageTools,
     .Run = [](Workspace& ws, const Desktop&) { ShowBlackWhite(ws); }},
    {.Name = "MNU_IMAGE_InkFromColour",
     .Caption = Marked("&Ink from Colour..."),
     .Tip = Marked("Make one ink black and all else white, and see before what counts as it"),
     .Can = CanTakeInk,
     .Run = ShowInk},
    {.Name = "MNU_IMAGE_ShowColours",
     .Caption = Marked("Show &Colours"),
     .Tip = Marked("The picture with its colours, as it was before an ink was taken alone"),
     .Can = CanShowColours,
     .Run = Does<ShowColoursStep>},
    {.Name = "MNU_IMAGE_ImageTools",
     .Caption = Marked("Image &Tools..."),
     .Tip = Marked("Sharpen, scale or turn the picture before points are captured"),
     .Can = CanShowImageTools,
     .Run = [](Workspace& ws, const Desktop&) { ShowImageTools(ws); }},
};

}  // namespace

std::span<const MenuEntry> ImageMenu() {
  return kMenu;
}

}  // namespace graphize
