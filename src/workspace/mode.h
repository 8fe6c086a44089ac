#pragma once

#include <array>
#include <string_view>

#include "base/translation.h"

namespace graphize {

/// The pressed mode button of the toolbar, or none: what the mouse does on the picture.
/// "Edit Points" has no button, but is switched on in the menu; those that read have theirs beside
/// the side panel's frames.
enum class Mode {
  None,
  AxisDef,
  Graphize,
  BlockTest,
  DrawErase,
  GridBuster,
  EditPoints,
  ReadCurve,
  FindSymbols
};

inline constexpr std::array<Mode, 8> kModes = {Mode::AxisDef,   Mode::Graphize,   Mode::BlockTest,
                                               Mode::DrawErase, Mode::GridBuster, Mode::EditPoints,
                                               Mode::ReadCurve, Mode::FindSymbols};

/// Whether clicks read the picture in its colours, and what was read is shown before it is taken.
constexpr bool IsReading(Mode mode) {
  return mode == Mode::ReadCurve || mode == Mode::FindSymbols;
}

/// The key of a mode, as its toolbar button has it; empty for none.
constexpr std::string_view ModeKey(Mode mode) {
  switch (mode) {
    case Mode::AxisDef:
      return "axisdef";
    case Mode::Graphize:
      return "graphize";
    case Mode::BlockTest:
      return "blocktest";
    case Mode::DrawErase:
      return "drawerase";
    case Mode::GridBuster:
      return "gridbuster";
    case Mode::EditPoints:
      return "editpoints";
    case Mode::ReadCurve:
      return "readcurve";
    case Mode::FindSymbols:
      return "findsymbols";
    case Mode::None:
      break;
  }
  return "";
}

/// What the clicks of a mode do, for the panel "hint"; to be translated.
constexpr const char* ModeHint(Mode mode) {
  switch (mode) {
    case Mode::AxisDef:
      return Marked("Type the values, then click the point; Shift: no snapping");
    case Mode::Graphize:
      return Marked("Left click: capture; right: trace or scan");
    case Mode::BlockTest:
      return Marked("Left click: blocker; right: test the tracer");
    case Mode::DrawErase:
      return Marked("Left button: draw; right: erase");
    case Mode::GridBuster:
      return Marked("Click LEFT for X and RIGHT for Y grid lines, SHIFT click for Auto mode");
    case Mode::EditPoints:
      return Marked("Drag or arrow keys move points, Del deletes them");
    case Mode::ReadCurve:
      return Marked("Left click: read the curve; right: blocker");
    case Mode::FindSymbols:
      return Marked("Left click: find all symbols of this kind; right: blocker");
    case Mode::None:
      break;
  }
  return "";
}

/// Of ReadCurve and FindSymbols while what was read is shown.
constexpr const char* ReadingShownHint(Mode mode) {
  return mode == Mode::ReadCurve
             ? Marked("A click: it goes through here; Return takes it, Escape leaves it")
             : Marked("A click on a symbol leaves it out; Return takes the others, Escape none");
}

constexpr Mode ModeOfKey(std::string_view key) {
  for (const Mode mode : kModes)
    if (ModeKey(mode) == key) return mode;
  return Mode::None;
}

}  // namespace graphize
