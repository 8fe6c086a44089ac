#include "session/kept_points.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "data/waiting_points.h"

namespace graphize {

namespace {

constexpr std::string_view kHeader = "id,column,row,x,y\n";
constexpr std::string_view kCertainHeader =
    "id,column,row,x,y,across_columns,across_rows,bridged\n";
constexpr std::size_t kMostInLine = 160;  // bytes: an id and seven numbers

bool AnyCertain(const PointStore& store, const std::vector<PointId>& ids, std::size_t first,
                std::size_t last) {
  return std::any_of(ids.begin() + static_cast<std::ptrdiff_t>(first),
                     ids.begin() + static_cast<std::ptrdiff_t>(last) + 1,
                     [&](PointId id) { return CertaintyOf(store, id) != Certainty(); });
}

template <class Value>
char* Put(char* at, Value value) {
  return std::to_chars(at, at + 24, value).ptr;
}

/// The position that a text stands for: of the single-precision number whose shortest text it is,
/// or else in double precision. Nothing where it is no number.
std::optional<double> PositionOf(std::string_view text) {
  const char* const end = text.data() + text.size();
  float single = 0;
  double position = 0;
  if (const auto [at, fault] = std::from_chars(text.data(), end, position);
      fault != std::errc() || at != end)
    return std::nullopt;
  std::array<char, 24> shortest{};
  if (std::from_chars(text.data(), end, single).ec == std::errc() &&
      text == std::string_view(shortest.data(), Put(shortest.data(), single)))
    return single;
  return position;
}

/// So that PositionOf gives it back.
char* PutPosition(char* at, double position) {
  const auto single = static_cast<float>(position);
  if (single == position) return Put(at, single);
  char* const end = Put(at, position);
  if (PositionOf({at, end}) == position) return end;
  return std::to_chars(at, at + 24, position, std::chars_format::scientific, 16).ptr;
}

/// The rows `first` to `last` of the arrays.
std::string RowsText(const PointStore& store, const std::vector<PointId>& ids,
                     const std::vector<float>& xs, const std::vector<float>& ys, std::size_t first,
                     std::size_t last) {
  const bool isCertain = first <= last && AnyCertain(store, ids, first, last);
  const std::string_view header = isCertain ? kCertainHeader : kHeader;
  std::string text(header.size() + (last + 1 - first) * kMostInLine, '\0');
  char* at = std::copy(header.begin(), header.end(), text.data());
  for (std::size_t i = first; i <= last; ++i) {
    at = Put(at, ids[i]);
    *at++ = ',';
    const bool placed = HasPlace(store, ids[i]);
    const RealPlace place = placed ? RealPlaceOf(store, ids[i]) : RealPlace();
    if (placed) at = PutPosition(at, place.Column);
    *at++ = ',';
    if (placed) at = PutPosition(at, place.Row);
    *at++ = ',';
    const bool waits = placed && IsWaiting(ids[i], xs[i], ys[i]);
    if (!waits) at = Put(at, xs[i]);
    *at++ = ',';
    if (!waits) at = Put(at, ys[i]);
    if (isCertain) {
      const Certainty certainty = CertaintyOf(store, ids[i]);
      const bool isKnown = certainty != Certainty();
      *at++ = ',';
      if (isKnown) at = Put(at, certainty.AcrossColumns);
      *at++ = ',';
      if (isKnown) at = Put(at, certainty.AcrossRows);
      *at++ = ',';
      if (isKnown) at = Put(at, certainty.IsBridged);
    }
    *at++ = '\n';
  }
  text.resize(static_cast<std::size_t>(at - text.data()));
  return text;
}

/// Takes rows from the text, one by one.
class RowReader {
 public:
  RowReader(PointStore& store, std::string_view text)
      : store_(store), text_(text), known_(KnownIds()) {
    isCertain_ = text_.starts_with(kCertainHeader);
    if (!isCertain_ && !text_.starts_with(kHeader)) Fail("the header is not \"id,column,row,x,y\"");
    text_.remove_prefix(isCertain_ ? kCertainHeader.size() : kHeader.size());
  }

  void Take(PointId& id, float& x, float& y) {
    ++line_;
    id = Take<PointId>(',', "an id");
    if (id >= store_.Places.size()) Fail("there is no point " + std::to_string(id));
    if (id == 0) {
      Expect(',');
      Expect(',');
    } else if (text_.starts_with(',')) {
      Expect(',');
      Expect(',');
      NotePlace(id, std::nullopt);
    } else {
      const double column = TakePosition("a column"), row = TakePosition("a row");
      NotePlace(id, RealPlace{column, row});
    }
    TakeValues(id, x, y);
    if (isCertain_) TakeCertainty(id);
  }
  bool AtEnd() const { return text_.empty(); }
  void End() {
    ++line_;
    if (!AtEnd()) Fail("there are more rows than points");
  }

