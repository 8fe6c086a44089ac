#include "workspace/replay.h"

#include <algorithm>
#include <vector>

#include "base/numbers.h"
#include "base/tokens.h"
#include "data/list_edit.h"
#include "image_tools/picture_tools.h"
#include "workspace/capture_commands.h"
#include "workspace/data_commands.h"
#include "workspace/extraction_commands.h"
#include "workspace/image_tools_commands.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/recipe_options.h"
#include "workspace/step_arguments.h"
#include "workspace/toolbar.h"
#include "workspace/view_commands.h"

namespace graphize {

namespace {

struct Context {
  Workspace& ws;
  const Desktop& desktop;
  const std::filesystem::path& picture;
};

/// A position on the picture: clicks lie nowhere else.
PlotPosition PositionInside(const Context& context, StepArguments& arguments) {
  const PlotImage& plot = context.ws.plot;
  const std::string x = arguments.Number(), y = arguments.Number();
  const auto inside = [](const std::string& text, int size) {
    const double at = WholeNumberText(text).value_or(0);
    return at >= 0 && at <= size - 1;
  };
  if (!inside(x, plot.Width()) || !inside(y, plot.Height()))
    arguments.Fail("the position " + x + "," + y + " lies outside of the picture (" +
                   std::to_string(plot.Width()) + "x" + std::to_string(plot.Height()) + ")");
  return {static_cast<float>(WholeNumberText(x).value_or(0)),
          static_cast<float>(WholeNumberText(y).value_or(0))};
}

OpenChoices ReadChoices(StepArguments& arguments) {
  const bool damaged = arguments.Has("damaged");
  const bool reduced = arguments.Has("black-and-white");
  return {.Reset = false, .AcceptDamage = damaged, .BlackAndWhite = reduced};
}

/// The whole picture is in view: nothing scrolls.
void ShowWhole(Workspace& ws) {
  ResizeView(ws, ws.plot.Width(), ws.plot.Height());
}

void Open(const Context& context, StepArguments& arguments) {
  const OpenChoices choices = ReadChoices(arguments);
  if (!arguments.Good()) return;
  OpenPicture(context.ws, context.desktop, context.picture, choices);
  ShowWhole(context.ws);
}

void Reload(const Context& context, StepArguments& arguments) {
  const OpenChoices choices = ReadChoices(arguments);
  if (arguments.Good()) ReloadPicture(context.ws, context.desktop, choices);
}

void Set(const Context& context, StepArguments& arguments) {
  const std::string name = arguments.Word(), value = arguments.Word();
  if (!arguments.Good()) return;
  const RecipeOption* option = FindRecipeOption(name);
  if (option == nullptr) return arguments.Fail("there is no option \"" + name + "\"");
  if (!option->Take(context.ws, value))
    return arguments.Fail("\"" + name + "\" cannot be \"" + value + "\"");
  BuildFormats(context.ws.settings, context.ws.formats);
}

void PressMode(const Context& context, StepArguments& arguments) {
  const std::string key = arguments.Word();
  if (!arguments.Good()) return;
  if (key == "none") return ReleaseButtons(context.ws);
  if (ModeOfKey(key) == Mode::None) return arguments.Fail("there is no mode \"" + key + "\"");
  if (!CanPress(context.ws, key))
    return arguments.Fail("the mode \"" + key + "\" needs a picture" +
                          (key == "graphize" || key == "gridbuster" ? " and its axes" : ""));
  // A reading at the cursor that the axes do not allow is told at once and does no harm.
  Desktop quiet = context.desktop;
  quiet.ShowMessage = [](const Message&) { return Answer::Ok; };
  Toolbar_ButtonClick(context.ws, quiet, key);
}

void Axis(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const int row = arguments.Integer(0, 2);
  const auto [x, y] = PositionInside(context, arguments);
  const std::string xText = arguments.Number(), yText = arguments.Number();
  if (!arguments.Good()) return;
  if (ws.mode != Mode::AxisDef || ws.calibration.CurrentRow != row)
    return arguments.Fail("this axis point is not the next one");
  Plot_MouseMove(ws, context.desktop, 0, 0, x, y);
  ws.axisPanel.Rows[row].XText = xText;
  ws.axisPanel.Rows[row].YText = yText;
  Plot_Click(ws, context.desktop);
  if (!ws.calibration.Defined[row]) arguments.Fail("the axis point was refused");
}

void ReDefineRow(const Context& context, StepArguments& arguments) {
  const int row = arguments.Integer(0, 2);
  if (arguments.Good()) ReDefine(context.ws, row);
}

/// Captures with the press's snapping, or exactly there.
template <bool Snaps>
void Capture(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const auto [x, y] = PositionInside(context, arguments);
  if (!arguments.Good()) return;
  if (ws.mode != Mode::Graphize) return arguments.Fail("points need the mode \"graphize\"");
  Plot_MouseMove(ws, context.desktop, 0, 0, x, y);
  if (Snaps) Plot_MouseDown(ws, context.desktop, kLeftButton, 0, x, y);
  Plot_Click(ws, context.desktop);
}

bool MayExtract(const Context& context, StepArguments& arguments) {
  if (!arguments.Good()) return false;
  if (CanExtract(context.ws)) return true;
  arguments.Fail("this needs the axes and the mode \"graphize\" or \"blocktest\"");
  return false;
}

void TraceFrom(const Context& context, StepArguments& arguments) {
  const auto [x, y] = PositionInside(context, arguments);
  const ReplayedDesktop desktop(context.desktop, arguments);
  if (MayExtract(context, arguments)) Trace(context.ws, desktop, x, y);
}

void ScanRectangleOf(const Context& context, StepArguments& arguments) {
  ScanRectangle area;
  const auto [left, top] = PositionInside(context, arguments);
  area.Left = ToInt32(left);
  area.Top = ToInt32(top);
  // A drag may end beyond the edge.
  area.Right = arguments.Integer(-32768, 32767);
  area.Bottom = arguments.Integer(-32768, 32767);
  const ReplayedDesktop desktop(context.desktop, arguments);
  if (MayExtract(context, arguments)) ScanArea(context.ws, desktop, area);
}

void Block(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const auto [x, y] = PositionInside(context, arguments);
  const int size = arguments.Integer(0, 32767);
  if (!arguments.Good()) return;
  PaintBlocker(ws.blockers, ws.plot, ws.commands, ws.settings, ToInt16(x), ToInt16(y), size);
}

/// The pen's whole way: size, then "x,y" for the press and each place that the drag has reached.
template <PenTool Tool>
void MovePen(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const int size = arguments.Integer(0, 32767);
  std::vector<PlotPixel> way;
  while (!arguments.AtEnd()) {
    const std::string word = arguments.Word();
    const std::size_t comma = word.find(',');
    const auto x = IntegerText(word.substr(0, comma), -32768, 32767);
    const auto y = IntegerText(comma == word.npos ? "" : word.substr(comma + 1), -32768, 32767);
    if (!x || !y) return arguments.Fail("\"" + word + "\" is no position \"x,y\"");
    way.push_back({*x, *y});
  }
  if (way.empty() || way[0].X < 0 || way[0].X >= ws.plot.Width() || way[0].Y < 0 ||
      way[0].Y >= ws.plot.Height())
    arguments.Fail("the pen does not begin on the picture");
  if (!arguments.Good()) return;
  const auto at = [](int position) { return static_cast<float>(position); };
  UsePen(ws, Tool, at(way[0].X), at(way[0].Y), size);
  for (std::size_t i = 1; i < way.size(); ++i) DragPen(ws.pen, ws.plot, at(way[i].X), at(way[i].Y));
  ReleasePen(ws.pen, ws.plot);
}

void Grid(const Context& context, StepArguments& arguments) {
  const int direction = arguments.Choice({"x", "y"});
  const bool all = arguments.Choice({"all", "one"}) == 0;
  const bool nowhere = arguments.Has("nowhere");  // where no frame is
  const auto [x, y] = nowhere ? PlotPosition{-1, -1} : PositionInside(context, arguments);
  const ReplayedDesktop desktop(context.desktop, arguments);
  if (!arguments.Good()) return;
  BustGrid(context.ws, desktop, direction == 0 ? GridDirection::X : GridDirection::Y, all, x, y);
}

void UseImageTool(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const std::string name = arguments.Word();
  const int amount = arguments.Integer(-180, 300);
  // A user has seen that a picture was too small for the tool and went on with it as it was.
  const bool strict = arguments.Has("strict");
  if (!arguments.Good()) return;
  if (!CanShowImageTools(ws)) return arguments.Fail("there is no picture");
  int tool = 0;
  while (tool < kPictureTools && name != TextsOf(static_cast<PictureTool>(tool)).Name) ++tool;
  if (tool == kPictureTools) return arguments.Fail("there is no image tool \"" + name + "\"");
  ChooseTool(ws.imageTools, static_cast<PictureTool>(tool));
  SetAmount(ws.imageTools, amount);
  if (ws.imageTools.Amount != amount) return arguments.Fail("the amount is out of its range");
  if (strict && IsTooSmall(ws.imageTools.Tool, amount, {ws.plot.Width(), ws.plot.Height()}))
    return arguments.Fail("the picture is too small for that");
  // What it tells the user has read, but for its refusal.
  std::string told;
  Desktop desktop = context.desktop;
  desktop.ShowMessage = [&told](const Message& message) {
    told = message.Text;
    return Answer::Ok;
  };
  if (!ProcessImage(ws, desktop)) return arguments.Fail(told);
  ShowWhole(ws);
}

void ReduceColours(const Context& context, StepArguments& arguments) {
  const double threshold = LeadingNumber(arguments.Number());
  if (!arguments.Good()) return;
  if (!context.ws.plot.IsPresent()) return arguments.Fail("there is no picture");
  ReduceShownPicture(context.ws, context.desktop, threshold);
  ShowWhole(context.ws);
}

void UndoTool(const Context& context, StepArguments& arguments) {
  if (!arguments.Good()) return;
  if (!CanUndoImageTool(context.ws)) return arguments.Fail("there is nothing to undo");
  UndoImageTool(context.ws, context.desktop);
  ShowWhole(context.ws);
}

void ClearRows(const Context& context, StepArguments& arguments) {
  PointStore& store = context.ws.store;
  const int start = arguments.Integer(1, 32767), end = arguments.Integer(1, 32767);
  if (!arguments.Good()) return;
  store.Page.SelectionActive = true;
  store.Page.SelectionStart = ToInt16(start);
  store.Page.SelectionEnd = ToInt16(end);
  if (!CanClearSelected(store) || end < start || end > store.ListCount)
    return arguments.Fail("the list has no such rows to clear");
  ClearSelectedPoints(context.ws);
}

bool HasPoints(const Context& context, StepArguments& arguments, int count) {
  if (!arguments.Good()) return false;
  if (context.ws.store.CaptureCount >= count) return true;
  arguments.Fail("there are not enough captured points");
  return false;
}

void SortBy(const Context& context, StepArguments& arguments) {
  const bool rising = arguments.Choice({"ascending", "descending"}) == 0;
  if (!HasPoints(context, arguments, 1)) return;
  Sort(context.ws, context.desktop, rising ? SortOrder::Ascending : SortOrder::Descending);
}

void IntegrateBetween(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const bool all = arguments.Has("all");
  const int low = all ? 1 : arguments.Integer(1, 32767);
  const int high = all ? ws.store.CaptureCount : arguments.Integer(1, 32767);
  const ReplayedDesktop desktop(context.desktop, arguments);
  if (!HasPoints(context, arguments, 3)) return;
  ws.integrate = OpenIntegrate(ws.store);
  // In this order the limits never come too near on their way.
  MoveLowLimit(ws.integrate, ws.store, low);
  MoveHighLimit(ws.integrate, ws.store, high);
  if (ws.integrate.LowLimit != low || ws.integrate.HighLimit != high)
    return arguments.Fail("the limits are not three points apart, or not among the points");
  Integrate(ws, desktop);
}

void ReSampleTo(const Context& context, StepArguments& arguments) {
  Workspace& ws = context.ws;
  const int count = arguments.Integer(2, 32767);
  const std::string min = arguments.Word(), max = arguments.Word();
  const bool xLog = arguments.Has("x-log"), yLog = arguments.Has("y-log");
  const ReplayedDesktop desktop(context.desktop, arguments);
  if (!HasPoints(context, arguments, 2)) return;
  ShowSample(ws, context.desktop);
  ws.form = Form::None;
  SampleForm& form = ws.sample;
  form.SampleXLog = xLog;
  form.SampleYLog = yLog;
  if (min != "auto") form.MinXBox = min;
  if (max != "auto") form.MaxXBox = max;
  form.Steps = std::to_string(count);
  form.dXBox = form.StepShown = "";
  ReSample(ws, desktop);
}

template <void (*Run)(Workspace&)>
void Plain(const Context& context, StepArguments& arguments) {
  if (arguments.Good()) Run(context.ws);
}

template <void (*Run)(Workspace&)>
void OnPoints(const Context& context, StepArguments& arguments) {
  if (HasPoints(context, arguments, 1)) Run(context.ws);
}

struct Step {
  const char* Name;
  void (*Run)(const Context&, StepArguments&);
};

constexpr Step kSteps[] = {
    {"open", Open},
    {"reload", Reload},
    {"set", Set},
    {"mode", PressMode},
    {"axis", Axis},
    {"redefine", ReDefineRow},
    {"capture", Capture<true>},
    {"point", Capture<false>},
    {"trace", TraceFrom},
    {"scan", ScanRectangleOf},
    {"block", Block},
    {"clear-last-blocker", Plain<RemoveLastBlocker>},
    {"clear-blockers", Plain<RemoveAllBlockers>},
    {"draw", MovePen<PenTool::Draw>},
    {"erase", MovePen<PenTool::Erase>},
    {"grid", Grid},
    {"undo-edit", Plain<UndoErase>},
    {"image-tool", UseImageTool},
    {"undo-image-tool", UndoTool},
    {"black-white", ReduceColours},
    {"refresh", Plain<RefreshPlot>},
    {"clear-data",
     [](const Context& context, StepArguments& arguments) {
       if (arguments.Good()) ClearAllData(context.ws, context.desktop, false);
     }},
    {"reset",
     [](const Context& context, StepArguments& arguments) {
       if (!arguments.Good()) return;
       Reset(context.ws, context.desktop);
       KeepPictureUsable(context.ws);
     }},
    {"clear-selected", ClearRows},
    {"sort", SortBy},
    {"swap", OnPoints<Swap>},
    {"undo-list", OnPoints<UndoList>},
    {"curve-length",
     [](const Context& context, StepArguments& arguments) {
       if (HasPoints(context, arguments, 2)) CurveLength(context.ws, context.desktop);
     }},
    {"integrate", IntegrateBetween},
    {"resample", ReSampleTo},
    {"save",
     [](const Context& context, StepArguments& arguments) {
       const std::string title = arguments.Word();
       if (arguments.Good()) context.ws.dataFileTitle = title;
     }},
};

}  // namespace

void StartReplay(Workspace& ws) {
  BuildFormats(ws.settings, ws.formats);
  InitAxisDefFrame(ws.calibration, ws.axisPanel);
  ClearList(ws.store);
}

std::optional<std::string> ReplayStep(Workspace& ws, const Desktop& desktop,
                                      const std::string& step,
                                      const std::filesystem::path& picture) {
  std::optional<std::vector<std::string>> words = Tokenize(step);
  if (!words) return "a quotation mark is missing";
  if (words->empty()) return "there is nothing to do";
  const std::string name = words->front();
  words->erase(words->begin());
  const auto* found = std::find_if(std::begin(kSteps), std::end(kSteps),
                                   [&](const Step& known) { return name == known.Name; });
  if (found == std::end(kSteps)) return "there is no step \"" + name + "\"";
  StepArguments arguments(std::move(*words));
  found->Run({ws, desktop, picture}, arguments);
  if (!arguments.Problem().empty()) return arguments.Problem();
  return std::nullopt;
}

}  // namespace graphize
