#include "batch/digitize.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/tokens.h"
#include "batch/axes_command.h"
#include "batch/digitize_settings.h"
#include "batch/option_values.h"
#include "capture/curve_list.h"
#include "image_tools/image_tools.h"
#include "workspace/step.h"

namespace graphize {

namespace {

float At(int position) {
  return static_cast<float>(position);
}

bool HasAny(const CommandLine& line, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(), [&](const char* name) { return line.Has(name); });
}

constexpr std::initializer_list<const char*> kCapturing = {"point",   "trace",    "read",
                                                           "symbols", "read-all", "scan"};

bool Captures(const CommandLine& line) {
  return HasAny(line, kCapturing);
}

class Maker {
 public:
  explicit Maker(const CommandLine& line) : line_(line) {}

  std::vector<BatchStep> Make() {
    const GivenOption* part = line_.Find("part");
    Add(OpenStep{.Damaged = line_.Has("damaged"), .Part = part != nullptr ? PartOf(*part) : ""},
        part != nullptr ? part->Name() : "");
    for (const GivenOption& option : line_.Options) MakeTool(option);
    LookForAxes();
    for (BatchStep& step : SettingSteps(line_)) Add(std::move(step.Do), step.Origin);
    if (!IsPictureOnly(line_) ||
        HasAny(line_, {"origin", "x-axis", "y-axis", "propose-axes", "grid", "grid-line"}))
      MakeAxes();
    for (const GivenOption& option : line_.Options) MakeOnPicture(option);
    if (!Captures(line_) && !IsPictureOnly(line_))
      throw UsageError(
          "nothing is captured: --point, --trace, --read, --symbols, --read-all or "
          "--scan is missing");
    MakeOnLists();
    if (line_.Has("resample-log") && !line_.Has("resample"))
      throw UsageError("--resample-log needs --resample");
    if (const GivenOption* title = line_.Find("title"))
      Add(SaveStep{.Title = title->Value}, title->Name());
    return std::move(steps_);
  }

 private:
  void Add(Step step, const std::string& origin) {
    steps_.push_back({.Do = std::move(step), .Origin = origin});
    steps_.back().LooksFor = std::exchange(lookNext_, std::nullopt);
  }

  /// An image tool, named as its step is, or the reduction.
  void MakeTool(const GivenOption& option) {
    if (option.Is("black-white") || option.Is("threshold")) return MakeReduction(option);
    if (option.Is("ink")) return Add(InkOf(option), option.Name());
    for (int i = 0; i < kPictureTools; ++i) {
      const auto tool = static_cast<PictureTool>(i);
      if (!option.Is(TextsOf(tool).Name)) continue;
      ImageToolsForm form;
      ChooseTool(form, tool);
      const auto amount = form.AmountEnabled ? IntegerText(option.Value, form.Minimum, form.Maximum)
                                             : std::optional(form.Amount);
      if (!amount)
        Refuse(option, "a whole number from " + std::to_string(form.Minimum) + " to " +
                           std::to_string(form.Maximum) + " is expected");
      Add(ImageToolStep{.Tool = tool, .Amount = *amount, .Strict = true}, option.Name());
    }
  }

  /// --black-white and --threshold are one reduction, at the first of them.
  void MakeReduction(const GivenOption& option) {
    BlackWhiteStep step;
    if (const GivenOption* threshold = line_.Find("threshold")) {
      const auto number = WholeNumberText(threshold->Value);
      if (threshold->Value == "auto")
        step.Threshold.Is = InkThreshold::Kind::Auto;
      else if (threshold->Value == "local")
        step.Threshold.Is = InkThreshold::Kind::Local;
      else if (number && *number > 0 && *number <= 255)
        step.Threshold.Level = static_cast<float>(*number);
      else
        Refuse(*threshold, "auto, local or a number above 0 and up to 255 is expected");
    }
    if (!std::exchange(reduced_, true)) Add(step, option.Name());
  }

  static InkStep InkOf(const GivenOption& option) {
    const std::vector<std::string> parts = Split(option.Value, ',');
    InkStep step;
    int* const channels[] = {&step.Red, &step.Green, &step.Blue};
    if (parts.size() != 3 && parts.size() != 4)
      Refuse(option, "R,G,B or R,G,B,TOLERANCE is expected");
    for (std::size_t i = 0; i < 3; ++i) {
      const auto level = IntegerText(parts[i], 0, 255);
      if (!level) Refuse(option, "R,G,B are whole numbers from 0 to 255");
      *channels[i] = *level;
    }
    if (parts.size() == 4) step.Tolerance = SingleOf(option, parts[3]);
    return step;
  }

