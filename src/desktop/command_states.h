#pragma once

namespace graphize {

/// Which groups of menu entries and toolbar buttons are enabled, and what is checked. The Can...
/// functions of commands/ read it together with the other records.
struct CommandStates {
  bool Data = false;          // save, copy, clear all: the store holds points
  bool Blockers = false;      // clear blockers, toolbar "undo"
  bool Picture = false;       // refresh, reload, axisdef, blocktest, drawerase
  bool Graphize = false;      // toolbar "graphize"
  bool GridBuster = false;    // toolbar "gridbuster"
  bool SelectSource = false;  // the scanner library is there
  bool Scanner = false;       // acquire: there is something to scan with

  bool ShowLastPoint = true;  // check mark of MNU_OPT_ShowLastPoint
  bool Overlay = false;       // check mark of MNU_OPT_Overlay
  bool AxesGrid = false;      // check mark of MNU_VIEW_AxesGrid
  bool SaveErrors = false;    // check mark of MNU_FileSaveErrors
  bool PixelErrors = false;   // then those of one pixel also where the uncertainty is known

  // Looked at when their menu opens.
  bool Paste = false;
  bool ClearSelected = false;
  bool Sort = false, SwapXY = false, CurveLength = false, Resample = false, Integrate = false;
  bool ListUndo = false;  // "Graphized X Y (Undo)"
};

}  // namespace graphize
