#include "workspace/step_text.h"

#include <limits>
#include <type_traits>
#include <utility>

#include "base/tokens.h"
#include "image_tools/image_tools.h"
#include "workspace/step_words.h"

namespace graphize {

namespace {

// The fields of each step, for writing and reading alike.

template <class Io>
void Fields(Io& io, Interruptions& went) {
  io.Numbers(went.Escape, "stop");
  io.Flag(went.Told, "told");
  io.Flag(went.Failed, "failed");
}

template <class Io>
void FileFields(Io& io, auto& step) {
  io.Flag(step.Damaged, "damaged");
  bool isPart = !step.Part.empty();
  io.Flag(isPart, "part");
  if (isPart) io.Word(step.Part);
  io.Flag(step.BlackAndWhite, "black-and-white");
  bool isOther = step.BlackAndWhite && step.Threshold != kMiddleLevel;
  io.Flag(isOther, "threshold");
  if (isOther) io.Integer(step.Threshold, 1, 255);
}
template <class Io>
void Fields(Io& io, OpenStep& step) {
  io.Integer(step.Picture, 1, std::numeric_limits<int>::max());
  FileFields(io, step);
}
template <class Io>
void Fields(Io& io, ReloadStep& step) {
  FileFields(io, step);
}
template <class Io>
void Fields(Io& io, SetStep& step) {
  io.Word(step.Option);
  io.Word(step.Value);
}
template <class Io>
void Fields(Io& io, ModeStep& step) {
  io.template Choice<Mode>(step.To, "mode",
                           {{Mode::None, "none"},
                            {Mode::AxisDef, "axisdef"},
                            {Mode::Graphize, "graphize"},
                            {Mode::BlockTest, "blocktest"},
                            {Mode::DrawErase, "drawerase"},
                            {Mode::GridBuster, "gridbuster"},
                            {Mode::EditPoints, "editpoints"},
                            {Mode::ReadCurve, "readcurve"},
                            {Mode::FindSymbols, "findsymbols"}});
}
template <class Io>
void Fields(Io& io, AxisStep& step) {
  io.Integer(step.Row, 0, 2);
  io.Position(step.X, step.Y);
  io.Value(step.XText);
  io.Value(step.YText);
  bool isExact = step.At.has_value();
  io.Flag(isExact, "at");
  if (!isExact) return;
  if (!step.At) step.At.emplace();
  io.Position(step.At->Column, step.At->Row);
  bool isKnown = step.Sigma != 0;
  io.Flag(isKnown, "sigma");
  if (isKnown) io.Number(step.Sigma);
}
template <class Io>
void Fields(Io& io, ReferenceStep& step) {
  io.Position(step.X, step.Y);
  io.Word(step.XText);
  io.Word(step.YText);
}
template <class Io>
void Fields(Io& io, RemoveReferenceStep& step) {
  io.Integer(step.Number, 1, kMostReferences);
}
template <class Io>
void Fields(Io& io, RefineStep& step) {
  io.template Choice<bool>(step.On, "state", {{true, "on"}, {false, "off"}});
}
template <class Io>
void Fields(Io& io, RedefineStep& step) {
  io.Integer(step.Row, 0, 2);
}
template <class Io>
void Fields(Io& io, CaptureStep& step) {
  io.Position(step.X, step.Y);
}
template <class Io>
void Fields(Io& io, PointStep& step) {
  io.Position(step.X, step.Y);
}
template <class Io>
void Fields(Io& io, TraceStep& step) {
  io.Position(step.X, step.Y);
  Fields(io, step.Went);
}
template <class Io>
void Fields(Io& io, ScanStep& step) {
  // A drag may end beyond the edge.
  for (std::int32_t* side : {&step.Area.Left, &step.Area.Top, &step.Area.Right, &step.Area.Bottom})
    io.Integer(*side, -kMostPixels - 1, kMostPixels);
  Fields(io, step.Went);
}
template <class Io>
void Fields(Io& io, ReadStep& step) {
  using Kind = ReadingDensity::Kind;
  io.Position(step.X, step.Y);
  bool isOwn = step.Tolerance != 1;
  io.Flag(isOwn, "tolerance");
  if (isOwn) io.Number(step.Tolerance);
  bool isLed = !step.Through.empty();
  io.Flag(isLed, "through");
  if (isLed) {
    int count = static_cast<int>(step.Through.size());
    io.Integer(count, 1, ReadStep::kMostThrough);
    step.Through.resize(static_cast<std::size_t>(count));
    for (auto& [x, y] : step.Through) {
      io.Integer(x, 0, kMostPixels);
      io.Integer(y, 0, kMostPixels);
    }
  }
  io.template Choice<Kind>(
      step.Density.Is, "density",
      {{Kind::Each, "each"}, {Kind::Every, "every"}, {Kind::Bends, "bends"}, {Kind::AtX, "at"}});
  if (step.Density.Is == Kind::Every) io.Integer(step.Density.Pixels, 1, kMostPixels);
  if (step.Density.Is == Kind::AtX) io.Values(step.Density.Xs);
}
template <class Io>
void Fields(Io& io, SymbolsStep& step) {
  io.Position(step.X, step.Y);
  io.template Choice<SymbolCentre>(step.Centre, "centre",
                                   {{SymbolCentre::Mass, "mass"}, {SymbolCentre::Box, "box"}});
  io.Number(step.Tolerance);
  bool without = step.LeftOut.Count() > 0;
  io.Flag(without, "without");
  if (without) io.Points(step.LeftOut);
}
template <class Io>
void Fields(Io& io, ReadAllStep& step) {
  int count = static_cast<int>(step.Taken.size());
  io.Integer(count, 0, kMostPixels);
  step.Taken.resize(static_cast<std::size_t>(count));
  for (ReadAllStep::Curve& curve : step.Taken) {
    io.Integer(curve.Number, 1, kMostPixels);
    io.Word(curve.Name);
  }
}
template <class Io>
void Fields(Io& io, InkStep& step) {
  for (int* channel : {&step.Red, &step.Green, &step.Blue}) io.Integer(*channel, 0, 255);
  io.Number(step.Tolerance);
}
template <class Io>
void Fields(Io& io, BlockStep& step) {
  io.Position(step.X, step.Y);
  io.Integer(step.Size, 0, kMostPixels);
}
template <class Io>
void Fields(Io& io, PenWay& step) {
  io.Integer(step.Size, 0, kMostPixels);
  io.Way(step.Way);
}
template <class Io>
void Fields(Io& io, GridStep& step) {
  io.template Choice<GridDirection>(step.Direction, "direction",
                                    {{GridDirection::X, "x"}, {GridDirection::Y, "y"}});
  io.template Choice<bool>(step.All, "number of lines", {{true, "all"}, {false, "one"}});
  io.Optional(step.At, "nowhere", [&](PlotPosition& at) { io.Position(at.Column, at.Row); });
  Fields(io, step.Went);
}
template <class Io>
void Fields(Io& io, ImageToolStep& step) {
  static_assert(kPictureTools == 8);
  const auto named = [](PictureTool tool) { return std::pair(tool, TextsOf(tool).Name); };
  io.template Choice<PictureTool>(
      step.Tool, "image tool",
      {named(PictureTool::Blur), named(PictureTool::EdgeDetect), named(PictureTool::Negate),
       named(PictureTool::Sharpen), named(PictureTool::Soften), named(PictureTool::Resize),
       named(PictureTool::Stretch), named(PictureTool::Rotate)});
  io.Integer(step.Amount, -180, 300);
  io.Flag(step.Strict, "strict");
}
template <class Io>
void Fields(Io& io, InkThreshold& threshold) {
  using Kind = InkThreshold::Kind;
  for (const auto& [kind, word] : {std::pair(Kind::Auto, "auto"), {Kind::Local, "local"}}) {
    bool is = threshold.Is == kind;
    io.Flag(is, word);
    if (is) return void(threshold.Is = kind);
  }
  io.Number(threshold.Level);
}
template <class Io>
void Fields(Io& io, BlackWhiteStep& step) {
  Fields(io, step.Threshold);
}
template <class Io>
void Fields(Io& io, ClearRowsStep& step) {
  io.Integer(step.First, 1, kMostPixels);
  io.Integer(step.Last, 1, kMostPixels);
}
template <class Io>
void Fields(Io& io, MovePointsStep& step) {
  io.Points(step.Points);
  io.Position(step.Columns, step.Rows);
}
template <class Io>
void Fields(Io& io, DeletePointsStep& step) {
  io.Points(step.Points);
}
template <class Io>
void Fields(Io& io, SortStep& step) {
  io.template Choice<SortOrder>(
      step.Order, "order",
      {{SortOrder::Ascending, "ascending"}, {SortOrder::Descending, "descending"}});
}
template <class Io>
void Fields(Io& io, IntegrateStep& step) {
  io.Optional(step.Between, "all", [&](IntegrateStep::Limits& limits) {
    io.Integer(limits.Low, 1, kMostPixels);
    io.Integer(limits.High, 1, kMostPixels);
  });
  Fields(io, step.Went);
}
template <class Io>
void Fields(Io& io, ResampleStep& step) {
  io.Value(step.Count);
  io.Word(step.Min);
  io.Word(step.Max);
  io.Flag(step.XLog, "x-log");
  io.Flag(step.YLog, "y-log");
  Fields(io, step.Went);
}
template <class Io, class Record>
requires(std::is_same_v<Record, NewCurveStep> || std::is_same_v<Record, RenameCurveStep> ||
         std::is_same_v<Record, SelectCurveStep>) void Fields(Io& io, Record& step) {
  io.Word(step.Curve);
}
template <class Io>
void Fields(Io& io, ShowCurveStep& step) {
  io.template Choice<bool>(step.Shown, "state", {{true, "on"}, {false, "off"}});
}
template <class Io>
void Fields(Io& io, SaveStep& step) {
  io.Word(step.Title);
}
/// A step without any.
template <class Io, class Record>
requires(std::is_empty_v<Record> || std::is_same_v<Record, ClearDataStep>) void Fields(Io&,
                                                                                       Record&) {}

template <std::size_t Index = 0>
std::variant<Step, std::string> ReadNamed(std::vector<std::string> words) {
  if constexpr (Index == std::variant_size_v<Step>) {
    return "there is no step \"" + words.front() + "\"";
  } else {
    using Record = std::variant_alternative_t<Index, Step>;
    if (words.front() != Record::Name) return ReadNamed<Index + 1>(std::move(words));
    words.erase(words.begin());
    StepReader reader(std::move(words));
    Record record;
    Fields(reader, record);
    reader.End();
    if (!reader.Problem.empty()) return reader.Problem;
    return Step(std::move(record));
  }
}

}  // namespace

std::string TextOf(const Step& step) {
  return std::visit(
      [](auto record) {
        StepWriter writer{record.Name};
        Fields(writer, record);
        return writer.Text;
      },
      step);
}

std::variant<Step, std::string> StepOf(std::string_view line) {
  std::optional<std::vector<std::string>> words = Tokenize(line);
  if (!words) return std::string("a quotation mark is missing");
  if (words->empty()) return std::string("there is nothing to do");
  return ReadNamed(std::move(*words));
}

}  // namespace graphize
