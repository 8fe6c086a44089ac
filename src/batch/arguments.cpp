#include "batch/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace graphize {

namespace {

/// Options as manuals write them: "  -o, --output=FILE", "      --errors".
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(29); }

  std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode mode) const override {
    return app->get_description() + "\n" + make_groups(app, mode) + app->get_footer();
  }
  std::string make_group(std::string name, bool isPositional,
                         std::vector<const CLI::Option*> options) const override {
    return CLI::Formatter::make_group(name, isPositional, options).substr(1);  // no blank line
  }
  std::string make_option_name(const CLI::Option* option, bool) const override {
    const auto& letters = option->get_snames();
    return (letters.empty() ? "    " : "-" + letters[0] + ", ") + "--" + option->get_lnames()[0];
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_option_text();
  }
};

using SpecOfOption = std::map<const CLI::Option*, const OptionSpec*>;

SpecOfOption Declare(CLI::App& app, const CommandSpec& command) {
  SpecOfOption specs;
  app.set_help_flag();  // --help is an option like the others
  for (const OptionSpec& spec : command.Options) {
    const std::string name =
        (spec.Short != 0 ? std::string("-") + spec.Short + "," : "") + "--" + spec.Long;
    CLI::Option* option = spec.Value == nullptr ? app.add_flag(name) : app.add_option(name);
    option->description(spec.Text)->group(spec.Group)->take_all();
    if (spec.Value != nullptr) option->option_text(std::string("=") + spec.Value);
    if (spec.Choice != nullptr) option->option_text(std::string("[=") + spec.Choice + "]");
    specs[option] = &spec;
  }
  return specs;
}

/// The option of that long name, or of one that begins so; null when there is none.
const OptionSpec* FindLong(const CommandSpec& command, const std::string& name) {
  const OptionSpec* found = nullptr;
  for (const OptionSpec& spec : command.Options) {
    if (name == spec.Long) return &spec;
    if (name.empty() || !std::string_view(spec.Long).starts_with(name)) continue;
    if (found != nullptr)
      throw UsageError("--" + name + " may mean --" + found->Long + " or --" + spec.Long);
    found = &spec;
  }
  return found;
}

bool TakesValue(const CommandSpec& command, char letter) {
  return std::any_of(command.Options.begin(), command.Options.end(), [&](const OptionSpec& spec) {
    return spec.Short == letter && spec.Value != nullptr;
  });
}

/// The words with long names in full and their values as words of their own: the library knows no
/// shortened names, and would take the next word as the value of "--title=".
std::vector<std::string> FullWords(const CommandSpec& command, std::span<const std::string> words) {
  std::vector<std::string> full;
  bool isValue = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const bool wasValue = std::exchange(isValue, false);
    full.push_back(word);
    if (wasValue) continue;
    if (word == "--") {
      full.insert(full.end(), words.begin() + i + 1, words.end());
      break;
    }
    if (!word.starts_with("--")) {
      isValue = word.size() == 2 && word[0] == '-' && TakesValue(command, word[1]);
      continue;
    }
    const std::size_t equals = word.find('=');
    const OptionSpec* spec = FindLong(command, word.substr(2, equals - 2));
    if (spec == nullptr) throw UsageError("there is no option " + word.substr(0, equals));
    full.back() = std::string("--") + spec->Long;
    isValue = spec->Value != nullptr && equals == word.npos;
    if (equals == word.npos) continue;
    const std::string value = word.substr(equals + 1);
    if (spec->Value != nullptr) {
      full.push_back(value);
    } else if (spec->Choice == nullptr) {
      throw UsageError(full.back() + " takes no value");
    } else if (value != spec->Choice) {
      throw UsageError(full.back() + " takes no value but " + spec->Choice);
    } else {
      full.back() += "=" + value;
    }
  }
  return full;
}

}  // namespace

std::string GivenOption::Name() const {
  return std::string("--") + Spec->Long + (Value.empty() ? "" : " " + Value);
}

const GivenOption* CommandLine::Find(std::string_view name) const {
  const GivenOption* found = nullptr;
  for (const GivenOption& option : Options)
    if (option.Is(name)) found = &option;
  return found;
}

CommandLine ReadCommandLine(const CommandSpec& command, std::span<const std::string> words) {
  CLI::App app;
  const SpecOfOption specs = Declare(app, command);
  // Not a list without end: of that the library would split "[1,2]", which is a name of a picture.
  CLI::Option* const operands = app.add_option("operands");
  operands->expected(static_cast<int>(words.size()) + 1)->take_all();

  std::vector<std::string> full = FullWords(command, words);
  std::reverse(full.begin(), full.end());  // as the library wants them
  try {
    app.parse(std::move(full));
  } catch (const CLI::ExtrasError&) {
    throw UsageError("there is no option " + app.remaining().front());
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string text = error.what();  // begins with the option's name
    throw UsageError(text.substr(0, text.find(':')) + " needs a value");
  } catch (const CLI::Error& error) {
    throw UsageError(error.what());
  }

  CommandLine line;
  std::map<const CLI::Option*, std::size_t> taken;
  for (const CLI::Option* option : app.parse_order()) {
    const std::string& value = option->results()[taken[option]++];
    if (option == operands) {
      line.Operands.push_back(value);
      continue;
    }
    const OptionSpec& spec = *specs.at(option);
    if (!spec.Repeatable && line.Has(spec.Long))
      throw UsageError(std::string("--") + spec.Long + " is given twice");
    const bool isChoice = spec.Choice != nullptr && value == spec.Choice;
    line.Options.push_back({&spec, spec.Value != nullptr || isChoice ? value : ""});
  }
  return line;
}

std::string HelpText(const CommandSpec& command) {
  CLI::App app(command.Usage + "\n" + command.About);
  app.formatter(std::make_shared<HelpFormatter>());
  app.footer(command.Footer);
  Declare(app, command);
  return app.help();
}

}  // namespace graphize
