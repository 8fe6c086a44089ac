#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/settings_file.h"

namespace graphize {

inline constexpr int kTwipsPerPixel = 15;

enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

/// Where the main window is, in twips (15 per pixel).
struct WindowPlacement {
  int Top = 0;
  int Left = 0;
  int Width = 0;
  int Height = 0;
  WindowState State = WindowState::Maximised;
};

/// 5 % of the screen from its top and left edges, 90 % of its size, maximised. RunTimeError
/// "Overflow" when one of them is beyond 16 bits: from 2428 pixels of width or height on.
WindowPlacement DefaultPlacement(int screenWidthPixels, int screenHeightPixels);

/// Takes over what the file holds. What it lacks comes from `defaults`; without them (the screen is
/// too large for any) `placement` keeps what it has and a note says so. Sizes below a pixel, places
/// beyond any screen and unknown states count as missing, with a note in plain words.
void ReadPlacement(const SettingsFile& file, const std::optional<WindowPlacement>& defaults,
                   WindowPlacement& placement, std::vector<std::string>& notes);

/// State, top, left, width and height, as they are.
void WritePlacement(SettingsFile& file, const WindowPlacement& placement);

}  // namespace graphize
