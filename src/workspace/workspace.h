#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "calibration/transform.h"
#include "capture/cursor.h"
#include "capture/curve_list.h"
#include "capture/point_store.h"
#include "data/export_form.h"
#include "data/integration.h"
#include "data/number_format.h"
#include "data/sample_form.h"
#include "desktop/command_states.h"
#include "desktop/status_bar.h"
#include "finding_axes/line_snap.h"
#include "image_tools/image_tools.h"
#include "raster/black_white_form.h"
#include "raster/plot_image.h"
#include "raster/viewport.h"
#include "scanner/scan_form.h"
#include "scanner/source_form.h"
#include "settings/options_form.h"
#include "settings/scanner_source.h"
#include "settings/settings.h"
#include "settings/window_placement.h"
#include "tracing/blockers.h"
#include "tracing/ink_check.h"
#include "tracing/pen.h"
#include "tracing/scan.h"
#include "tracing/tracer_control.h"
#include "workspace/about_form.h"
#include "workspace/axes_proposal.h"
#include "workspace/help_request.h"
#include "workspace/ink_form.h"
#include "workspace/mode.h"
#include "workspace/other_pictures_form.h"
#include "workspace/picture_map.h"
#include "workspace/point_edit.h"
#include "workspace/read_all_form.h"
#include "workspace/reading_preview.h"
#include "workspace/recipe.h"

namespace graphize {

inline constexpr const char* kTitle = "Graphize";

/// Where the picture came from. Names and paths that are shown or proposed are in lower case;
/// `ChosenPath` is the file as the user chose it, and the one that is read.
struct PictureSource {
  std::string Name;  // "plot1.bmp", "untitled.dat" after a paste or a scan
  std::string Path;  // the whole path, lower case
  std::filesystem::path ChosenPath;
  std::filesystem::path Folder;  // where file dialogs start
  std::uintmax_t FileSize = 0;   // of the file as it was read
  std::uint32_t FileChecksum = 0;
  bool FromFile = true;  // reload acts only on these
  bool WithoutFile = false;
  std::shared_ptr<const std::string> Bytes;  // the file itself, where it came in a project
  // The file in the session's folder that has the picture as it was after so many steps of the
  // recipe; empty: the steps alone make it again.
  std::string KeptCopy;
  int KeptSteps = 0;

  bool operator==(const PictureSource&) const = default;
};

/// The project file that a document was opened from or saved in last.
struct ProjectName {
  std::filesystem::path File;
  int RecipeNumber = -1;  // of the document's recipe
  std::string Work;       // what it holds beside the points (WorkText in session/project_commands)

  bool IsOf(const Recipe& recipe) const { return !File.empty() && RecipeNumber == recipe.Number; }
};

/// What the mouse has done on the picture.
struct PlotMouse {
  std::int16_t DownPixelX = 0, DownPixelY = 0;  // of the last press, row downward
  bool SuppressNextClick = false;
  bool Painting = false;  // a left press in blocker mode waits for its click
  bool TraceRunning = false;
  bool PressFailed = false;               // the press ended in an error: its click captures nothing
  bool Snapped = false;                   // the held press was snapped, and the hand kept still
  std::optional<LineSnap> AxisSnap;       // where a click that defines an axis would snap to
  std::optional<PlotPixel> CapturePress;  // where the last press has led, row downward
  std::string ReadFault;                  // why the last position has no values; empty when it has
  std::string FaultTold;                  // told in a box since the pointer came over the picture
};

/// The frame of the main window.
struct WindowFrame {
  std::string Caption = kTitle;
  bool Hourglass = false;
  bool AxisPanelShown = false;            // else the panel of the capture modes
  int ScreenWidth = 0, ScreenHeight = 0;  // pixels
  int DragDistance = 0;                   // pixels across plus down from where a press is a drag
  WindowPlacement Placement;              // in force
  bool PlacementAsked = false;            // the window is to take `Placement` over, once
};

/// The zoom window over the picture.
struct ZoomWindow {
  int Factor = 4;  // screen pixels per picture pixel: the slider `zoomer`
  static constexpr int kMinimum = 2, kMaximum = 16;
};

/// What "Undo" and "Redo" are about: "Trace (734 points)"; empty when there is nothing.
struct UndoNames {
  std::string Undo, Redo;
};

/// The modal window that is open over the main window.
enum class Form {
  None,
  Integrate,
  Sample,
  Options,
  About,
  SelectSource,
  Scan,
  ImageTools,
  Export,
  BlackWhite,
  Ink,
  ReadAll,
  OtherPictures
};

/// The scanner that is used.
struct Scanner {
  ScannerSource Source;  // chosen by the user and remembered; without a name: the first found
  std::string LastUsed;  // the source that LastSettings belong to
  ScanSettings LastSettings;
  OpenScanner Open;  // while the window FRM_Scan is
};

/// All state of the program. Owned by value by the main window, a batch run or a test.
struct Workspace {
  Settings settings;
  NumberFormats formats;
  std::filesystem::path settingsPath;
  std::string language = "en";  // of the window from its next start on

  PlotImage plot;
  Viewport view;
  DirtyArea marksDirty;  // where what is painted above the raster has changed
  PictureSource picture;
  ProjectName project;
  int projectsSaved = 0;                      // since the start
  std::filesystem::path projectAsked;         // to be opened in the place of a picture
  std::vector<std::filesystem::path> opened;  // files, newest first, for the list of recent ones

  // The picture before an ink alone took its place: "Show Colours" brings it back.
  PictureBox colours;

  PictureMap map;
  BeforeImageTool beforeImageTool;  // while its picture is the undo copy

  AxisCalibration calibration;
  AxisPanel axisPanel;
  ProposedAxesForm proposedAxes;
  ReferenceEntry reference;

  PointStore store;  // of the active curve
  CurveList curves;
  ReadOut readOut;
  std::string dataFileName;   // path of the last data file, lower case
  std::string dataFileTitle;  // and its title line

  TracerControl tracer;
  InkCheck inkCheck;
  ScanRectangle scanRectangle;
  BlockerList blockers;
  Pen pen;
  int blockSize = 4;  // slider `BlockSize`, pixels
  static constexpr int kLargestBlock = 50;

  Mode mode = Mode::None;
  PlotMouse mouse;
  PointEdit pointEdit;
  ReadingControl reading;
  CommandStates commands;
  StatusBar status;
  WindowFrame window;
  ZoomWindow zoom;

  Form form = Form::None;
  IntegrateForm integrate;
  SampleForm sample;
  OptionsForm options;
  AboutForm about;
  ImageToolsForm imageTools;
  ExportForm exportForm;
  BlackWhiteForm blackWhite;
  InkForm ink;
  ReadAllForm readAll;
  OtherPicturesForm otherPictures;

  HelpRequest help;
  SourceForm source;
  ScanForm scan;
  Scanner scanner;

  Recipe recipe;
  UndoNames undoNames;

  bool commandRuns = false;  // commands never nest
};

}  // namespace graphize
