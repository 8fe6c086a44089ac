#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "calibration/transform.h"
#include "capture/point_set.h"
#include "data/sort.h"
#include "grid/grid_lines.h"
#include "image_tools/picture_tools.h"
#include "raster/black_white.h"
#include "reading/density.h"
#include "reading/find_symbols.h"
#include "reading/ink_threshold.h"
#include "tracing/scan.h"
#include "workspace/mode.h"

namespace graphize {

// Everything a person can do that leads to points, as plain records: what Do (commands/do.h) does,
// what a recipe writes down, what the command line asks for. Positions are picture pixels, rows
// downward from the top; `Name` is the step's first word as text (workspace/step_text.h).

/// How an operation went that asks for Escape, so that it goes the same way when it is done again.
struct Interruptions {
  std::vector<std::int64_t> Escape;  // numbers of questions: held, let go, held ...
  bool Told = false;                 // it told the user something
  bool Failed = false;               // a run-time error ended it

  bool IsEmpty() const { return Escape.empty() && !Told && !Failed; }
};

/// A picture that has come from no file: pasted or scanned.
struct PictureInHand {
  Raster Picture;
  std::string SourceName;  // "Pasted Plot"
};

struct OpenStep {
  static constexpr const char* Name = "open";
  int Picture = 1;  // number in the recipe, from 1
  bool Damaged = false;
  bool BlackAndWhite = false;
  int Threshold = kMiddleLevel;  // of the reduction
  std::string Part;  // what is taken of a picture that is too long (workspace/picture_part.h)
  // Not part of the text:
  std::filesystem::path Path;             // the file to read
  std::shared_ptr<PictureInHand> InHand;  // or the picture itself, which is taken
  bool Ask = false;  // damage and reduction are asked; the step then says what was answered
};
struct ReloadStep {
  static constexpr const char* Name = "reload";
  bool Damaged = false;
  bool BlackAndWhite = false;
  int Threshold = kMiddleLevel;
  std::string Part;
  bool Ask = false;  // not part of the text
};

/// An option (workspace/recipe_options.h) becomes `Value`.
struct SetStep {
  static constexpr const char* Name = "set";
  std::string Option, Value;
};
struct ModeStep {
  static constexpr const char* Name = "mode";
  Mode To = Mode::None;
};

/// The axis point `Row` (0 origin, 1 X axis, 2 Y axis) with the values as typed. `At` is where the
/// click snapped to, to a part of a pixel: what refined axes take instead of the whole one.
struct AxisStep {
  static constexpr const char* Name = "axis";
  int Row = 0;
  float X = 0, Y = 0;
  std::string XText, YText;
  std::optional<PlotPosition> At = {};
  float Sigma = 0;  // of At, ExactPlace
};
struct RedefineStep {
  static constexpr const char* Name = "redefine";
  int Row = 0;
};

/// A further place whose values are known, one of them at least: as typed, or empty.
struct ReferenceStep {
  static constexpr const char* Name = "reference";
  float X = 0, Y = 0;
  std::string XText, YText;
};
struct RemoveReferenceStep {
  static constexpr const char* Name = "remove-reference";
  int Number = 1;
};
/// The axes are those that fit all references best, or those of the three rows again.
struct RefineStep {
  static constexpr const char* Name = "refine";
  bool On = true;
};

/// A point captured with the press's snapping, and one captured exactly there.
struct CaptureStep {
  static constexpr const char* Name = "capture";
  float X = 0, Y = 0;
};
struct PointStep {
  static constexpr const char* Name = "point";
  float X = 0, Y = 0;
};
struct TraceStep {
  static constexpr const char* Name = "trace";
  float X = 0, Y = 0;
  Interruptions Went;
};
struct ScanStep {
  static constexpr const char* Name = "scan";
  ScanRectangle Area;
  Interruptions Went;
};

/// The curve there, of whatever colour, read off the picture and captured.
struct ReadStep {
  static constexpr const char* Name = "read";
  static constexpr int kMostThrough = 1000;
  float X = 0, Y = 0;
  ReadingDensity Density;
  float Tolerance = 1;                  // ReadingRequest
  std::vector<PlotPixel> Through = {};  // further places of the curve
};

/// All symbols like the one there, from left to right.
struct SymbolsStep {
  static constexpr const char* Name = "symbols";
  float X = 0, Y = 0;
  SymbolCentre Centre = SymbolCentre::Mass;
  float Tolerance = 1;    // SymbolRequest
  PointSet LeftOut = {};  // numbers of those that are not taken, from 1
};

/// All curves of the plot, each to a curve of the list.
struct ReadAllStep {
  static constexpr const char* Name = "read-all";
  struct Curve {
    int Number = 1;    // of those that ReadAllAt finds, from 1
    std::string Name;  // empty: one is found for it

