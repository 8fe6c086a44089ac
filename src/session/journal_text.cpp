#include "session/journal_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <map>
#include <type_traits>
#include <variant>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "raster/plot_image.h"
#include "session/kept_text.h"
#include "workspace/step_text.h"

namespace graphize {

namespace {

constexpr std::string_view kFirstWords = "graphize journal ";
constexpr std::string_view kFrame = "event ";

/// The words of one line.
class Line {
 public:
  explicit Line(std::string& text, const char* name) : text_(text) { text_ += name; }
  ~Line() { text_ += '\n'; }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  template <class Number>
  requires std::is_integral_v<Number> Line& operator<<(Number number) {
    text_ += ' ';
    text_ += std::to_string(number);
    return *this;
  }
  Line& operator<<(const std::string& word) {
    text_ += ' ';
    text_ += Quote(word);
    return *this;
  }

 private:
  std::string& text_;
};

template <class T>
void WriteArray(std::string& text, std::size_t number, const std::vector<T>& array,
                std::size_t first, std::size_t behind) {
  static_assert(std::is_trivially_copyable_v<T>);
  const std::size_t count = array.size() - first - behind;
  Line(text, "array") << number << first << behind << count;
  text.append(reinterpret_cast<const char*>(array.data() + first), count * sizeof(T));
}

void WriteNumbers(std::string& text, const PointStore& store) {
  Line(text, "points") << store.CaptureCount << store.ListCount << int{store.ListIsCaptured}
                       << static_cast<int>(store.ListRows) << store.LastPixelX << store.LastPixelY
                       << store.NPoints;
}

/// All of them, of any curve.
void WritePoints(std::string& text, const PointStore& store) {
  WriteNumbers(text, store);
  const auto arrays = ArraysOf(store);
  ForEachIn<ArrayCopies>(
      [&](auto number) { WriteArray(text, number, std::get<number>(arrays), 0, 0); });
}

/// The curves that are not active; those which the journal does not have yet in full.
void WriteCurves(std::string& text, const Workspace& ws, ToldCurves& told) {
  std::erase_if(told, [](const auto& curve) { return curve.first.expired(); });
  std::vector<int> numbers;
  for (const Curve& curve : ws.curves.Curves) {
    if (curve.Points == nullptr) {
      numbers.push_back(0);
      continue;
    }
    const auto known = std::find_if(told.begin(), told.end(), [&](const auto& other) {
      return other.first.lock() == curve.Points;
    });
    numbers.push_back(known != told.end() ? known->second
                      : told.empty()      ? 1
                                          : told.back().second + 1);
    if (known != told.end()) continue;
    told.emplace_back(curve.Points, numbers.back());
    Line(text, "curve") << numbers.back();
    WritePoints(text, *curve.Points);
    text += "end\n";
  }
  Line line(text, "curves");
  for (const int number : numbers) line << number;
}

/// The small records, as a project has them, without what is told beside.
void WriteRecords(std::string& text, const Workspace& ws) {
  KeptDocument kept = Keep(ws);
  const auto none = std::make_shared<const PointStore>();
  for (Curve& curve : kept.Curves) curve.Points = none;
  kept.Steps.Steps.clear();
  const auto pictures = std::exchange(kept.Steps.Pictures, {});
  const std::vector<KeptPart> parts = PartsOf(std::move(kept));
  Line(text, "records") << parts.size();
  for (const KeptPart& part : parts) {
    Line(text, "part") << part.Name << part.Text.size();
    text += part.Text;
  }
  Line(text, "pictures") << pictures.size();
  for (const RecipePicture& picture : pictures)
    Line(text, "picture") << picture.Path.string() << picture.Width << picture.Height
                          << picture.FileSize << picture.FileChecksum;
  Line(text, "copy") << ws.picture.KeptCopy << ws.picture.KeptSteps;
}

std::string Framed(const std::string& payload) {
  return std::string(kFrame) + std::to_string(payload.size()) + " " + HexText(Crc32(payload)) +
         "\n" + payload;
}

std::string EventStart(const JournalEntry& entry) {
  std::string text;
  Line(text, "number") << entry.Number << entry.Time;
  return text;
}

// Reading.

[[noreturn]] void Fail(const std::string& problem) {
  throw RunTimeError(Tr("The journal cannot be read: %1.", problem));
}

/// What an event says of one curve's points.
struct Points {
  PointStore Store;
  ArrayCopies Arrays;
};

/// The arrays of a curve into its store, where they fit together.
std::shared_ptr<const PointStore> StoreOf(const Points& points) {
  auto store = std::make_shared<PointStore>(points.Store);
  ArraysOf(*store) = points.Arrays;
  const auto fits = [&](const std::vector<float>& xs, const std::vector<float>& ys,
                        const std::vector<PointId>& ids, int count) {
    return xs.size() == ys.size() && xs.size() == ids.size() && count >= 0 &&
           static_cast<std::size_t>(count) < xs.size() &&
           std::all_of(ids.begin(), ids.end(),
                       [&](PointId id) { return id < store->Places.size(); });
  };
  if (store->Places.empty() ||
      !fits(store->CaptureX, store->CaptureY, store->CaptureId, store->CaptureCount) ||
      !fits(store->ListX, store->ListY, store->ListId, store->ListCount))
    Fail("its points do not fit together");
  ShowNewest(store->Page, store->ListCount);
  return store;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}
  bool AtEnd() const { return text_.empty(); }