  /// On the picture in its colours, where nothing but the reduction changes it afterwards.
  void LookForAxes() {
    const AxesChoice choice = AxesChoiceOf(line_);
    if (!line_.Has("propose-axes")) {
      for (const char* chooses : {"plot", "x-scale", "y-scale"})
        if (const GivenOption* option = line_.Find(chooses))
          Refuse(*option, "--propose-axes is needed");
      return;
    }
    for (const char* other : {"origin", "x-axis", "y-axis", "x-log", "y-log"})
      if (const GivenOption* option = line_.Find(other))
        Refuse(*option, "--propose-axes finds the axes itself");
    if (Is<BlackWhiteStep>(steps_.back().Do))
      steps_.back().LooksFor = choice;
    else
      lookNext_ = choice;
  }

  void TakeAxes() {
    const auto take = [this](Step step) {
      Add(std::move(step), "--propose-axes");
      steps_.back().TakesAxes = true;
    };
    for (const char* log : {"x-log", "y-log"}) take(SetStep{log, "off"});
    for (int row = 0; row < 3; ++row) take(AxisStep{.Row = row});
    mode_ = Mode::AxisDef;
  }

  void MakeAxes() {
    Add(ModeStep{Mode::AxisDef}, "");
    if (line_.Has("propose-axes")) return TakeAxes();
    const GivenOption& origin = Needed("origin");
    const auto [at, values] = AxisPointOf(origin, 2, "COLUMN,ROW:X,Y is expected");
    const GivenOption& x = Needed("x-axis");
    const auto [xAt, xValues] = AxisPointOf(x, 1, "COLUMN,ROW:X is expected");
    const GivenOption& y = Needed("y-axis");
    const auto [yAt, yValues] = AxisPointOf(y, 1, "COLUMN,ROW:Y is expected");
    CheckApart(x, at.X == xAt.X, values[0], xValues[0]);
    CheckApart(y, at.Y == yAt.Y, values[1], yValues[0]);
    Add(AxisStep{0, At(at.X), At(at.Y), values[0], values[1]}, origin.Name());
    Add(AxisStep{1, At(xAt.X), At(xAt.Y), xValues[0], values[1]}, x.Name());
    Add(AxisStep{2, At(yAt.X), At(yAt.Y), values[0], yValues[0]}, y.Name());
    CheckLog("x-log", {values[0], xValues[0]}, {&origin, &x});
    CheckLog("y-log", {values[1], yValues[0]}, {&origin, &y});
    mode_ = Mode::AxisDef;
  }

  /// The curve "curve 1" that is there gets the first name, unless it has points by then.
  void MakeCurve(const GivenOption& option) {
    const bool first = curves_.empty() && !captured_;
    if (curves_.empty() && captured_) curves_.push_back(CurveList().Curves.front().Name);
    const std::string name = CurveNameOf(option.Value);
    if (const std::string fault = CurveNameFault(CurveList(), name, 0); !fault.empty())
      Refuse(option, AsClause(fault));
    if (std::find(curves_.begin(), curves_.end(), name) != curves_.end())
      Refuse(option, "there is a curve of this name before");
    curves_.push_back(name);
    if (!first)
      Add(NewCurveStep{name}, option.Name());
    else if (name != CurveList().Curves.front().Name)
      Add(RenameCurveStep{name}, option.Name());
  }

  /// For each curve; the first one is the last, and then is the one that is worked on.
  void MakeOnLists() {
    const auto make = [this] {
      for (const GivenOption& option : line_.Options) MakeOnList(option);
    };
    if (line_.Has("read-all") &&
        HasAny(line_, {"sort", "swap", "resample", "curve-length", "integrate"}))
      throw UsageError("--read-all gives several curves, the options of the list are for one");
    if (curves_.size() < 2) return make();
    for (auto curve = curves_.rbegin(); curve != curves_.rend(); ++curve) {
      if (curve != curves_.rbegin()) Add(SelectCurveStep{*curve}, "--curve");
      make();
    }
  }

