#include "session/journal_reading.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "session/document.h"
#include "session/journal_frame.h"
#include "session/kept_text.h"
#include "workspace/step_text.h"

namespace graphize {

namespace {

/// What an event says of one curve's points.
struct Points {
  PointStore Store;
  ArrayCopies Arrays;
  bool Saved = false;  // a file holds them
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
  if (store->Places.empty() || store->Certainties.size() > store->Places.size() ||
      store->Rests.size() > store->Places.size() ||
      !fits(store->CaptureX, store->CaptureY, store->CaptureId, store->CaptureCount) ||
      !fits(store->ListX, store->ListY, store->ListId, store->ListCount))
    FailJournal("its points do not fit together");
  ShowNewest(store->Page, store->ListCount);
  store->Saved = std::make_shared<PointStore::Points>();
  if (points.Saved) NoteSaved(*store);
  return store;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}
  bool AtEnd() const { return text_.empty(); }

  /// The name of the next line, whose words are then taken one by one.
  std::string Next() {
    auto words = Tokenize(Text());
    if (!words || words->empty()) FailJournal("a line of it is not as it has to be");
    words_ = std::move(*words);
    at_ = 1;
    return words_.front();
  }
  std::string_view Text() {
    const std::size_t end = text_.find('\n');
    if (end == text_.npos) FailJournal("a line does not end");
    const std::string_view line = text_.substr(0, end);
    text_.remove_prefix(end + 1);
    return line;
  }
  std::string_view Bytes(std::size_t count) {
    if (count > text_.size()) FailJournal("bytes are missing");
    const std::string_view bytes = text_.substr(0, count);
    text_.remove_prefix(count);
    return bytes;
  }
  std::string Word() {
    if (at_ >= words_.size()) FailJournal("a word is missing");
    return words_[at_++];
  }
  bool HasWord() const { return at_ < words_.size(); }
  template <class Number>
  Number Integer(Number least = 0, Number most = std::numeric_limits<Number>::max()) {
    const std::string word = Word();
    Number number{};
    const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (fault != std::errc() || end != word.data() + word.size() || number < least || number > most)
      FailJournal("\"" + word + "\" is no number that can be there");
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
    if (in.Next() != "number" || in.Integer<int>() != Events + 1)
      FailJournal("an event is missing");
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
    if (curves_.size() != kept.Curves.size()) FailJournal("its curves do not fit together");
    for (std::size_t i = 0; i < curves_.size(); ++i) {
      const bool active = static_cast<int>(i) == kept.Active;
      if (active != (curves_[i] == 0)) FailJournal("its curves do not fit together");
      if (!active && !told_.contains(curves_[i])) FailJournal("a curve is missing");
      kept.Curves[i].Points = active ? StoreOf(points_) : told_.at(curves_[i]);
      if (i < saved_.size() && saved_[i]) NoteSaved(*kept.Curves[i].Points);
    }
    for (const std::string& line : steps_) {
      std::variant<Step, std::string> step = StepOf(line);
      if (const auto* problem = std::get_if<std::string>(&step)) FailJournal(*problem);
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
    } else if (name == "saved") {
      saved_.clear();
      while (in.HasWord()) saved_.push_back(in.Integer(0, 1) == 1);
    } else if (name == "records") {
      TakeRecords(in);
    } else if (name == "pictures") {
      TakePictures(in);
    } else if (name == "copy") {
      copy_ = in.Word();
      copySteps_ = in.Integer<int>();
      if (copy_.find('/') != copy_.npos || copy_.starts_with('.'))
        FailJournal("a name leads elsewhere");
    } else if (name == "raster") {
      picture_.reset();
      if (in.HasWord()) picture_ = in.Integer<std::uint64_t>();
    } else {
      FailJournal("there is no \"" + name + "\"");
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
      if (in.Next() != "part") FailJournal("a part is missing");
      const std::string name = in.Word();
      records_.push_back({name, std::string(in.Bytes(in.Integer<std::size_t>()))});
    }
  }

  void TakePictures(Reader& in) {
    const auto count = in.Integer<std::size_t>();
    pictures_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      if (in.Next() != "picture") FailJournal("a picture is missing");
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
    if (name != "points") FailJournal("points are missing");
    PointStore& store = points.Store;
    constexpr std::int16_t kLeast = std::numeric_limits<std::int16_t>::min();
    store.CaptureCount = in.Integer<std::int16_t>();
    store.ListCount = in.Integer<std::int16_t>();
    store.ListIsCaptured = in.Integer(0, 1) == 1;
    store.ListRows = static_cast<PointStore::Rows>(in.Integer(0, 2));
    store.LastPixelX = in.Integer(kLeast);
    store.LastPixelY = in.Integer(kLeast);
    store.NPoints = in.Integer(0);
    points.Saved = in.HasWord() && in.Integer(0, 1) == 1;
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
  std::vector<bool> saved_;  // of those that are not active
  std::map<int, std::shared_ptr<const PointStore>> told_;
  std::vector<KeptPart> records_;
  std::string copy_;
  int copySteps_ = 0;
  std::vector<RecipePicture> pictures_;
  std::optional<std::uint64_t> picture_;
};

}  // namespace

JournalledDocument ReadJournal(std::string_view bytes) {
  TakeStart(bytes);
  Model model;
  while (const auto payload = TakeFrame(bytes)) model.Take(*payload);
  if (model.Events == 0) FailJournal("its first event is not whole");
  JournalledDocument read = model.Document();
  if (HasFrame(bytes))
    read.Damage = Tr("A part of it is damaged: what was done after that is lost.");
  return read;
}

}  // namespace graphize
