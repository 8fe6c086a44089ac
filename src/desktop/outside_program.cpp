#include "desktop/outside_program.h"

#include <algorithm>

namespace graphize {

namespace {

bool SameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

/// Where `desktop` stands in the list; behind all of it when it is not there.
int RankIn(std::string_view list, std::string_view desktop) {
  for (int rank = 0;; ++rank) {
    const std::size_t end = list.find(':');
    if (!desktop.empty() && SameName(list.substr(0, end), desktop)) return rank;
    if (end == std::string_view::npos) return rank + 1;
    list.remove_prefix(end + 1);
  }
}

}  // namespace

std::vector<OutsideProgram> InOrderFor(std::string_view current,
                                       const std::vector<OutsideProgram>& programs) {
  std::vector<OutsideProgram> ordered = programs;
  std::ranges::stable_sort(ordered, {}, [current](const OutsideProgram& program) {
    return RankIn(current, program.Desktop);
  });
  return ordered;
}

}  // namespace graphize
