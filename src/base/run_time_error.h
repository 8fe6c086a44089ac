#pragma once

#include <stdexcept>
#include <string>

namespace graphize {

/// What ends a command: the plain words that a person is shown. Thrown by operations, caught in one
/// place around every command (commands/run_command.h).
class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(const std::string& plainWords) : std::runtime_error(plainWords) {}
  /// Translates the text. Makes no string in the frame of a function that throws, which would then
  /// be a guarded one: some are in every inner loop.
  explicit RunTimeError(const char* english);
};

}  // namespace graphize
