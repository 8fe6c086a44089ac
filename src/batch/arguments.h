#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// A command line that cannot be understood: the text names the option.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An option of a command: "--long", "-s".
struct OptionSpec {
  const char* Long;
  char Short = 0;
  const char* Value = nullptr;  // what it takes, as the help names it; null for a switch
  const char* Group = "";       // heading in the help
  const char* Text = "";        // what the help says of it; it may have several lines
  bool Repeatable = false;
  const char* Choice = nullptr;  // of a switch: the one value that may stand behind it
};

/// A command, or the program itself, as the help shows it.
struct CommandSpec {
  std::string Usage;  // its first lines
  std::string About;
  std::vector<OptionSpec> Options;
  std::string Footer;
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
/// as they are clear, operands alone behind "--"; "-" is an operand. Throws UsageError. The result
/// points into `command`.
CommandLine ReadCommandLine(const CommandSpec& command, std::span<const std::string> words);

/// The answer to --help.
std::string HelpText(const CommandSpec& command);

}  // namespace graphize
