#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace graphize {

/// `text` in quotes. File names may be any bytes, JSON is UTF-8: what is none becomes the
/// replacement character.
std::string JsonString(const std::string& text);

/// Writes records as a JSON object (RFC 8259), member by member; JsonReader has the same functions,
/// so that one description of a record's fields serves both. Records in lists stand on a line each.
class JsonWriter {
 public:
  void Flag(const char* name, bool& value) { Member(name, value ? "true" : "false"); }
  template <class Whole>
  void Integer(const char* name, Whole& value, std::int64_t, std::int64_t) {
    Member(name, std::to_string(value));
  }
  /// The shortest that reads back as the same value.
  void Number(const char* name, float& value);
  void Text(const char* name, std::string& value) { Member(name, JsonString(value)); }
  template <class Choices>
  void Choice(const char* name, Choices& value,
              std::initializer_list<std::pair<Choices, const char*>> names) {
    for (const auto& [choice, text] : names)
      if (choice == value) Member(name, JsonString(text));
  }
  template <class Fields>
  void Object(const char* name, const Fields& fields) {
    Open(name, '{');
    fields();
    Close('}');
  }
  template <class Items, class Fields>
  void List(const char* name, Items& items, std::size_t, const Fields& fields) {
    Open(name, '[');
    for (auto& item : items) {
      Open(nullptr, '{');
      fields(item);
      Close('}');
    }
    Close(']');
  }
  /// The whole object, once.
  std::string Take();

 private:
  void Member(const char* name, const std::string& value);
  void Open(const char* name, char bracket);
  void Close(char bracket);
  void Separate(const char* name);

  std::string text_;
  int depth_ = 1;
  bool empty_ = true;  // what was opened last
  bool inLine_ = false;
};

/// Reads what JsonWriter writes. What is missing, of another type or out of its range is a
/// RunTimeError that names it: "axes.points[1].x is no number". Members that nobody asks for are
/// passed over.
class JsonReader {
 public:
  /// RunTimeError for what is no JSON object.
  explicit JsonReader(std::string_view text);
  ~JsonReader();
  JsonReader(const JsonReader&) = delete;
  JsonReader& operator=(const JsonReader&) = delete;

  void Flag(const char* name, bool& value);
  template <class Whole>
  void Integer(const char* name, Whole& value, std::int64_t least, std::int64_t most) {
    value = static_cast<Whole>(WholeNumber(name, least, most));
  }
  void Number(const char* name, float& value);
  void Text(const char* name, std::string& value);
  template <class Choices>
  void Choice(const char* name, Choices& value,
              std::initializer_list<std::pair<Choices, const char*>> names) {
    std::string text;
    Text(name, text);
    for (const auto& [choice, word] : names)
      if (text == word) return void(value = choice);
    Fail(name, "cannot be \"" + text + "\"");
  }
  template <class Fields>
  void Object(const char* name, const Fields& fields) {
    EnterObject(name);
    fields();
    Leave();
  }
  /// An array as long as it is, or a vector of at most `most`.
  template <class Items, class Fields>
  void List(const char* name, Items& items, std::size_t most, const Fields& fields) {
    const std::size_t count = EnterList(name);
    if constexpr (requires { items.resize(count); }) {
      if (count > most) Fail(nullptr, "is too long");
      items.resize(count);
    }
    if (items.size() != count) Fail(nullptr, "has a wrong length");
    for (std::size_t i = 0; i < count; ++i) {
      EnterItem(i);
      fields(items[i]);
      Leave();
    }
    Leave();
  }
  bool Has(const char* name) const;
  /// What is wrong with the member, or with the object or list itself.
  [[noreturn]] void Fail(const char* name, const std::string& problem) const;

 private:
  struct Place;
  std::int64_t WholeNumber(const char* name, std::int64_t least, std::int64_t most);
  void EnterObject(const char* name);
  std::size_t EnterList(const char* name);
  void EnterItem(std::size_t index);
  void Leave();

  std::unique_ptr<Place> place_;
};

}  // namespace graphize
