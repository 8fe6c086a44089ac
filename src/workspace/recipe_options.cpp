#include "workspace/recipe_options.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/tokens.h"
#include "base/translation.h"
#include "workspace/workspace.h"

namespace graphize {

namespace {

std::string OnOff(bool on) {
  return on ? "on" : "off";
}

bool TakeOnOff(const std::string& value, bool& on) {
  if (value != "on" && value != "off") return false;
  on = value == "on";
  return true;
}

template <auto Member>
std::string ReadNumber(const Workspace& ws) {
  return std::to_string(ws.settings.*Member);
}

template <auto Member, int Least, int Most>
bool TakeNumber(Workspace& ws, const std::string& value) {
  const auto number = IntegerText(value, Least, Most);
  if (!number) return false;
  auto& member = ws.settings.*Member;
  member = static_cast<std::remove_reference_t<decltype(member)>>(*number);
  return true;
}

/// A number that has a name for each of its values; what came of a damaged settings file is a bare
/// number.
template <auto Member, const auto& Names>
std::string ReadChoice(const Workspace& ws) {
  const int value = ws.settings.*Member;
  return value >= 0 && value < static_cast<int>(std::size(Names)) ? std::string(Names[value])
                                                                  : std::to_string(value);
}

template <auto Member, const auto& Names>
bool TakeChoice(Workspace& ws, const std::string& value) {
  const auto* name = std::find(std::begin(Names), std::end(Names), value);
  if (name == std::end(Names)) return TakeNumber<Member, -32768, 32767>(ws, value);
  ws.settings.*Member = static_cast<std::int16_t>(name - std::begin(Names));
  return true;
}

template <auto Member>
std::string ReadSwitch(const Workspace& ws) {
  return OnOff(ws.settings.*Member);
}

template <auto Member>
bool TakeSwitch(Workspace& ws, const std::string& value) {
  return TakeOnOff(value, ws.settings.*Member);
}

template <auto Member>
std::string ReadLog(const Workspace& ws) {
  return OnOff(ws.calibration.*Member);
}

template <auto Set>
bool TakeLog(Workspace& ws, const std::string& value) {
  bool on = false;
  if (!TakeOnOff(value, on)) return false;
  Set(ws.calibration, on);
  return true;
}

template <auto Member>
std::string ReadIncrement(const Workspace& ws) {
  return ws.tracer.*Member;
}

template <auto Member>
bool TakeIncrement(Workspace& ws, const std::string& value) {
  ws.tracer.*Member = value;  // as it was typed: the tracer reads it
  return true;
}

template <auto Member>
std::string ReadChecked(const Workspace& ws) {
  return OnOff((ws.tracer.*Member).Checked);
}

template <auto Member>
bool TakeChecked(Workspace& ws, const std::string& value) {
  return TakeOnOff(value, (ws.tracer.*Member).Checked);
}

// A colour outside the palette is drawn as black: as the settings file has it.
constexpr int kLeast = std::numeric_limits<std::int32_t>::min();
constexpr int kMost = std::numeric_limits<std::int32_t>::max();

using S = Settings;
using T = TracerControl;

constexpr std::array<std::string_view, 3> kTracers = {"peaks", "smooth", "scan"};
constexpr std::array<std::string_view, 4> kSnaps = {"none", "x", "y", "center"};
constexpr std::array<std::string_view, 4> kDelimiters = {"tab", "comma", "space", "semicolon"};

constexpr RecipeOption kOptions[] = {
    {"x-log", ReadLog<&AxisCalibration::XLog>, TakeLog<SetXLog>},
    {"y-log", ReadLog<&AxisCalibration::YLog>, TakeLog<SetYLog>},
    {"snap", ReadChoice<&S::SnapMode, kSnaps>, TakeChoice<&S::SnapMode, kSnaps>},
    {"snap-distance", ReadNumber<&S::SnapDistance>, TakeNumber<&S::SnapDistance, -32768, 32767>},
    {"tracer", ReadChoice<&S::Trace, kTracers>, TakeChoice<&S::Trace, kTracers>},
    {"x-increment", ReadIncrement<&T::Xrange>, TakeIncrement<&T::Xrange>},
    {"y-increment", ReadIncrement<&T::Yrange>, TakeIncrement<&T::Yrange>},
    {"center", ReadChecked<&T::Center>, TakeChecked<&T::Center>},
    {"above", ReadChecked<&T::Above>, TakeChecked<&T::Above>},
    {"below", ReadChecked<&T::Below>, TakeChecked<&T::Below>},
    {"inside-axes", [](const Workspace& ws) { return OnOff(ws.tracer.InsideAxes); },
     [](Workspace& ws, const std::string& value) {
       return TakeOnOff(value, ws.tracer.InsideAxes);
     }},
    {"trace-color", ReadNumber<&S::TraceColor>, TakeNumber<&S::TraceColor, kLeast, kMost>},
    {"block-color", ReadNumber<&S::BlockColor>, TakeNumber<&S::BlockColor, kLeast, kMost>},
    {"x-digits", ReadNumber<&S::XDigits>, TakeNumber<&S::XDigits, 1, kMaxPlaces>},
    {"x-decimals", ReadNumber<&S::XDecimals>, TakeNumber<&S::XDecimals, 0, kMaxPlaces>},
    {"x-exponent", ReadSwitch<&S::XExp>, TakeSwitch<&S::XExp>},
    {"y-digits", ReadNumber<&S::YDigits>, TakeNumber<&S::YDigits, 1, kMaxPlaces>},
    {"y-decimals", ReadNumber<&S::YDecimals>, TakeNumber<&S::YDecimals, 0, kMaxPlaces>},
    {"y-exponent", ReadSwitch<&S::YExp>, TakeSwitch<&S::YExp>},
    {"decimal-point", ReadSwitch<&S::DecimalPoint>, TakeSwitch<&S::DecimalPoint>},
    {"delimiter", ReadChoice<&S::Delimiter, kDelimiters>, TakeChoice<&S::Delimiter, kDelimiters>},
    {"errors",
     [](const Workspace& ws) {
       const bool isPixel = ws.commands.SaveErrors && ws.commands.PixelErrors;
       return isPixel ? std::string("pixel") : std::string(OnOff(ws.commands.SaveErrors));
     },
     [](Workspace& ws, const std::string& value) {
       ws.commands.PixelErrors = value == "pixel";
       return TakeOnOff(value == "pixel" ? "on" : value, ws.commands.SaveErrors);
     }},
};

}  // namespace

std::span<const RecipeOption> RecipeOptions() {
  return kOptions;
}

std::vector<std::string> OptionValues(const Workspace& ws) {
  std::vector<std::string> values;
  for (const RecipeOption& option : kOptions) values.push_back(option.Read(ws));
  return values;
}

Outcome Run(Workspace& ws, const Desktop&, const SetStep& step) {
  for (const RecipeOption& option : kOptions) {
    if (step.Option != option.Name) continue;
    if (!option.Take(ws, step.Value))
      return Refused(Tr("\"%1\" cannot be \"%2\"", step.Option, step.Value));
    BuildFormats(ws.settings, ws.formats);
    return {};
  }
  return Refused(Tr("there is no option \"%1\"", step.Option));
}

}  // namespace graphize
