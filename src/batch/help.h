#pragma once

#include <string>

namespace graphize {

std::string VersionText();
/// The answers to --help: of the program, and of its commands.
std::string ProgramHelp();
std::string DigitizeHelp();
std::string ReplayHelp();

}  // namespace graphize