  /// The name of the next line, whose words are then taken one by one.
  std::string Next() {
    auto words = Tokenize(Text());
    if (!words || words->empty()) Fail("a line of it is not as it has to be");
    words_ = std::move(*words);
    at_ = 1;
    return words_.front();
  }
  std::string_view Text() {
    const std::size_t end = text_.find('\n');
    if (end == text_.npos) Fail("a line does not end");
    const std::string_view line = text_.substr(0, end);
    text_.remove_prefix(end + 1);
    return line;
  }
  std::string_view Bytes(std::size_t count) {
    if (count > text_.size()) Fail("bytes are missing");
    const std::string_view bytes = text_.substr(0, count);
    text_.remove_prefix(count);
    return bytes;
  }
  std::string Word() {
    if (at_ >= words_.size()) Fail("a word is missing");
    return words_[at_++];
  }
  bool HasWord() const { return at_ < words_.size(); }
  template <class Number>
  Number Integer(Number least = 0, Number most = std::numeric_limits<Number>::max()) {
    const std::string word = Word();
    Number number{};
    const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (fault != std::errc() || end != word.data() + word.size() || number < least || number > most)
      Fail("\"" + word + "\" is no number that can be there");
    return number;
  }

 private:
  std::string_view text_;
  std::vector<std::string> words_;
  std::size_t at_ = 0;
};

/// A document while the events are read.
class Model {
 public:
  int Events = 0;
  std::int64_t Time = 0;
  bool Closed = false;

  void Take(std::string_view payload) {
    Reader in(payload);
    if (in.Next() != "number" || in.Integer<int>() != Events + 1) Fail("an event is missing");
    Time = in.Integer<std::int64_t>(std::numeric_limits<std::int64_t>::min());
    while (!in.AtEnd()) TakeLine(in, in.Next());
    ++Events;
  }

  JournalledDocument Document() {
    JournalledDocument read{.Document = ReadParts(records_),
                            .Picture = picture_,
                            .PictureCopy = copy_,
                            .CopySteps = copySteps_,
                            .Events = Events,
                            .Time = Time,
                            .Closed = Closed};
    KeptDocument& kept = read.Document;
    if (curves_.size() != kept.Curves.size()) Fail("its curves do not fit together");
    for (std::size_t i = 0; i < curves_.size(); ++i) {
      const bool active = static_cast<int>(i) == kept.Active;
      if (active != (curves_[i] == 0)) Fail("its curves do not fit together");
      if (!active && !told_.contains(curves_[i])) Fail("a curve is missing");
      kept.Curves[i].Points = active ? StoreOf(points_) : told_.at(curves_[i]);
    }
    for (const std::string& line : steps_) {
      std::variant<Step, std::string> step = StepOf(line);
      if (const auto* problem = std::get_if<std::string>(&step)) Fail(*problem);
      kept.Steps.Steps.push_back(std::get<Step>(std::move(step)));
    }
    kept.Steps.Pictures = pictures_;
    return read;
  }

