#include "session/change_name.h"

#include <algorithm>

#include "base/translation.h"
#include "image_tools/image_tools.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

std::string WithPoints(const char* name, int points) {
  return points == 0 ? Tr(name) : Tr(name) + " (" + PointCount(points) + ")";
}

struct Name {
  int Points;

  std::string operator()(const OpenStep& step) const {
    return step.Path.empty() ? Tr("New picture") : Tr("Open image");
  }
  std::string operator()(const ReloadStep&) const { return Tr("Reload image"); }
  // The logarithm of an axis is a part of its definition.
  std::string operator()(const SetStep& step) const {
    return step.Option == "x-log" || step.Option == "y-log" ? Tr("Log axis") : "";
  }
  std::string operator()(const ModeStep&) const { return ""; }
  std::string operator()(const AxisStep&) const { return Tr("Axis point"); }
  std::string operator()(const RedefineStep&) const { return Tr("Redefine axis"); }
  std::string operator()(const ReferenceStep&) const { return Tr("Axis reference"); }
  std::string operator()(const RemoveReferenceStep&) const { return Tr("Axis reference"); }
  std::string operator()(const RefineStep&) const { return Tr("Refined axes"); }
  std::string operator()(const CaptureStep&) const { return Tr("Capture"); }
  std::string operator()(const PointStep&) const { return Tr("Capture"); }
  std::string operator()(const TraceStep&) const { return WithPoints(Marked("Trace"), Points); }
  std::string operator()(const ScanStep&) const { return WithPoints(Marked("Scan"), Points); }
  std::string operator()(const ReadStep&) const { return WithPoints(Marked("Read Curve"), Points); }
  std::string operator()(const SymbolsStep&) const {
    return WithPoints(Marked("Find Symbols"), Points);
  }
  std::string operator()(const ReadAllStep&) const { return Tr("Read All Curves"); }
  std::string operator()(const BlockStep&) const { return Tr("Blocker"); }
  std::string operator()(const ClearLastBlockerStep&) const { return Tr("Clear last blocker"); }
  std::string operator()(const ClearBlockersStep&) const { return Tr("Clear all blockers"); }
  std::string operator()(const DrawStep&) const { return Tr("Drawing"); }
  std::string operator()(const EraseStep&) const { return Tr("Erasure"); }
  std::string operator()(const GridStep&) const { return Tr("Grid removal"); }
  std::string operator()(const UndoEditStep&) const { return Tr("Undo Erase/Grids"); }
  std::string operator()(const ImageToolStep& step) const { return Tr(TextsOf(step.Tool).Caption); }
  std::string operator()(const UndoImageToolStep&) const { return Tr("Undo of an image tool"); }
  std::string operator()(const BlackWhiteStep&) const { return Tr("Black and white"); }
  std::string operator()(const InkStep&) const { return Tr("Ink from Colour"); }
  std::string operator()(const ShowColoursStep&) const { return Tr("Show Colours"); }
  std::string operator()(const RefreshStep&) const { return ""; }
  std::string operator()(const ClearDataStep&) const { return Tr("Clear all data"); }
  std::string operator()(const ResetStep&) const { return Tr("Reset"); }
  std::string operator()(const ClearRowsStep&) const { return Tr("Clear selected"); }
  std::string operator()(const MovePointsStep& step) const {
    return WithPoints(Marked("Move"), static_cast<int>(step.Points.Count()));
  }
  std::string operator()(const DeletePointsStep& step) const {
    return WithPoints(Marked("Delete"), static_cast<int>(step.Points.Count()));
  }
  std::string operator()(const RecalculateStep&) const { return Tr("Recalculate Points"); }
  std::string operator()(const SortStep&) const { return Tr("Sort"); }
  std::string operator()(const SwapStep&) const { return Tr("Swap X-Y"); }
  std::string operator()(const UndoListStep&) const { return Tr("Graphized X Y"); }
  std::string operator()(const CurveLengthStep&) const { return Tr("Curve length"); }
  std::string operator()(const IntegrateStep&) const { return Tr("Integration"); }
  std::string operator()(const ResampleStep&) const { return Tr("Resampling"); }
  std::string operator()(const NewCurveStep&) const { return Tr("New curve"); }
  std::string operator()(const RenameCurveStep&) const { return Tr("Rename curve"); }
  std::string operator()(const DeleteCurveStep&) const { return Tr("Delete curve"); }
  std::string operator()(const SelectCurveStep&) const { return ""; }
  std::string operator()(const ShowCurveStep&) const { return ""; }
  std::string operator()(const SaveStep&) const { return ""; }
};

}  // namespace

std::string NameOfChange(std::span<const Step> done, int points) {
  // All three at once were proposed.
  if (std::count_if(done.begin(), done.end(), Is<AxisStep>) == 3) return Tr("Propose Axes");
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
