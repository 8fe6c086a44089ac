#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace graphize {

/// A command line that cannot be understood: the text names the option.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An option of a command: "--long", "-s".
struct OptionSpec {
  enum class Takes { Nothing, Value };
  const char* Long;
  char Short = 0;
  Takes Kind = Takes::Nothing;
  bool Repeatable = false;
};

struct GivenOption {
  const OptionSpec* Spec;
  std::string Value;

  bool Is(std::string_view name) const { return name == Spec->Long; }
  /// As messages name it: "--trace 70,430".
  std::string Name() const;
};

struct CommandLine {
  std::vector<GivenOption> Options;  // in their order
  std::vector<std::string> Operands;

  /// The last one of that name; null when it was not given.
  const GivenOption* Find(std::string_view name) const;
  bool Has(std::string_view name) const { return Find(name) != nullptr; }
};

/// Reads a command line by the GNU habits: options and operands in any order, "--name value" and
/// "--name=value", "-o value" and "-ovalue", short switches together, long names shortened as long
/// as they are clear, operands alone behind "--"; "-" is an operand. Throws UsageError.
CommandLine ReadCommandLine(std::span<const OptionSpec> specs, std::span<const std::string> words);

}  // namespace graphize
