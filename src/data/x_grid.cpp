#include "data/x_grid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/decimal_scale.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the part before the first of `separators` off `text`.
std::string_view NextPart(std::string_view& text, std::string_view separators) {
  const std::size_t end = std::min(text.find_first_of(separators), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return Trimmed(part);
}

/// The whole text as a number; nothing when it is none, or none that is finite.
std::optional<double> ReadNumber(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    return std::nullopt;
  return value;
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string TooMany() {
  return Tr("The X grid has more than %1 values.", kMostGridX);
}

/// The range's values behind the others; what is wrong with it, else an empty text.
std::string AddRange(std::string_view item, std::vector<double>& values) {
  std::string_view rest = item;
  std::array<double, 3> numbers{};
  for (double& number : numbers) {
    const auto read = ReadNumber(NextPart(rest, ":"));
    if (!read) return Tr("%1 is no range first:step:last.", Quoted(item));
    number = *read;
  }
  if (!rest.empty() || std::count(item.begin(), item.end(), ':') != 2)
    return Tr("%1 is no range first:step:last.", Quoted(item));
  const auto [first, step, last] = numbers;
  if (step == 0) return Tr("The step of %1 is 0.", Quoted(item));
  // A little more, so that rounding does not take the last value away.
  const double steps = std::floor((last - first) / step + 1e-6);
  if (steps < 0) return Tr("The step of %1 leads away from its end.", Quoted(item));
  if (!(steps + static_cast<double>(values.size()) < kMostGridX)) return TooMany();
  const double scale = DecimalScale(first, step);
  const double start = std::nearbyint(first * scale), stride = std::nearbyint(step * scale);
  for (int k = 0; k <= static_cast<int>(steps); ++k)
    values.push_back(scale > 0 ? (start + k * stride) / scale : first + k * step);
  return {};
}

}  // namespace

XGrid ReadXGrid(std::string_view text) {
  XGrid grid;
  while (!text.empty() && grid.Fault.empty()) {
    std::string_view item = NextPart(text, ",;");
    if (item.find(':') != std::string_view::npos) {
      grid.Fault = AddRange(item, grid.Values);
      continue;
    }
    while (!item.empty() && grid.Fault.empty()) {
      const std::string_view word = NextPart(item, kBlanks);
      if (word.empty()) continue;
      const auto value = ReadNumber(word);
      if (!value)
        grid.Fault = Tr("%1 is no number.", Quoted(word));
      else if (grid.Values.size() >= kMostGridX)
        grid.Fault = TooMany();
      else
        grid.Values.push_back(*value);
    }
  }
  return grid;
}

}  // namespace graphize
