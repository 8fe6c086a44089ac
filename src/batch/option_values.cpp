#include "batch/option_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/numbers.h"
#include "workspace/picture_part.h"

namespace graphize {

void Refuse(const GivenOption& option, const std::string& expected) {
  throw UsageError("--" + std::string(option.Spec->Long) + " \"" + option.Value +
                   "\": " + expected);
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator)
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

std::pair<std::string, std::string> SplitOff(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == text.npos) return {text, ""};
  return {text.substr(0, colon), text.substr(colon + 1)};
}

int NumberOf(const GivenOption& option, const std::string& text, const char* expected) {
  constexpr int kMost = 32766;
  if (const auto number = IntegerText(text, 0, kMost)) return *number;
  const auto number = WholeNumberText(text);
  if (number && *number == std::nearbyint(*number))
    Refuse(option, "\"" + text + "\" is not from 0 to " + std::to_string(kMost));
  Refuse(option, expected);
}

PlotPixel PixelOf(const GivenOption& option, const std::string& text, const char* expected) {
  const auto [column, row] = Numbers<2>(option, text, expected);
  return {column, row};
}

std::pair<PlotPixel, int> SizedPixelOf(const GivenOption& option) {
  const auto [at, size] = SplitOff(option.Value);
  const auto number = size.empty() ? std::optional(4) : IntegerText(size, 0, 1000);
  if (!number) Refuse(option, "COLUMN,ROW or COLUMN,ROW:SIZE is expected");
  return {PixelOf(option, at), *number};
}

float SingleOf(const GivenOption& option, const std::string& text) {
  const auto number = WholeNumberText(text);
  if (!number || std::fabs(*number) > std::numeric_limits<float>::max())
    Refuse(option, "\"" + text + "\" is no number of single precision");
  return static_cast<float>(*number);
}

std::pair<PlotPixel, std::vector<std::string>> AxisPointOf(const GivenOption& option,
                                                           std::size_t count,
                                                           const char* expected) {
  const auto [at, behind] = SplitOff(option.Value);
  const std::vector<std::string> values = Split(behind, ',');
  if (values.size() > count)
    Refuse(option, std::string(expected) + "; a comma parts values, the decimal sign is a point");
  if (values.size() != count) Refuse(option, expected);
  for (const std::string& value : values) SingleOf(option, value);
  return {PixelOf(option, at, expected), values};
}

std::string PartOf(const GivenOption& option) {
  if (!IsPartText(option.Value))
    Refuse(option, "half, quarter or LEFT,TOP,WIDTH,HEIGHT is expected");
  return option.Value;
}

ReadingDensity DensityOf(const GivenOption& option, const std::string& text) {
  using Kind = ReadingDensity::Kind;
  ReadingDensity density;
  if (text == "bends") {
    density.Is = Kind::Bends;
  } else if (text.starts_with("x=")) {
    density.Is = Kind::AtX;
    for (const std::string& x : Split(text.substr(2), ','))
      density.Xs.push_back(SingleOf(option, x));
  } else {
    const auto pixels = IntegerText(text, 1, 32767);
    if (!pixels)
      Refuse(option,
             "COLUMN,ROW is expected, or with :PIXELS, :bends, :x=X,..., :tolerance=T or "
             ":through=COLUMN,ROW behind");
    density = {Kind::Every, *pixels, {}};
  }
  return density;
}

std::array<std::string, 2> ForBothAxes(const GivenOption& option) {
  const std::vector<std::string> values = Split(option.Value, ',');
  if (values.size() > 2) Refuse(option, "one value is expected, or one for X and one for Y");
  return {values.front(), values.back()};
}

std::string AsClause(std::string sentence) {
  if (sentence.ends_with('.')) sentence.pop_back();
  return LowerCase(sentence.substr(0, 1)) +
         sentence.substr(std::min<std::size_t>(1, sentence.size()));
}

std::optional<TableFormat> TableFormatOf(const CommandLine& line) {
  static constexpr std::pair<const char*, TableFormat> kFormats[] = {
      {"dat", TableFormat::Dat},
      {"csv", TableFormat::Csv},
      {"json", TableFormat::Json},
      {"graphize", TableFormat::Project}};
  const GivenOption* option = line.Find("format");
  const GivenOption* output = line.Find("output");
  const std::string name = option != nullptr   ? option->Value
                           : output != nullptr ? LowerCase(output->Value)
                                               : "";
  for (const auto& [format, is] : kFormats)
    if (option != nullptr ? name == format : name.ends_with(std::string(".") + format)) return is;
  if (option != nullptr) Refuse(*option, "dat, csv, json or graphize is expected");
  return std::nullopt;
}

}  // namespace graphize
