#include "batch/digitize_settings.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <utility>

#include "base/tokens.h"
#include "batch/option_values.h"

namespace graphize {

namespace {

class SettingsMaker {
 public:
  explicit SettingsMaker(const CommandLine& line) : line_(line) {}

  std::vector<BatchStep> Make() {
    MakeSettings();
    MakeFormat();
    return std::move(steps_);
  }

 private:
  void Set(const char* option, const std::string& value, const std::string& origin) {
    steps_.push_back({.Do = SetStep{option, value}, .Origin = origin});
  }

  void MakeSettings() {
    for (const char* log : {"x-log", "y-log"})
      if (line_.Has(log)) Set(log, "on", std::string("--") + log);
    CopyChoice("snap", "snap", {"none", "x", "y", "center"});
    CopyNumber("snap-distance", {"snap-distance"}, 0, 32767);
    CopyChoice("algorithm", "tracer", {"peaks", "smooth"});
    CopyNumber("x-increment", {"x-increment"}, 0, 32767);
    CopyNumber("y-increment", {"y-increment"}, 0, 32767);
    if (const GivenOption* emit = line_.Find("emit")) {
      static constexpr std::array kPoints = {"center", "above", "below"};
      const std::vector<std::string> wanted = Split(emit->Value, ',');
      for (const std::string& point : wanted)
        if (std::find(kPoints.begin(), kPoints.end(), point) == kPoints.end())
          Refuse(*emit, "some of center,above,below are expected");
      for (const char* point : kPoints) {
        const bool on = std::find(wanted.begin(), wanted.end(), point) != wanted.end();
        Set(point, on ? "on" : "off", emit->Name());
      }
    }
    if (line_.Has("inside-axes")) Set("inside-axes", "on", "--inside-axes");
    if (const GivenOption* errors = line_.Find("errors"))
      Set("errors", errors->Value.empty() ? "on" : errors->Value, errors->Name());
  }

  void MakeFormat() {
    CopyNumber("digits", {"x-digits", "y-digits"}, 1, 15);
    CopyNumber("decimals", {"x-decimals", "y-decimals"}, 0, 15);
    if (const GivenOption* option = line_.Find("exponent")) {
      const std::array<std::string, 2> values = ForBothAxes(*option);
      for (const std::string& value : values)
        if (value != "on" && value != "off")
          Refuse(*option, "on or off is expected, or one of each");
      Set("x-exponent", values[0], option->Name());
      Set("y-exponent", values[1], option->Name());
    }
    CopyChoice("delimiter", "delimiter", {"tab", "comma", "space", "semicolon"});
    if (const GivenOption* option = line_.Find("decimal-point")) {
      if (option->Value != "point" && option->Value != "comma")
        Refuse(*option, "point or comma is expected");
      Set("decimal-point", option->Value == "point" ? "on" : "off", option->Name());
    }
  }

  /// A number into one option, or one for each of two.
  void CopyNumber(const char* name, std::initializer_list<const char*> options, int least,
                  int most) {
    const GivenOption* given = line_.Find(name);
    if (given == nullptr) return;
    const auto values =
        options.size() == 2 ? ForBothAxes(*given) : std::array<std::string, 2>{given->Value, {}};
    std::size_t i = 0;
    for (const char* option : options) {
      if (!IntegerText(values[i], least, most))
        Refuse(*given, "a whole number from " + std::to_string(least) + " to " +
                           std::to_string(most) + " is expected");
      Set(option, values[i++], given->Name());
    }
  }

  void CopyChoice(const char* name, const char* option, std::initializer_list<const char*> values) {
    const GivenOption* given = line_.Find(name);
    if (given == nullptr) return;
    std::string expected;
    for (const char* value : values) {
      if (given->Value == value) return Set(option, value, given->Name());
      expected += std::string(expected.empty() ? "" : ", ") + value;
    }
    Refuse(*given, "one of " + expected + " is expected");
  }

  const CommandLine& line_;
  std::vector<BatchStep> steps_;
};

}  // namespace

std::vector<BatchStep> SettingSteps(const CommandLine& line) {
  return SettingsMaker(line).Make();
}

}  // namespace graphize
