#include "base/deferred_text.h"

#include <algorithm>
#include <vector>

#include "base/translation.h"

namespace graphize {

namespace {

// BEGIN text VALUES value END value END ... CLOSE; in the text a place %n is PLACE n.
constexpr char kBegin = '\x02', kValues = '\x03', kClose = '\x04', kPlace = '\x10', kEnd = '\x1f';
constexpr std::size_t kLongest = 2000;  // bytes, taken and given
constexpr int kDeepest = 4;

bool IsPlace(std::string_view text, std::size_t at) {
  return at + 1 < text.size() && text[at] == '%' && text[at + 1] >= '1' && text[at + 1] <= '9';
}

/// The plain text up to one of `ends`, which is taken away, too; all of it where there is none.
std::string Take(std::string_view& rest, std::string_view ends, int depth) {
  std::string taken;
  while (!rest.empty()) {
    const char c = rest.front();
    rest.remove_prefix(1);
    if (ends.find(c) != std::string_view::npos) break;
    if (c == kPlace) {
      taken += '%';
    } else if (c == kBegin && depth < kDeepest) {
      const std::string english = Take(rest, {&kValues, 1}, kDeepest);
      std::vector<std::string> values;
      while (!rest.empty() && rest.front() != kClose)
        values.push_back(Take(rest, {&kEnd, 1}, depth + 1));
      if (!rest.empty()) rest.remove_prefix(1);
      taken += Fill(Tr(english.c_str()), values);
      // Places within values within places would grow to gigabytes.
      if (taken.size() > kLongest) taken.resize(kLongest);
    } else if (static_cast<unsigned char>(c) >= ' ' && c != '\x7f') {
      taken += c;
    }
  }
  return taken;
}

}  // namespace

std::string DeferText(const char* english, long long count) {
  if (count >= 0) return {};
  const std::string_view text = english;
  std::string deferred(1, kBegin);
  int places = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsPlace(text, i)) {
      deferred += text[i];
      continue;
    }
    places = std::max(places, text[++i] - '0');
    deferred += kPlace;
    deferred += text[i];
  }
  deferred += kValues;
  for (int i = 1; i <= places; ++i) deferred += '%' + std::to_string(i) + kEnd;
  return deferred + kClose;
}

std::string TranslateDeferred(std::string_view text) {
  text = text.substr(0, kLongest);
  return Take(text, {}, 0);
}

}  // namespace graphize
