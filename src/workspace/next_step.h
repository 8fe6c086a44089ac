#pragma once

#include <array>
#include <string>

#include "base/translation.h"
#include "workspace/workspace.h"

namespace graphize {

/// The way from a picture to a data file; to be translated.
inline constexpr std::array<const char*, 4> kWay = {Marked("Open"), Marked("Define Axis"),
                                                    Marked("Graphize"), Marked("Save")};

/// Where on it one is, and what is to be done there, in one sentence.
struct NextStep {
  int Present = 0;   // of kWay
  std::string Hint;  // a mode's prompt or what was told last; else the step's own
};
NextStep NextStepOf(const Workspace& ws);

bool IsNextShown(const Workspace& ws);
void SwitchNext(Workspace& ws);

}  // namespace graphize
