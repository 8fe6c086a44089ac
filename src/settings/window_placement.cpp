#include "settings/window_placement.h"

#include "base/numbers.h"
#include "base/translation.h"
#include "settings/stored_number.h"

namespace graphize {

namespace {

// A window system counts pixels in 16 bits: no window is farther away or larger.
constexpr int kFarthest = 32767 * kTwipsPerPixel;

int PartOf(double part, int screenPixels) {
  return ToInt16(part * (static_cast<double>(screenPixels) * kTwipsPerPixel));
}

}  // namespace

WindowPlacement DefaultPlacement(int screenWidthPixels, int screenHeightPixels) {
  return {.Top = PartOf(0.05, screenHeightPixels),
          .Left = PartOf(0.05, screenWidthPixels),
          .Width = PartOf(0.9, screenWidthPixels),
          .Height = PartOf(0.9, screenHeightPixels),
          .State = WindowState::Maximised};
}

void ReadPlacement(const SettingsFile& file, const std::optional<WindowPlacement>& defaults,
                   WindowPlacement& placement, std::vector<std::string>& notes) {
  const WindowPlacement otherwise = defaults.value_or(placement);
  bool missing = false;
  const auto read = [&](const char* key, int standard, int least) {
    missing = missing || !ReadValue(file, kWindowSection, key);
    return static_cast<int>(
        ReadNumber(file, kWindowSection, key, standard, least, kFarthest, notes));
  };
  placement.Top = read("WindowTop", otherwise.Top, -kFarthest);
  placement.Left = read("WindowLeft", otherwise.Left, -kFarthest);
  placement.Width = read("WindowWidth", otherwise.Width, kTwipsPerPixel);
  placement.Height = read("WindowHeight", otherwise.Height, kTwipsPerPixel);
  placement.State = static_cast<WindowState>(ReadNumber(
      file, kWindowSection, "WindowState", static_cast<int>(WindowState::Maximised), 0, 2, notes));
  if (missing && !defaults)
    notes.push_back(Tr("The screen is too large for the window's default place (Overflow)."));
}

void WritePlacement(SettingsFile& file, const WindowPlacement& placement) {
  WriteNumber(file, kWindowSection, "WindowState", static_cast<int>(placement.State));
  WriteNumber(file, kWindowSection, "WindowTop", placement.Top);
  WriteNumber(file, kWindowSection, "WindowLeft", placement.Left);
  WriteNumber(file, kWindowSection, "WindowWidth", placement.Width);
  WriteNumber(file, kWindowSection, "WindowHeight", placement.Height);
}

}  // namespace graphize
