#pragma once

#include <string>

#include "settings/settings.h"

namespace graphize {

/// The window frmOptions. The number format, the plot cursor and the two colours act on the
/// settings at once and are shown from there; the other groups are held here until they are taken
/// over.
struct OptionsForm {
  Settings AtOpening;  // what Cancel puts back of the groups that act at once

  int Trace = 0;
  int XJump = 0, YJump = 0;  // pixels
  int SnapMode = 0;
  std::string SnapDistance;  // pixels, as typed
  bool RefreshList = false, ZoomWindow = false, SubPixelClicks = false;

  enum class ColourOf { Trace, Block };
  ColourOf Colour = ColourOf::Trace;  // which colour the palette picture chooses
  std::string Example;                // a point in the format as it is now
  std::string Note;                   // why the last Save has failed; empty when it has not
};

inline constexpr int kLargestJump = 1000;         // pixels, at least 1
inline constexpr int kLargestSnapDistance = 100;  // pixels, at least 0
inline constexpr int kMostPlaces = 15;            // digits at least 1, decimals at least 0

/// The held groups, from the settings.
void FillOptions(OptionsForm& form, const Settings& settings);
/// The held groups, into the settings. What a person has not changed stays as it was read, a number
/// out of range, too.
void TakeOptions(const OptionsForm& form, Settings& settings);
/// Format, cursor and colours as they were when the window opened.
void PutBackOptions(const OptionsForm& form, Settings& settings);

/// One step of an up-down; it stays in its range and comes back into it.
void StepXJump(OptionsForm& form, int step);
void StepYJump(OptionsForm& form, int step);
void StepSnapDistance(OptionsForm& form, int step);
/// A text that is no distance in range, or the beginning of one, is not taken.
void TypeSnapDistance(OptionsForm& form, const std::string& text);

/// The four numbers of places in the order of their up-downs: X digits, X decimals, Y digits,
/// Y decimals.
std::int16_t PlacesOf(const Settings& settings, int index);
void StepPlaces(Settings& settings, int index, int step);

/// The colour that the palette picture shows as chosen, and a click on one of its 16 colours.
int ChosenColour(const OptionsForm& form, const Settings& settings);
void ChooseColour(const OptionsForm& form, Settings& settings, int index);
void DefaultColours(Settings& settings);

}  // namespace graphize
