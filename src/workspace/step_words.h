#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "base/tokens.h"
#include "calibration/transform.h"
#include "capture/point_set.h"

namespace graphize {

// The words of a line that says a step: both take the same calls, in the order of the fields, so
// that one description of a record's fields writes and reads them.

inline constexpr int kMostPixels = 32767;  // the largest 16-bit number

/// Writes the fields of a step as words.
class StepWriter {
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
class StepReader {
 public:
  explicit StepReader(std::vector<std::string> words) : words_(std::move(words)) {}

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

}  // namespace graphize