 private:
  void TakeLine(Reader& in, const std::string& name) {
    if (name == "state") {
      steps_.clear();
      points_ = {};
      points_.Arrays = {};
    } else if (name == "closed") {
      Closed = true;
    } else if (name == "steps") {
      TakeSteps(in);
    } else if (name == "points" || name == "array") {
      TakePoints(in, name, points_);
    } else if (name == "curve") {
      const int number = in.Integer(1);
      Points points;
      for (std::string part; (part = in.Next()) != "end";) TakePoints(in, part, points);
      told_[number] = StoreOf(points);
    } else if (name == "curves") {
      curves_.clear();
      while (in.HasWord()) curves_.push_back(in.Integer(0));
    } else if (name == "records") {
      TakeRecords(in);
    } else if (name == "pictures") {
      TakePictures(in);
    } else if (name == "copy") {
      copy_ = in.Word();
      copySteps_ = in.Integer<int>();
      if (copy_.find('/') != copy_.npos || copy_.starts_with('.')) Fail("a name leads elsewhere");
    } else if (name == "raster") {
      picture_.reset();
      if (in.HasWord()) picture_ = in.Integer<std::uint64_t>();
    } else {
      Fail("there is no \"" + name + "\"");
    }
  }

  void TakeSteps(Reader& in) {
    const auto kept = in.Integer<std::size_t>(0, steps_.size());
    const auto count = in.Integer<std::size_t>();
    steps_.resize(kept);
    for (std::size_t i = 0; i < count; ++i) steps_.emplace_back(in.Text());
  }

  void TakeRecords(Reader& in) {
    const auto count = in.Integer<std::size_t>();
    records_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      if (in.Next() != "part") Fail("a part is missing");
      const std::string name = in.Word();
      records_.push_back({name, std::string(in.Bytes(in.Integer<std::size_t>()))});
    }
  }

  void TakePictures(Reader& in) {
    const auto count = in.Integer<std::size_t>();
    pictures_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      if (in.Next() != "picture") Fail("a picture is missing");
      RecipePicture& picture = pictures_.emplace_back();
      picture.Path = in.Word();
      picture.Width = in.Integer(0, 32767);
      picture.Height = in.Integer(0, 32767);
      picture.FileSize = in.Integer<std::uintmax_t>();
      picture.FileChecksum = in.Integer<std::uint32_t>();
    }
  }

  static void TakePoints(Reader& in, const std::string& name, Points& points) {
    if (name == "array") return TakeArray(in, points.Arrays);
    if (name != "points") Fail("points are missing");
    PointStore& store = points.Store;
    constexpr std::int16_t kLeast = std::numeric_limits<std::int16_t>::min();
    store.CaptureCount = in.Integer<std::int16_t>();
    store.ListCount = in.Integer<std::int16_t>();
    store.ListIsCaptured = in.Integer(0, 1) == 1;
    store.ListRows = static_cast<PointStore::Rows>(in.Integer(0, 2));
    store.LastPixelX = in.Integer(kLeast);
    store.LastPixelY = in.Integer(kLeast);
    store.NPoints = in.Integer(0);
  }

  static void TakeArray(Reader& in, ArrayCopies& arrays) {
    const auto wanted = in.Integer<std::size_t>(0, std::tuple_size_v<ArrayCopies> - 1);
    ForEachIn<ArrayCopies>([&](auto number) {
      if (number != wanted) return;
      auto& array = std::get<number>(arrays);
      using Element = typename std::remove_reference_t<decltype(array)>::value_type;
      const auto first = in.Integer<std::size_t>(0, array.size());
      const auto behind = in.Integer<std::size_t>(0, array.size() - first);
      const auto count = in.Integer<std::size_t>(0, std::size_t{1} << 32);
      const std::string_view bytes = in.Bytes(count * sizeof(Element));
      const std::vector<Element> end(array.end() - static_cast<std::ptrdiff_t>(behind),
                                     array.end());
      array.resize(first + count + behind);
      if (count > 0) std::memcpy(array.data() + first, bytes.data(), bytes.size());
      std::copy(end.begin(), end.end(), array.begin() + static_cast<std::ptrdiff_t>(first + count));
    });
  }

  std::vector<std::string> steps_;
  Points points_;
  std::vector<int> curves_;
  std::map<int, std::shared_ptr<const PointStore>> told_;
  std::vector<KeptPart> records_;
  std::string copy_;
  int copySteps_ = 0;
  std::vector<RecipePicture> pictures_;
  std::optional<std::uint64_t> picture_;
};

