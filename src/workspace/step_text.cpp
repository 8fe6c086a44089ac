#include "workspace/step_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <type_traits>
#include <utility>

#include "base/numbers.h"
#include "base/tokens.h"
#include "image_tools/image_tools.h"

namespace graphize {

namespace {

constexpr int kMostPixels = 32767;

/// Writes the fields of a step as words.
class Writer {
 public:
  std::string Text;

  void Word(std::string& word) { Text += " " + Quote(word); }
  void Integer(int& number, int, int) { Text += " " + std::to_string(number); }
  void Number(float& number) { Text += " " + ShortestText(number); }
  void Position(float& x, float& y) {
    Number(x);
    Number(y);
  }
  void Value(std::string& text) { Word(text); }
  template <class Choices>
  void Choice(Choices& value, const char*,
              std::initializer_list<std::pair<Choices, const char*>> names) {
    for (const auto& [choice, name] : names)
      if (choice == value) Text += std::string(" ") + name;
  }
  void Flag(bool& on, const char* word) {
    if (on) Text += std::string(" ") + word;
  }
  template <class Record, class Fields>
  void Optional(std::optional<Record>& record, const char* without, const Fields& fields) {
    record ? fields(*record) : void(Text += std::string(" ") + without);
  }
  void Way(std::vector<PlotPixel>& way) {
    for (const auto& [x, y] : way) Text += " " + std::to_string(x) + "," + std::to_string(y);
  }
  void Points(PointSet& points) {
    const char* between = " ";
    for (const auto& [first, last] : points.Ranges()) {
      Text += std::exchange(between, ",") + std::to_string(first);
      if (last != first) Text += "-" + std::to_string(last);
    }
  }
  void Values(std::vector<float>& values) {
    for (float& value : values) Number(value);
  }
  void Numbers(std::vector<std::int64_t>& numbers, const char* word) {
    if (!numbers.empty()) Text += std::string(" ") + word;
    for (const std::int64_t number : numbers) Text += " " + std::to_string(number);
  }
};

/// Takes the fields from words, one by one. What is missing or makes no sense is remembered, the
/// first of it, and something in range comes instead.
class Reader {
 public:
  explicit Reader(std::vector<std::string> words) : words_(std::move(words)) {}

  std::string Problem;

  void Word(std::string& word) {
    if (!AtEnd())
      word = words_[next_++];
    else
      Fail("something is missing at the end");
  }
  void Integer(int& number, int least, int most) {
    std::string word;
    Word(word);
    if (const auto read = IntegerText(word, least, most))
      number = *read;
    else
      Fail("\"" + word + "\" is no whole number from " + std::to_string(least) + " to " +
           std::to_string(most));
  }
  void Number(float& number) {
    std::string word;
    Word(word);
    const auto read = WholeNumberText(word);
    if (!read || std::fabs(*read) > std::numeric_limits<float>::max())
      return Fail("\"" + word + "\" is no number");
    number = static_cast<float>(*read);
  }
  void Position(float& x, float& y) {
    Number(x);
    Number(y);
  }
  /// Text that begins with a number, as typed.
  void Value(std::string& text) {
    Word(text);
    if (!FindLeadingNumber(text)) Fail("\"" + text + "\" is no number");
  }
  template <class Choices>
  void Choice(Choices& value, const char* what,
              std::initializer_list<std::pair<Choices, const char*>> names) {
    std::string word;
    Word(word);
    for (const auto& [choice, name] : names)
      if (word == name) return void(value = choice);
    Fail(std::string("there is no ") + what + " \"" + word + "\"");
  }
  void Flag(bool& on, const char* word) {
    on = IsNext(word);
    if (on) ++next_;
  }
  template <class Record, class Fields>
  void Optional(std::optional<Record>& record, const char* without, const Fields& fields) {
    bool absent = false;
    Flag(absent, without);
    if (absent) return record.reset();
    record = Record{};
    fields(*record);
  }
  void Way(std::vector<PlotPixel>& way) {
    while (!AtEnd()) {
      const std::string& word = words_[next_++];
      const std::size_t comma = word.find(',');
      const auto x = IntegerText(word.substr(0, comma), -kMostPixels - 1, kMostPixels);
      const auto y = IntegerText(comma == word.npos ? "" : word.substr(comma + 1), -kMostPixels - 1,
                                 kMostPixels);
      if (!x || !y) return Fail("\"" + word + "\" is no position \"x,y\"");
      way.push_back({*x, *y});
    }
    if (way.empty()) Fail("the pen needs a position \"x,y\"");
  }
  /// "1-734,800"
  void Points(PointSet& points) {
    std::string word;
    Word(word);
    const auto number = [](const std::string& text) {
      return IntegerText(text, 1, std::numeric_limits<int>::max());
    };
    std::vector<PointSet::Range> ranges;
    for (std::size_t at = 0, end = 0; at <= word.size(); at = end + 1) {
      end = std::min(word.find(',', at), word.size());
      const std::string range = word.substr(at, end - at);
      const std::size_t dash = range.find('-');
      const auto first = number(range.substr(0, dash));
      const auto last = dash == range.npos ? first : number(range.substr(dash + 1));
      if (!first || !last) return Fail("\"" + word + "\" are no points");
      ranges.push_back({static_cast<PointId>(*first), static_cast<PointId>(*last)});
    }
    if (auto read = PointSet::OfRanges(std::move(ranges)))
      points = *std::move(read);
    else
      Fail("the points \"" + word + "\" are not in order");
  }
  /// All that is left.
  void Values(std::vector<float>& values) {
    do Number(values.emplace_back());
    while (!AtEnd());
  }
  void Numbers(std::vector<std::int64_t>& numbers, const char* word) {
    bool some = false;
    Flag(some, word);
    if (!some) return;
    while (!AtEnd() && IntegerText(words_[next_], 1, std::numeric_limits<int>::max()))
      numbers.push_back(*IntegerText(words_[next_++], 1, std::numeric_limits<int>::max()));
    if (numbers.empty()) Fail(std::string("\"") + word + "\" needs numbers");
  }

  void Fail(const std::string& problem) {
    if (Problem.empty()) Problem = problem;
  }
  void End() {
    if (!AtEnd()) Fail("\"" + words_[next_] + "\" is too much");
  }

 private:
  bool AtEnd() const { return next_ >= words_.size(); }
  bool IsNext(std::string_view word) const { return !AtEnd() && words_[next_] == word; }
  std::vector<std::string> words_;
  std::size_t next_ = 0;
};

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
    Reader reader(std::move(words));
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
        Writer writer{record.Name};
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
