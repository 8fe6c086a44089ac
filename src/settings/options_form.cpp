#include "settings/options_form.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace graphize {

namespace {

int Stepped(int value, int step, int least, int most) {
  return std::clamp(value + step, least, most);
}

std::optional<int> WholeNumber(const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

constexpr std::int16_t Settings::*kPlaces[] = {&Settings::XDigits, &Settings::XDecimals,
                                               &Settings::YDigits, &Settings::YDecimals};

bool IsDigits(int index) {
  return index % 2 == 0;
}

}  // namespace

void FillOptions(OptionsForm& form, const Settings& settings) {
  form.Trace = settings.Trace;
  form.XJump = settings.XJump;
  form.YJump = settings.YJump;
  form.SnapMode = settings.SnapMode;
  form.SnapDistance = std::to_string(settings.SnapDistance);
  form.RefreshList = settings.RefreshList != 0;
  form.ZoomWindow = settings.Zoom == 1;
  form.SubPixelClicks = settings.SubPixelClicks;
}

void TakeOptions(const OptionsForm& form, Settings& settings) {
  settings.Trace = static_cast<std::int16_t>(form.Trace);
  settings.XJump = static_cast<std::int16_t>(form.XJump);
  settings.YJump = static_cast<std::int16_t>(form.YJump);
  settings.SnapMode = static_cast<std::int16_t>(form.SnapMode);
  // An empty box says nothing about the distance.
  if (const auto distance = WholeNumber(form.SnapDistance))
    settings.SnapDistance = static_cast<std::int16_t>(*distance);
  // "On" has more than one number, and the file keeps the one it had.
  if ((settings.RefreshList != 0) != form.RefreshList) settings.RefreshList = form.RefreshList;
  if ((settings.Zoom == 1) != form.ZoomWindow) settings.Zoom = form.ZoomWindow;
  settings.SubPixelClicks = form.SubPixelClicks;
}

void PutBackOptions(const OptionsForm& form, Settings& settings) {
  const Settings& old = form.AtOpening;
  settings.DecimalPoint = old.DecimalPoint;
  settings.Delimiter = old.Delimiter;
  for (int index = 0; index < 4; ++index) settings.*kPlaces[index] = PlacesOf(old, index);
  settings.XExp = old.XExp;
  settings.YExp = old.YExp;
  settings.CursorType = old.CursorType;
  settings.TraceColor = old.TraceColor;
  settings.BlockColor = old.BlockColor;
}

void StepXJump(OptionsForm& form, int step) {
  form.XJump = Stepped(form.XJump, step, 1, kLargestJump);
}

void StepYJump(OptionsForm& form, int step) {
  form.YJump = Stepped(form.YJump, step, 1, kLargestJump);
}

void StepSnapDistance(OptionsForm& form, int step) {
  const int distance = WholeNumber(form.SnapDistance).value_or(0);
  form.SnapDistance = std::to_string(Stepped(distance, step, 0, kLargestSnapDistance));
}

void TypeSnapDistance(OptionsForm& form, const std::string& text) {
  const bool digits =
      std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (!digits || text.size() > 3) return;
  if (WholeNumber(text).value_or(0) <= kLargestSnapDistance) form.SnapDistance = text;
}

std::int16_t PlacesOf(const Settings& settings, int index) {
  return settings.*kPlaces[index];
}

void StepPlaces(Settings& settings, int index, int step) {
  std::int16_t& places = settings.*kPlaces[index];
  places = static_cast<std::int16_t>(Stepped(places, step, IsDigits(index) ? 1 : 0, kMostPlaces));
}

int ChosenColour(const OptionsForm& form, const Settings& settings) {
  return form.Colour == OptionsForm::ColourOf::Trace ? settings.TraceColor : settings.BlockColor;
}

void ChooseColour(const OptionsForm& form, Settings& settings, int index) {
  (form.Colour == OptionsForm::ColourOf::Trace ? settings.TraceColor : settings.BlockColor) = index;
}

void DefaultColours(Settings& settings) {
  settings.TraceColor = Settings().TraceColor;
  settings.BlockColor = Settings().BlockColor;
}

}  // namespace graphize
