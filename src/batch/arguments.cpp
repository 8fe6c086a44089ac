#include "batch/arguments.h"

namespace graphize {

namespace {

using Takes = OptionSpec::Takes;

const OptionSpec& FindLong(std::span<const OptionSpec> specs, const std::string& name) {
  const OptionSpec* found = nullptr;
  for (const OptionSpec& spec : specs) {
    if (name == spec.Long) return spec;
    if (!std::string_view(spec.Long).starts_with(name)) continue;
    if (found != nullptr)
      throw UsageError("--" + name + " may mean --" + found->Long + " or --" + spec.Long);
    found = &spec;
  }
  if (found == nullptr || name.empty()) throw UsageError("there is no option --" + name);
  return *found;
}

const OptionSpec& FindShort(std::span<const OptionSpec> specs, char letter) {
  for (const OptionSpec& spec : specs)
    if (spec.Short == letter) return spec;
  throw UsageError(std::string("there is no option -") + letter);
}

class Reader {
 public:
  Reader(std::span<const OptionSpec> specs, std::span<const std::string> words)
      : specs_(specs), words_(words) {}

  CommandLine Read() {
    for (; next_ < words_.size(); ++next_) {
      const std::string& word = words_[next_];
      if (word == "--") {
        line_.Operands.insert(line_.Operands.end(), words_.begin() + next_ + 1, words_.end());
        break;
      }
      if (word.starts_with("--"))
        ReadLong(word.substr(2));
      else if (word.size() > 1 && word[0] == '-')
        ReadShort(word);
      else
        line_.Operands.push_back(word);
    }
    return std::move(line_);
  }

 private:
  void ReadLong(const std::string& text) {
    const std::size_t equals = text.find('=');
    const OptionSpec& spec = FindLong(specs_, text.substr(0, equals));
    if (equals != std::string::npos) {
      if (spec.Kind == Takes::Nothing)
        throw UsageError(std::string("--") + spec.Long + " takes no value");
      return Add(spec, text.substr(equals + 1));
    }
    Add(spec, spec.Kind == Takes::Value ? NextWord(spec) : "");
  }

  void ReadShort(const std::string& word) {
    for (std::size_t i = 1; i < word.size(); ++i) {
      const OptionSpec& spec = FindShort(specs_, word[i]);
      if (spec.Kind == Takes::Nothing) {
        Add(spec, "");
        continue;
      }
      return Add(spec, i + 1 < word.size() ? word.substr(i + 1) : NextWord(spec));
    }
  }

  const std::string& NextWord(const OptionSpec& spec) {
    if (next_ + 1 >= words_.size())
      throw UsageError(std::string("--") + spec.Long + " needs a value");
    return words_[++next_];
  }

  void Add(const OptionSpec& spec, const std::string& value) {
    if (!spec.Repeatable && line_.Has(spec.Long))
      throw UsageError(std::string("--") + spec.Long + " is given twice");
    line_.Options.push_back({&spec, value});
  }

  std::span<const OptionSpec> specs_;
  std::span<const std::string> words_;
  std::size_t next_ = 0;
  CommandLine line_;
};

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

CommandLine ReadCommandLine(std::span<const OptionSpec> specs, std::span<const std::string> words) {
  return Reader(specs, words).Read();
}

}  // namespace graphize