/// The payload of the frame at the start of `bytes`, which are then what is behind it; nothing when
/// it is not whole.
std::optional<std::string_view> TakeFrame(std::string_view& bytes) {
  const std::string_view line = bytes.substr(0, std::min<std::size_t>(bytes.find('\n'), 64));
  if (!line.starts_with(kFrame) || line.size() == bytes.size()) return std::nullopt;
  const std::size_t blank = line.find(' ', kFrame.size());
  if (blank == line.npos) return std::nullopt;
  const std::string_view digits = line.substr(kFrame.size(), blank - kFrame.size());
  std::size_t size = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
  const std::string_view rest = bytes.substr(line.size() + 1);
  if (fault != std::errc() || end != digits.data() + digits.size() || size > rest.size())
    return std::nullopt;
  const std::string_view payload = rest.substr(0, size);
  if (line.substr(blank + 1) != HexText(Crc32(payload))) return std::nullopt;
  bytes = rest.substr(size);
  return payload;
}

/// Whether a whole event lies somewhere in the bytes.
bool HasFrame(std::string_view bytes) {
  for (std::size_t at = 0; (at = bytes.find(kFrame, at)) != bytes.npos; ++at) {
    std::string_view rest = bytes.substr(at);
    if (TakeFrame(rest)) return true;
  }
  return false;
}

}  // namespace

std::string JournalStart() {
  return std::string(kFirstWords) + std::to_string(kJournalVersion) + "\n";
}

std::string EventText(Workspace& ws, const DocumentDelta& delta, const JournalEntry& entry,
                      ToldCurves& told) {
  std::string text = EventStart(entry);
  if (entry.Whole) text += "state\n";
  const std::vector<Step>& steps = ws.recipe.Steps;
  const std::size_t kept = entry.Whole ? 0 : std::min(delta.StepsKept, steps.size());
  if (entry.Whole || delta.StepsKept != SIZE_MAX) {
    Line(text, "steps") << kept << steps.size() - kept;
    for (std::size_t i = kept; i < steps.size(); ++i) text += TextOf(steps[i]) + "\n";
  }
  if (entry.Whole) {
    WritePoints(text, ws.store);
  } else {
    WriteNumbers(text, ws.store);
    const auto arrays = ArraysOf(ws.store);
    ForEachIn<ArrayCopies>([&](auto number) {
      const DocumentDelta::Part& part = delta.Arrays[number];
      if (part.Differs) WriteArray(text, number, std::get<number>(arrays), part.First, part.Behind);
    });
  }
  if (entry.Whole || delta.Records) {
    WriteCurves(text, ws, told);
    WriteRecords(text, ws);
  }
  if (ws.plot.IsPresent())
    Line(text, "raster") << PictureNumber(ws.plot);
  else
    Line(text, "raster");
  return Framed(text);
}

std::string ClosedEvent(const JournalEntry& entry) {
  return Framed(EventStart(entry) + "closed\n");
}

JournalledDocument ReadJournal(std::string_view bytes) {
  const std::size_t end = bytes.find('\n');
  if (!bytes.starts_with(kFirstWords) || end == bytes.npos) Fail("it has no beginning");
  const std::string version(bytes.substr(kFirstWords.size(), end - kFirstWords.size()));
  const auto number = IntegerText(version, 1, 1000000);
  if (!number) Fail("its version is no number");
  if (*number > kJournalVersion)
    Fail(Tr("it is of version %1, from a newer program; this one reads version %2", version,
            kJournalVersion));
  bytes.remove_prefix(end + 1);
  Model model;
  while (const auto payload = TakeFrame(bytes)) model.Take(*payload);
  if (model.Events == 0) Fail("its first event is not whole");
  JournalledDocument read = model.Document();
  if (HasFrame(bytes))
    read.Damage = Tr("A part of it is damaged: what was done after that is lost.");
  return read;
}

}  // namespace graphize
