#pragma once

#include <initializer_list>
#include <span>
#include <string>

namespace graphize {

// Every text that a person reads in the window goes through one of these; what is in files, recipes
// and on the console is English. The catalogues are kept by tools/update_translations, which finds
// the texts by these names (and by Qt's own tr).

/// The text in the chosen language; as it is where that has none for it.
std::string Tr(const char* english);

/// The same for a count, which the text has in the place of %1.
std::string TrCount(const char* one, const char* several, long long count);

/// A text of a table, translated where it is shown.
constexpr const char* Marked(const char* english) {
  return english;
}

/// `text` with the values in the places of %1 to %9, which may stand in any order.
std::string Fill(const std::string& text, std::span<const std::string> values);
inline std::string Fill(const std::string& text, std::initializer_list<std::string> values) {
  return Fill(text, std::span<const std::string>(values.begin(), values.size()));
}

inline std::string TrValue(const std::string& text) {
  return text;
}
inline std::string TrValue(long long number) {
  return std::to_string(number);
}

/// A text with values in the places of %1, %2 and so on.
template <class... Values>
std::string Tr(const char* english, const Values&... values) {
  return Fill(Tr(english), {TrValue(values)...});
}

/// A count in the place of %1, the other values in those of %2 and so on.
template <class... Values>
std::string TrCount(const char* one, const char* several, long long count,
                    const Values&... values) {
  return Fill(TrCount(one, several, count), {"%1", TrValue(values)...});
}

/// What gives the translation, or an empty text where there is none. `count` is -1 but for TrCount.
using Translator = std::string (*)(const char* english, long long count);

/// Sets it for the whole program, as a locale is set: once, before there are threads or texts.
void SetTranslator(Translator translator);
Translator ChosenTranslator();

}  // namespace graphize
