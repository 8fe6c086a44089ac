#include "base/json.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "base/numbers.h"
#include "base/run_time_error.h"

namespace graphize {

namespace {

using Json = nlohmann::json;

constexpr int kDeepest = 16;

/// Empties it from its leaves up: the library's destructor asks for memory for what has children,
/// and the program would end where there is none.
void Empty(Json& value) {
  if (auto* members = value.get_ptr<Json::object_t*>()) {
    for (auto& [name, member] : *members) Empty(member);
    members->clear();
  } else if (auto* elements = value.get_ptr<Json::array_t*>()) {
    for (Json& element : *elements) Empty(element);
    elements->clear();
  }
}

}  // namespace

std::string JsonString(const std::string& text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

void JsonWriter::Number(const char* name, float& value) {
  Member(name, ShortestText(value));
}

void JsonWriter::Separate(const char* name) {
  if (inLine_) {
    text_ += empty_ ? "" : ", ";
  } else {
    text_ += empty_ ? "\n" : ",\n";
    text_.append(static_cast<std::size_t>(depth_) * 2, ' ');
  }
  empty_ = false;
  if (name != nullptr) text_ += JsonString(name) + ": ";
}

void JsonWriter::Member(const char* name, const std::string& value) {
  Separate(name);
  text_ += value;
}

void JsonWriter::Open(const char* name, char bracket) {
  Separate(name);
  text_ += bracket;
  ++depth_;
  empty_ = true;
  inLine_ = name == nullptr;
}

void JsonWriter::Close(char bracket) {
  --depth_;
  if (!inLine_ && !empty_) {
    text_ += '\n';
    text_.append(static_cast<std::size_t>(depth_) * 2, ' ');
  }
  text_ += bracket;
  empty_ = inLine_ = false;
}

std::string JsonWriter::Take() {
  return "{" + std::move(text_) + "\n}\n";
}

struct JsonReader::Place {
  Place() = default;
  ~Place() { Empty(Document); }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  Json Document;
  std::vector<const Json*> Inside;
  std::vector<std::string> Names;
};

JsonReader::JsonReader(std::string_view text) : place_(std::make_unique<Place>()) {
  const auto notTooDeep = [](int depth, Json::parse_event_t, Json&) {
    if (depth > kDeepest) throw RunTimeError("it is nested too deeply");
    return true;
  };
  place_->Document = Json::parse(text, notTooDeep, false);
  if (!place_->Document.is_object()) throw RunTimeError("it is no JSON object");
  place_->Inside.push_back(&place_->Document);
}

JsonReader::~JsonReader() = default;

bool JsonReader::Has(const char* name) const {
  return place_->Inside.back()->contains(name);
}

void JsonReader::Fail(const char* name, const std::string& problem) const {
  std::string path;
  for (const std::string& part : place_->Names)
    path += (path.empty() || part[0] == '[' ? "" : ".") + part;
  if (name != nullptr) path += (path.empty() ? "" : ".") + std::string(name);
  throw RunTimeError(path + ' ' + problem);
}

namespace {

/// The member, null where there is none.
const Json& MemberOf(const Json& object, const char* name) {
  static const Json kNone;
  const auto found = object.find(name);
  return found == object.end() ? kNone : *found;
}

}  // namespace

void JsonReader::Flag(const char* name, bool& value) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  if (!member.is_boolean()) Fail(name, "is neither true nor false");
  value = member.get<bool>();
}

std::int64_t JsonReader::WholeNumber(const char* name, std::int64_t least, std::int64_t most) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  const bool isWhole = member.is_number_unsigned()
                           ? member.get<std::uint64_t>() <= std::numeric_limits<std::int64_t>::max()
                           : member.is_number_integer();
  if (!isWhole || member.get<std::int64_t>() < least || member.get<std::int64_t>() > most)
    Fail(name, "is no whole number from " + std::to_string(least) + " to " + std::to_string(most));
  return member.get<std::int64_t>();
}

void JsonReader::Number(const char* name, float& value) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  const double number = member.is_number() ? member.get<double>() : HUGE_VAL;
  if (!(std::fabs(number) <= std::numeric_limits<float>::max())) Fail(name, "is no number");
  value = static_cast<float>(number);
}

void JsonReader::Text(const char* name, std::string& value) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  if (!member.is_string()) Fail(name, "is no text");
  value = member.get_ref<const std::string&>();
}

void JsonReader::EnterObject(const char* name) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  if (!member.is_object()) Fail(name, "is missing");
  place_->Inside.push_back(&member);
  place_->Names.emplace_back(name);
}

std::size_t JsonReader::EnterList(const char* name) {
  const Json& member = MemberOf(*place_->Inside.back(), name);
  if (!member.is_array()) Fail(name, "is no list");
  place_->Inside.push_back(&member);
  place_->Names.emplace_back(name);
  return member.size();
}

void JsonReader::EnterItem(std::size_t index) {
  const Json& item = (*place_->Inside.back())[index];
  place_->Names.push_back("[" + std::to_string(index) + "]");
  if (!item.is_object()) Fail(nullptr, "is no object");
  place_->Inside.push_back(&item);
}

void JsonReader::Leave() {
  place_->Inside.pop_back();
  place_->Names.pop_back();
}

}  // namespace graphize