    bool operator==(const Curve&) const = default;
  };
  std::vector<Curve> Taken;  // empty: all
};

struct BlockStep {
  static constexpr const char* Name = "block";
  float X = 0, Y = 0;
  int Size = 0;
};
struct ClearLastBlockerStep {
  static constexpr const char* Name = "clear-last-blocker";
};
struct ClearBlockersStep {
  static constexpr const char* Name = "clear-blockers";
};

/// The pen's whole way, from the press to the release.
struct PenWay {
  int Size = 0;
  std::vector<PlotPixel> Way;
};
struct DrawStep : PenWay {
  static constexpr const char* Name = "draw";
};
struct EraseStep : PenWay {
  static constexpr const char* Name = "erase";
};
struct GridStep {
  static constexpr const char* Name = "grid";
  GridDirection Direction = GridDirection::X;
  bool All = false;
  std::optional<PlotPosition> At;  // absent: nowhere near the frame, which stays
  Interruptions Went;
};
struct UndoEditStep {
  static constexpr const char* Name = "undo-edit";
};
struct ImageToolStep {
  static constexpr const char* Name = "image-tool";
  PictureTool Tool = PictureTool::Blur;
  int Amount = 0;
  bool Strict = false;  // refused when the picture is too small, which a user would have seen
};
struct UndoImageToolStep {
  static constexpr const char* Name = "undo-image-tool";
};
/// The picture that is shown, reduced to black and white.
struct BlackWhiteStep {
  static constexpr const char* Name = "black-white";
  InkThreshold Threshold;
};
/// The ink of a colour alone becomes the picture, black on white; and the picture with its colours
/// comes back.
struct InkStep {
  static constexpr const char* Name = "ink";
  int Red = 0, Green = 0, Blue = 0;  // 0 to 255
  float Tolerance = 1;               // MapOf
};
struct ShowColoursStep {
  static constexpr const char* Name = "show-colours";
};
struct RefreshStep {
  static constexpr const char* Name = "refresh";
};

struct ClearDataStep {
  static constexpr const char* Name = "clear-data";
  bool Ask = false;  // first; not part of the text
};
struct ResetStep {
  static constexpr const char* Name = "reset";
};
/// Rows of the list, from 1.
struct ClearRowsStep {
  static constexpr const char* Name = "clear-selected";
  int First = 1, Last = 1;
};
/// Points of the list go by so many pixels, row downward; and go altogether.
struct MovePointsStep {
  static constexpr const char* Name = "move-points";
  PointSet Points;
  float Columns = 0, Rows = 0;
};
struct DeletePointsStep {
  static constexpr const char* Name = "delete-points";
  PointSet Points;
};
/// All values anew, from the places by the axes.
struct RecalculateStep {
  static constexpr const char* Name = "recalculate";
};
struct SortStep {
  static constexpr const char* Name = "sort";
  SortOrder Order = SortOrder::Ascending;
};
struct SwapStep {
  static constexpr const char* Name = "swap";
};
struct UndoListStep {
  static constexpr const char* Name = "undo-list";
};
struct CurveLengthStep {
  static constexpr const char* Name = "curve-length";
};
/// The area between two captured points, counted from 1; without limits between the outermost.
struct IntegrateStep {
  static constexpr const char* Name = "integrate";
  struct Limits {
    int Low = 1, High = 1;
  };
  std::optional<Limits> Between;
  Interruptions Went;
};
struct ResampleStep {
  static constexpr const char* Name = "resample";
  std::string Count;                       // as typed
  std::string Min = "auto", Max = "auto";  // as typed; "auto": of the captured points
  bool XLog = false, YLog = false;
  Interruptions Went;
};
/// A curve's name is one line, not empty, and no other curve has it.
struct NewCurveStep {
  static constexpr const char* Name = "new-curve";
  std::string Curve;  // empty: a name is found for it
};
/// The active curve's name becomes this one.
struct RenameCurveStep {
  static constexpr const char* Name = "rename-curve";
  std::string Curve;
};
/// The active curve goes.
struct DeleteCurveStep {
  static constexpr const char* Name = "delete-curve";
};
struct SelectCurveStep {
  static constexpr const char* Name = "select-curve";
  std::string Curve;
};
/// The active curve is marked on the picture, or not.
struct ShowCurveStep {
  static constexpr const char* Name = "show-curve";
  bool Shown = true;
};
struct SaveStep {
  static constexpr const char* Name = "save";
  std::string Title;
  std::filesystem::path Path;  // not part of the text; empty: nothing is written
};

using Step =
    std::variant<OpenStep, ReloadStep, SetStep, ModeStep, AxisStep, RedefineStep, ReferenceStep,
                 RemoveReferenceStep, RefineStep, CaptureStep, PointStep, TraceStep, ScanStep,
                 ReadStep, SymbolsStep, ReadAllStep, BlockStep, ClearLastBlockerStep,
                 ClearBlockersStep, DrawStep, EraseStep, GridStep, UndoEditStep, ImageToolStep,
                 UndoImageToolStep, BlackWhiteStep, InkStep, ShowColoursStep, RefreshStep,
                 ClearDataStep, ResetStep, ClearRowsStep, MovePointsStep, DeletePointsStep,
                 RecalculateStep, SortStep, SwapStep, UndoListStep, CurveLengthStep, IntegrateStep,
                 ResampleStep, NewCurveStep, RenameCurveStep, DeleteCurveStep, SelectCurveStep,
                 ShowCurveStep, SaveStep>;

/// Whether the step is an X.
template <class X>
bool Is(const Step& step) {
  return std::holds_alternative<X>(step);
}

}  // namespace graphize
