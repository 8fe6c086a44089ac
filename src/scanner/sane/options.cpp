#include "scanner/sane/options.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace graphize {

namespace {

/// One option of an open device, when it is there and has effect now.
struct Option {
  SANE_Handle Device = nullptr;
  SANE_Int Index = 0;
  const SANE_Option_Descriptor* Description = nullptr;

  explicit operator bool() const { return Description != nullptr; }
  bool CanBeSet() const {
    return Description != nullptr && SANE_OPTION_IS_SETTABLE(Description->cap);
  }
  bool IsNumber() const {
    return Description != nullptr &&
           (Description->type == SANE_TYPE_INT || Description->type == SANE_TYPE_FIXED) &&
           Description->size == sizeof(SANE_Word);
  }
};

Option FindOption(SANE_Handle device, std::string_view name) {
  SANE_Int count = 0;
  Require(sane_control_option(device, 0, SANE_ACTION_GET_VALUE, &count, nullptr));
  for (SANE_Int i = 1; i < count; ++i) {
    const SANE_Option_Descriptor* option = sane_get_option_descriptor(device, i);
    if (option != nullptr && option->name != nullptr && option->name == name &&
        SANE_OPTION_IS_ACTIVE(option->cap))
      return {device, i, option};
  }
  return {};
}

double NumberOf(const Option& option, SANE_Word word) {
  return option.Description->type == SANE_TYPE_FIXED ? SANE_UNFIX(word) : word;
}

SANE_Word WordOf(const Option& option, double number) {
  const double scaled = option.Description->type == SANE_TYPE_FIXED ? number * 65536 : number;
  return static_cast<SANE_Word>(std::lround(std::clamp(scaled, -2147483647.0, 2147483647.0)));
}

/// Values that a device does not take are its own affair: what it has made of them is read back.
void SetValue(const Option& option, void* value) {
  const SANE_Status status =
      sane_control_option(option.Device, option.Index, SANE_ACTION_SET_VALUE, value, nullptr);
  if (status != SANE_STATUS_INVAL && status != SANE_STATUS_UNSUPPORTED) Require(status);
}

double GetNumber(const Option& option) {
  if (!option.IsNumber()) return 0;
  SANE_Word word = 0;
  Require(sane_control_option(option.Device, option.Index, SANE_ACTION_GET_VALUE, &word, nullptr));
  return NumberOf(option, word);
}

/// Sets the nearest that the option allows.
void SetNumber(const Option& option, double number) {
  if (!option.CanBeSet() || !option.IsNumber()) return;
  SANE_Word word = WordOf(option, number);
  const auto& constraint = option.Description->constraint;
  if (option.Description->constraint_type == SANE_CONSTRAINT_RANGE) {
    const SANE_Range& range = *constraint.range;
    word = std::clamp(word, range.min, range.max);
    if (range.quant > 0) {
      const auto steps = std::lround((static_cast<double>(word) - range.min) / range.quant);
      const double onGrid = range.min + static_cast<double>(steps) * range.quant;
      word = static_cast<SANE_Word>(onGrid > range.max ? onGrid - range.quant : onGrid);
    }
  } else if (option.Description->constraint_type == SANE_CONSTRAINT_WORD_LIST) {
    const SANE_Word* first = constraint.word_list + 1;
    const SANE_Word* last = first + constraint.word_list[0];
    if (first != last)
      word = *std::min_element(first, last, [&](SANE_Word a, SANE_Word b) {
        return std::abs(std::int64_t{a} - word) < std::abs(std::int64_t{b} - word);
      });
  }
  SetValue(option, &word);
}

std::string GetText(const Option& option) {
  if (!option || option.Description->type != SANE_TYPE_STRING || option.Description->size < 1)
    return {};
  std::vector<char> text(static_cast<std::size_t>(option.Description->size) + 1);
  Require(sane_control_option(option.Device, option.Index, SANE_ACTION_GET_VALUE, text.data(),
                              nullptr));
  return text.data();
}

std::vector<std::string> TextsOf(const Option& option) {
  std::vector<std::string> texts;
  if (option.CanBeSet() && option.Description->type == SANE_TYPE_STRING &&
      option.Description->constraint_type == SANE_CONSTRAINT_STRING_LIST)
    for (const SANE_String_Const* text = option.Description->constraint.string_list;
         *text != nullptr; ++text)
      texts.emplace_back(*text);
  return texts;
}

void SetText(const Option& option, const std::string& text) {
  const std::vector<std::string> allowed = TextsOf(option);
  if (std::find(allowed.begin(), allowed.end(), text) == allowed.end()) return;
  if (GetText(option) == text) return;
  std::vector<char> buffer(
      std::max(text.size() + 1, static_cast<std::size_t>(option.Description->size)));
  std::copy(text.begin(), text.end(), buffer.begin());
  SetValue(option, buffer.data());
}

std::vector<double> NumbersOf(const Option& option) {
  std::vector<double> numbers;
  if (!option.CanBeSet() || !option.IsNumber() ||
      option.Description->constraint_type != SANE_CONSTRAINT_WORD_LIST)
    return numbers;
  const SANE_Word* words = option.Description->constraint.word_list;
  for (SANE_Word i = 1; i <= words[0]; ++i) numbers.push_back(NumberOf(option, words[i]));
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

ScanRange RangeOf(const Option& option) {
  if (!option.CanBeSet() || !option.IsNumber() ||
      option.Description->constraint_type != SANE_CONSTRAINT_RANGE)
    return {};
  const SANE_Range& range = *option.Description->constraint.range;
  return {NumberOf(option, range.min), NumberOf(option, range.max), NumberOf(option, range.quant)};
}

/// The way across or down the glass: its edge options and how far they go.
struct Edges {
  Option First, Last;
  ScanRange Reach;

  Edges(SANE_Handle device, const char* first, const char* last)
      : First(FindOption(device, first)), Last(FindOption(device, last)) {
    const ScanRange low = RangeOf(First), high = RangeOf(Last);
    if (high.Max > low.Min) Reach = {low.Min, high.Max, std::max(low.Step, high.Step)};
  }
  bool CanBeSet() const { return Reach.Max > Reach.Min; }
  void Get(double& start, double& length) const {
    start = GetNumber(First);
    length = GetNumber(Last) - start;
  }
  void Set(double start, double length) const {
    if (!CanBeSet() || length <= 0) return;
    SetNumber(First, start);
    SetNumber(Last, start + length);
  }
};

Option ResolutionOf(SANE_Handle device) {
  const Option option = FindOption(device, "resolution");
  return option ? option : FindOption(device, "x-resolution");
}

}  // namespace

void ApplySettings(SANE_Handle device, const ScanSettings& settings) {
  // In this order: each may change what the next ones offer.
  if (!settings.PaperSource.empty()) SetText(FindOption(device, "source"), settings.PaperSource);
  if (!settings.Mode.empty()) SetText(FindOption(device, "mode"), settings.Mode);
  if (settings.Depth > 0) SetNumber(FindOption(device, "depth"), settings.Depth);
  if (settings.Resolution > 0) {
    SetNumber(ResolutionOf(device), settings.Resolution);
    if (!FindOption(device, "resolution"))
      SetNumber(FindOption(device, "y-resolution"), settings.Resolution);
  }
  Edges(device, "tl-x", "br-x").Set(settings.Area.Left, settings.Area.Width);
  Edges(device, "tl-y", "br-y").Set(settings.Area.Top, settings.Area.Height);
}

ScanAbilities ReadAbilities(SANE_Handle device) {
  ScanAbilities can;
  const Option paper = FindOption(device, "source"), mode = FindOption(device, "mode");
  const Option depth = FindOption(device, "depth"), resolution = ResolutionOf(device);
  can.PaperSources = TextsOf(paper);
  can.Modes = TextsOf(mode);
  for (const double bits : NumbersOf(depth)) can.Depths.push_back(static_cast<int>(bits));
  can.Resolutions = NumbersOf(resolution);
  can.ResolutionRange = RangeOf(resolution);
  const Edges across(device, "tl-x", "br-x"), down(device, "tl-y", "br-y");
  can.Across = across.Reach;
  can.Down = down.Reach;
  can.AreaInPixels = across.CanBeSet() && across.First.Description->unit == SANE_UNIT_PIXEL;
  can.Now.PaperSource = GetText(paper);
  can.Now.Mode = GetText(mode);
  can.Now.Depth = static_cast<int>(GetNumber(depth));
  can.Now.Resolution = GetNumber(resolution);
  across.Get(can.Now.Area.Left, can.Now.Area.Width);
  down.Get(can.Now.Area.Top, can.Now.Area.Height);
  SANE_Parameters parameters = {};
  Require(sane_get_parameters(device, &parameters));
  can.Width = parameters.pixels_per_line;
  can.Height = parameters.lines;
  return can;
}

void SetPreview(SANE_Handle device, bool on) {
  const Option preview = FindOption(device, "preview");
  if (!preview.CanBeSet() || preview.Description->type != SANE_TYPE_BOOL) return;
  SANE_Bool value = on ? SANE_TRUE : SANE_FALSE;
  SetValue(preview, &value);
}

}  // namespace graphize
