#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "workspace/step.h"

namespace graphize {

/// A step as a line of text: its name and its fields, such as "trace 140 220 stop 37".
std::string TextOf(const Step& step);

/// The step that a line says, or what is wrong with the line in plain words. Whether the step makes
/// sense is seen when it is done.
std::variant<Step, std::string> StepOf(std::string_view line);

}  // namespace graphize