  void MakeOnPicture(const GivenOption& option) {
    captured_ = captured_ || std::any_of(kCapturing.begin(), kCapturing.end(),
                                         [&](const char* name) { return option.Is(name); });
    if (option.Is("curve")) return MakeCurve(option);
    if (option.Is("grid")) {
      const auto [lines, at] = SplitOff(option.Value);
      if (lines != "x" && lines != "y" && lines != "both")
        Refuse(option, "x, y or both is expected");
      for (const auto& [name, direction] : kDirections)
        if (lines == name || lines == "both")
          In(Mode::GridBuster, Grid(option, direction, at), option);
    } else if (option.Is("grid-line")) {
      const auto [line, at] = SplitOff(option.Value);
      if ((line != "x" && line != "y") || at.empty())
        Refuse(option, "x:COLUMN,ROW or y:COLUMN,ROW is expected");
      GridStep step = Grid(option, line == "x" ? GridDirection::X : GridDirection::Y, at);
      step.All = false;
      In(Mode::GridBuster, step, option);
    } else if (option.Is("erase")) {
      const auto [at, size] = SizedPixelOf(option);
      In(Mode::DrawErase, EraseStep{{size, {at}}}, option);
    } else if (option.Is("block")) {
      const auto [at, size] = SizedPixelOf(option);
      In(Mode::BlockTest, BlockStep{At(at.X), At(at.Y), size}, option);
    } else if (option.Is("point")) {
      const PlotPixel at = PixelOf(option, option.Value);
      In(Mode::Graphize, CaptureStep{At(at.X), At(at.Y)}, option);
    } else if (option.Is("trace")) {
      const PlotPixel at = PixelOf(option, option.Value);
      Extract(TraceStep{At(at.X), At(at.Y), {}}, "3", option);
    } else if (option.Is("read")) {
      In(Mode::Graphize, Read(option), option);
    } else if (option.Is("symbols")) {
      In(Mode::Graphize, Symbols(option), option);
    } else if (option.Is("read-all")) {
      In(Mode::Graphize, ReadAllStep{}, option);
    } else if (option.Is("scan")) {
      const auto [left, top, right, bottom] =
          Numbers<4>(option, option.Value, "LEFT,TOP,RIGHT,BOTTOM is expected");
      Extract(ScanStep{{.Left = left, .Top = top, .Right = right, .Bottom = bottom}, {}}, "2",
              option);
    }
  }

  static constexpr std::pair<const char*, GridDirection> kDirections[] = {{"x", GridDirection::X},
                                                                          {"y", GridDirection::Y}};

  /// All lines of a direction. Without a position where nothing is: the frame stays.
  static GridStep Grid(const GivenOption& option, GridDirection direction, const std::string& at) {
    GridStep step{.Direction = direction, .All = true};
    if (at.empty()) return step;
    const PlotPixel click = PixelOf(option, at);
    step.At = PlotPosition{At(click.X), At(click.Y)};
    return step;
  }

  /// Of two answers to one question, which one holds?
  static void Once(const GivenOption& option, bool& isGiven, const char* what) {
    if (std::exchange(isGiven, true))
      Refuse(option, std::string("one ") + what + " is expected, not two");
  }

  /// COLUMN,ROW with what else is told behind colons.
  static ReadStep Read(const GivenOption& option) {
    const std::vector<std::string> parts = Split(option.Value, ':');
    const PlotPixel click = PixelOf(option, parts.front());
    ReadStep step{At(click.X), At(click.Y), {}};
    bool hasTolerance = false, hasDensity = false;
    for (std::size_t i = 1; i < parts.size(); ++i) {
      if (parts[i].starts_with("tolerance=")) {
        Once(option, hasTolerance, "tolerance");
        step.Tolerance = SingleOf(option, parts[i].substr(10));
      } else if (parts[i].starts_with("through=")) {
        step.Through.push_back(PixelOf(option, parts[i].substr(8)));
      } else {
        step.Density = DensityOf(option, parts[i]);
        Once(option, hasDensity, "choice of points");
      }
    }
    return step;
  }

