#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "base/affine_map.h"
#include "base/numbers.h"
#include "base/tokens.h"

namespace graphize {

/// What the fields of the small records share, for writing and reading alike.

inline constexpr std::int64_t kLeast16 = std::numeric_limits<std::int16_t>::min();
inline constexpr std::int64_t kMost16 = std::numeric_limits<std::int16_t>::max();

/// What older files do not have.
template <class Io>
bool IsThere(Io& io, const char* name) {
  if constexpr (requires { io.Has(name); }) return io.Has(name);
  return true;
}

/// Where pixels of the picture as it was opened are: "1 0 0 0 1 0", column by column and row.
template <class Io>
void MapField(Io& io, AffineMap& map) {
  constexpr const char* kName = "from_opened";
  const auto numbers = {&map.XX, &map.XY, &map.X, &map.YX, &map.YY, &map.Y};
  std::string text;
  for (const double* number : numbers) text += (text.empty() ? "" : " ") + ShortestText(*number);
  io.Text(kName, text);
  if constexpr (requires { io.Has(kName); }) {
    const auto words = Tokenize(text);
    if (!words || words->size() != numbers.size()) io.Fail(kName, "are no six numbers");
    auto word = words->begin();
    for (double* number : numbers) {
      const auto read = WholeNumberText(*word++);
      if (!read) io.Fail(kName, "are no six numbers");
      *number = *read;
    }
    if (!(std::abs(Determinant(map)) > 1e-9 && std::isfinite(map.X) && std::isfinite(map.Y)))
      io.Fail(kName, "cannot be");
  }
}

}  // namespace graphize
