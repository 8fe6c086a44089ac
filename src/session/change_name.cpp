#include "session/change_name.h"

#include "image_tools/image_tools.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

std::string WithPoints(const char* name, int points) {
  return points == 0 ? name : std::string(name) + " (" + PointCount(points) + ")";
}

struct Name {
  int Points;

  std::string operator()(const OpenStep& step) const {
    return step.Path.empty() ? "New picture" : "Open image";
  }
  std::string operator()(const ReloadStep&) const { return "Reload image"; }
  // The logarithm of an axis is a part of its definition.
  std::string operator()(const SetStep& step) const {
    return step.Option == "x-log" || step.Option == "y-log" ? "Log axis" : "";
  }
  std::string operator()(const ModeStep&) const { return ""; }
  std::string operator()(const AxisStep&) const { return "Axis point"; }
  std::string operator()(const RedefineStep&) const { return "Redefine axis"; }
  std::string operator()(const CaptureStep&) const { return "Capture"; }
  std::string operator()(const PointStep&) const { return "Capture"; }
  std::string operator()(const TraceStep&) const { return WithPoints("Trace", Points); }
  std::string operator()(const ScanStep&) const { return WithPoints("Scan", Points); }
  std::string operator()(const ReadStep&) const { return WithPoints("Read Curve", Points); }
  std::string operator()(const SymbolsStep&) const { return WithPoints("Find Symbols", Points); }
  std::string operator()(const ReadAllStep&) const { return "Read All Curves"; }
  std::string operator()(const BlockStep&) const { return "Blocker"; }
  std::string operator()(const ClearLastBlockerStep&) const { return "Clear last blocker"; }
  std::string operator()(const ClearBlockersStep&) const { return "Clear all blockers"; }
  std::string operator()(const DrawStep&) const { return "Drawing"; }
  std::string operator()(const EraseStep&) const { return "Erasure"; }
  std::string operator()(const GridStep&) const { return "Grid removal"; }
  std::string operator()(const UndoEditStep&) const { return "Undo Erase/Grids"; }
  std::string operator()(const ImageToolStep& step) const { return TextsOf(step.Tool).Caption; }
  std::string operator()(const UndoImageToolStep&) const { return "Undo of an image tool"; }
  std::string operator()(const BlackWhiteStep&) const { return "Black and white"; }
  std::string operator()(const InkStep&) const { return "Ink from Colour"; }
  std::string operator()(const ShowColoursStep&) const { return "Show Colours"; }
  std::string operator()(const RefreshStep&) const { return ""; }
  std::string operator()(const ClearDataStep&) const { return "Clear all data"; }
  std::string operator()(const ResetStep&) const { return "Reset"; }
  std::string operator()(const ClearRowsStep&) const { return "Clear selected"; }
  std::string operator()(const MovePointsStep& step) const {
    return WithPoints("Move", static_cast<int>(step.Points.Count()));
  }
  std::string operator()(const DeletePointsStep& step) const {
    return WithPoints("Delete", static_cast<int>(step.Points.Count()));
  }
  std::string operator()(const RecalculateStep&) const { return "Recalculate Points"; }
  std::string operator()(const SortStep&) const { return "Sort"; }
  std::string operator()(const SwapStep&) const { return "Swap X-Y"; }
  std::string operator()(const UndoListStep&) const { return "Graphized X Y"; }
  std::string operator()(const CurveLengthStep&) const { return "Curve length"; }
  std::string operator()(const IntegrateStep&) const { return "Integration"; }
  std::string operator()(const ResampleStep&) const { return "Resampling"; }
  std::string operator()(const NewCurveStep&) const { return "New curve"; }
  std::string operator()(const RenameCurveStep&) const { return "Rename curve"; }
  std::string operator()(const DeleteCurveStep&) const { return "Delete curve"; }
  std::string operator()(const SelectCurveStep&) const { return ""; }
  std::string operator()(const ShowCurveStep&) const { return ""; }
  std::string operator()(const SaveStep&) const { return ""; }
};

}  // namespace

std::string NameOfChange(std::span<const Step> done, int points) {
  std::string option;
  for (auto step = done.rbegin(); step != done.rend(); ++step) {
    std::string name = std::visit(Name{points}, *step);
    if (name.empty()) continue;
    // Options are noted with the step that they were changed for, which says more.
    if (!Is<SetStep>(*step)) return name;
    option = std::move(name);
  }
  return option;
}

}  // namespace graphize
