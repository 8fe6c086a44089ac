#pragma once

#include "desktop/desktop.h"

namespace graphize::test {

/// A desktop where nothing happens: messages are answered with Ok, Escape is never held.
inline Desktop QuietDesktop() {
  return {.ShowMessage = [](const Message&) { return Answer::Ok; },
          .Prompt = [](const TextPrompt&) { return std::string(); },
          .ChooseFile = [](const FileQuestion&) { return std::nullopt; },
          .ChooseFiles = [](const FileQuestion&) { return std::vector<std::filesystem::path>(); },
          .ClipboardHasPicture = [] { return false; },
          .ClipboardPicture = [] { return Raster(); },
          .ClipboardFiles = [] { return std::vector<std::filesystem::path>(); },
          .CopyText = [](const std::string&) {},
          .ShowNow = [] {},
          .Pump = [] {},
          .EscapeHeld = [] { return false; },
          .MovePointer = [](int, int) { return false; },
          .PointAt = [](int, int) { return false; },
          .PointerOverPlot = [] { return false; },
          .StartProgram = [](const std::vector<OutsideProgram>&) { return false; }};
}

}  // namespace graphize::test