  static SymbolsStep Symbols(const GivenOption& option) {
    const std::vector<std::string> parts = Split(option.Value, ':');
    const PlotPixel click = PixelOf(option, parts.front());
    SymbolsStep step{At(click.X), At(click.Y)};
    bool hasTolerance = false, hasCentre = false;
    for (std::size_t i = 1; i < parts.size(); ++i) {
      if (parts[i] == "mass" || parts[i] == "box") {
        Once(option, hasCentre, "of mass and box");
        step.Centre = parts[i] == "mass" ? SymbolCentre::Mass : SymbolCentre::Box;
      } else if (parts[i].starts_with("tolerance=")) {
        Once(option, hasTolerance, "tolerance");
        step.Tolerance = SingleOf(option, parts[i].substr(10));
      } else {
        Refuse(option, "COLUMN,ROW is expected, or with :mass, :box or :tolerance=T behind");
      }
    }
    return step;
  }

  void MakeOnList(const GivenOption& option) {
    if (option.Is("sort")) {
      if (option.Value != "ascending" && option.Value != "descending")
        Refuse(option, "ascending or descending is expected");
      Add(SortStep{option.Value == "ascending" ? SortOrder::Ascending : SortOrder::Descending},
          option.Name());
    } else if (option.Is("swap")) {
      Add(SwapStep{}, option.Name());
    } else if (option.Is("curve-length")) {
      Add(CurveLengthStep{}, option.Name());
    } else if (option.Is("resample")) {
      AddResample(option);
    } else if (option.Is("integrate")) {
      IntegrateStep step;
      if (option.Value != "all") {
        const auto [low, high] =
            Numbers<2>(option, option.Value, "all or LOW,HIGH, numbers of points, is expected");
        step.Between = {low, high};
      }
      Add(step, option.Name());
    }
  }

  void AddResample(const GivenOption& option) {
    const char* expected = "COUNT or COUNT:FIRST,LAST is expected";
    const auto [count, range] = SplitOff(option.Value);
    if (!IntegerText(count, 2, 32767)) Refuse(option, expected);
    ResampleStep step{.Count = count};
    if (!range.empty()) {
      const std::vector<std::string> ends = Split(range, ',');
      if (ends.size() != 2 || !WholeNumberText(ends[0]) || !WholeNumberText(ends[1]))
        Refuse(option, expected);
      step.Min = ends[0];
      step.Max = ends[1];
    }
    if (const GivenOption* log = line_.Find("resample-log")) {
      if (log->Value != "x" && log->Value != "y" && log->Value != "both")
        Refuse(*log, "x, y or both is expected");
      step.XLog = log->Value != "y";
      step.YLog = log->Value != "x";
    }
    Add(step, option.Name());
  }

  /// A step in the mode that it needs.
  void In(Mode mode, Step step, const GivenOption& option) {
    if (mode != mode_) Add(ModeStep{mode}, option.Name());
    mode_ = mode;
    Add(std::move(step), option.Name());
  }

  /// A trace or scan; `yIncrement` is what its rows step by unless the user says.
  void Extract(Step step, const char* yIncrement, const GivenOption& option) {
    if (!line_.Has("y-increment")) Add(SetStep{"y-increment", yIncrement}, option.Name());
    In(Mode::Graphize, std::move(step), option);
  }

  const GivenOption& Needed(const char* name) {
    const GivenOption* option = line_.Find(name);
    if (option == nullptr) throw UsageError(std::string("--") + name + " is missing");
    return *option;
  }

  /// An axis needs two places and two values.
  void CheckApart(const GivenOption& option, bool samePlace, const std::string& origin,
                  const std::string& value) {
    if (samePlace)
      Refuse(option,
             std::string("it lies in the origin's ") + (option.Is("x-axis") ? "column" : "row"));
    if (SingleOf(option, origin) == SingleOf(option, value))
      Refuse(option, "it has the origin's value");
  }

  void CheckLog(const char* log, const std::array<std::string, 2>& values,
                const std::array<const GivenOption*, 2>& options) {
    if (!line_.Has(log)) return;
    for (int i = 0; i < 2; ++i)
      if (!(SingleOf(*options[i], values[i]) > 0))
        Refuse(*options[i], std::string("with --") + log + " the value must be above 0");
  }

  const CommandLine& line_;
  std::vector<BatchStep> steps_;
  std::vector<std::string> curves_;  // as far as they have been named
  bool captured_ = false;
  Mode mode_ = Mode::None;
  bool reduced_ = false;
  std::optional<AxesChoice> lookNext_;
};

}  // namespace

bool IsPictureOnly(const CommandLine& line) {
  return line.Has("save-picture") && !line.Has("output") && !Captures(line);
}

std::vector<BatchStep> DigitizeSteps(const CommandLine& line) {
  return Maker(line).Make();
}

}  // namespace graphize