 private:
  void TakeValues(PointId id, float& x, float& y) {
    const char end = isCertain_ ? ',' : '\n';
    if (HasPlace(store_, id) && text_.starts_with(',')) {
      x = y = kNoValueYet;
      Expect(',');
      return Expect(end);
    }
    x = Take<float>(',', "X");
    y = Take<float>(end, "Y");
    // Lengths and resampled rows can run over; what axes give is finite.
    if (id != 0 && !(std::isfinite(x) && std::isfinite(y))) Fail("a value is no number");
  }
  template <class Value>
  Value Take(char end, const char* what) {
    Value value{};
    const auto [behind, fault] = std::from_chars(text_.data(), text_.data() + text_.size(), value);
    if (fault != std::errc()) Fail(std::string(what) + " is no number");
    text_.remove_prefix(static_cast<std::size_t>(behind - text_.data()));
    Expect(end);
    return value;
  }
  void Expect(char c) {
    if (c == '\n' && text_.starts_with('\r')) text_.remove_prefix(1);
    if (!text_.starts_with(c)) Fail("the line is not as it has to be");
    text_.remove_prefix(1);
  }
  double TakePosition(const char* what) {
    const std::size_t length = std::min(text_.find(','), text_.size());
    const auto position = PositionOf(text_.substr(0, length));
    if (!position || !std::isfinite(static_cast<float>(*position)))
      Fail(std::string(what) + " is no number");
    text_.remove_prefix(length);
    Expect(',');
    return *position;
  }
  void NotePlace(PointId id, const std::optional<RealPlace>& taken) {
    const bool had = HasPlace(store_, id);
    if (known_[id] && (had != taken.has_value() || (had && RealPlaceOf(store_, id) != *taken)))
      Fail("point " + std::to_string(id) + " has two places");
    known_[id] = true;
    if (taken)
      SetPlace(store_, id, *taken);
    else
      store_.Places[id] = kNoPlace;
  }
  void TakeCertainty(PointId id) {
    if (text_.starts_with(",,")) {
      Expect(',');
      Expect(',');
      Expect('\n');
      return;
    }
    Certainty certainty{Take<float>(',', "an uncertainty"), Take<float>(',', "an uncertainty"),
                        Take<std::uint32_t>('\n', "what is bridged")};
    if (!std::isfinite(certainty.AcrossColumns) || !std::isfinite(certainty.AcrossRows) ||
        certainty.IsBridged > 1 || id == 0)
      Fail("an uncertainty cannot be");
    NoteCertainty(store_, id, certainty);
  }
  /// The points whose place another table has told.
  std::vector<bool> KnownIds() const {
    std::vector<bool> known(store_.Places.size());
    for (const auto* ids : {&store_.CaptureId, &store_.ListId})
      for (const PointId id : *ids)
        if (id < known.size()) known[id] = id != 0;
    return known;
  }
  [[noreturn]] void Fail(const std::string& problem) const {
    throw RunTimeError(Tr("line %1: %2", line_, problem));
  }

  PointStore& store_;
  std::string_view text_;
  int line_ = 1;
  bool isCertain_ = false;  // the rows have uncertainties
  std::vector<bool> known_;
};

std::size_t LastBehindList(const PointStore& store) {
  const auto isEmpty = [&](std::size_t i) {
    return store.ListId[i] == 0 && std::bit_cast<std::uint32_t>(store.ListX[i]) == 0 &&
           std::bit_cast<std::uint32_t>(store.ListY[i]) == 0;
  };
  std::size_t last = std::min({store.ListId.size(), store.ListX.size(), store.ListY.size()}) - 1;
  while (last > static_cast<std::size_t>(store.ListCount) && isEmpty(last)) --last;
  return last;
}

}  // namespace

std::string CapturedText(const PointStore& store) {
  return RowsText(store, store.CaptureId, store.CaptureX, store.CaptureY, 1,
                  static_cast<std::size_t>(store.CaptureCount));
}

std::string ListText(const PointStore& store) {
  const auto count = static_cast<std::size_t>(store.ListCount);
  const auto isSame = [&](const auto& list, const auto& captured) {
    return std::equal(list.begin() + 1, list.begin() + 1 + store.ListCount, captured.begin() + 1,
                      [](auto a, auto b) {
                        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
                      });
  };
  if (store.ListCount == store.CaptureCount && isSame(store.ListId, store.CaptureId) &&
      isSame(store.ListX, store.CaptureX) && isSame(store.ListY, store.CaptureY))
    return {};
  return RowsText(store, store.ListId, store.ListX, store.ListY, 1, count);
}

std::string BehindListText(const PointStore& store) {
  const auto count = static_cast<std::size_t>(store.ListCount);
  const std::size_t last = LastBehindList(store);
  if (last == count) return {};
  return RowsText(store, store.ListId, store.ListX, store.ListY, count + 1, last);
}

void ReadCaptured(PointStore& store, std::string_view text) {
  RowReader reader(store, text);
  for (int i = 1; i <= store.CaptureCount; ++i)
    reader.Take(store.CaptureId[i], store.CaptureX[i], store.CaptureY[i]);
  reader.End();
}

void ReadList(PointStore& store, std::string_view text) {
  RowReader reader(store, text);
  for (int i = 1; i <= store.ListCount; ++i)
    reader.Take(store.ListId[i], store.ListX[i], store.ListY[i]);
  reader.End();
}

void TakeCapturedAsList(PointStore& store) {
  const auto count = static_cast<std::size_t>(store.CaptureCount);
  std::copy_n(store.CaptureId.begin() + 1, count, store.ListId.begin() + 1);
  std::copy_n(store.CaptureX.begin() + 1, count, store.ListX.begin() + 1);
  std::copy_n(store.CaptureY.begin() + 1, count, store.ListY.begin() + 1);
}

void ReadBehindList(PointStore& store, std::string_view text) {
  RowReader reader(store, text);
  constexpr std::size_t kMost = 65536;  // more than an array grows to
  for (std::size_t i = static_cast<std::size_t>(store.ListCount) + 1; !reader.AtEnd(); ++i) {
    if (i >= store.ListX.size()) {
      if (i >= kMost) reader.End();
      const std::size_t size = std::min(kMost, 2 * i);
      store.ListId.resize(size);
      store.ListX.resize(size);
      store.ListY.resize(size);
    }
    reader.Take(store.ListId[i], store.ListX[i], store.ListY[i]);
  }
}

}  // namespace graphize
