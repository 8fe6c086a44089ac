#include "batch/batch.h"

#include <limits>
#include <ostream>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "base/words.h"
#include "batch/digitize.h"
#include "batch/help.h"
#include "image/picture_gate.h"
#include "workspace/recipe_file.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

using Takes = OptionSpec::Takes;

constexpr std::size_t kLargestRecipe = 64u << 20;

/// The options that both commands have.
constexpr OptionSpec kOutputOptions[] = {
    {"output", 'o', Takes::Value},
    {"format", 0, Takes::Value},
    {"force", 'f'},
    {"jobs", 'j', Takes::Value},
    {"quiet", 'q'},
    {"help", 'h'},
};

constexpr OptionSpec kErrors{"errors"};

RunOptions ReadRunOptions(const CommandLine& line) {
  RunOptions options;
  options.Force = line.Has("force");
  options.Quiet = line.Has("quiet");
  if (const GivenOption* format = line.Find("format")) {
    if (format->Value == "csv")
      options.Format = TableFormat::Csv;
    else if (format->Value == "json")
      options.Format = TableFormat::Json;
    else if (format->Value != "dat")
      throw UsageError("--format \"" + format->Value + "\": dat, csv or json is expected");
  }
  if (const GivenOption* jobs = line.Find("jobs")) {
    const auto number = IntegerText(jobs->Value, 1, 1024);
    if (!number)
      throw UsageError("--jobs \"" + jobs->Value + "\": a whole number from 1 is expected");
    options.Workers = *number;
  }
  return options;
}

const std::string& OutputOf(const CommandLine& line) {
  const GivenOption* output = line.Find("output");
  if (output == nullptr || output->Value.empty()) throw UsageError("--output is missing");
  return output->Value;
}

std::vector<OptionSpec> WithOutput(std::span<const OptionSpec> own) {
  std::vector<OptionSpec> specs(own.begin(), own.end());
  specs.insert(specs.end(), std::begin(kOutputOptions), std::end(kOutputOptions));
  return specs;
}

bool Digitize(std::span<const std::string> words, const BatchStreams& streams) {
  const std::vector<OptionSpec> specs = WithOutput(DigitizeOptions());
  const CommandLine line = ReadCommandLine(specs, words);
  if (line.Has("help")) return streams.Out << DigitizeHelp(), true;
  if (line.Operands.empty()) throw UsageError("a picture is missing");
  const std::vector<BatchStep> steps = DigitizeSteps(line);
  const RunOptions options = ReadRunOptions(line);
  const std::vector<fs::path> pictures(line.Operands.begin(), line.Operands.end());
  return RunJobs(steps, MakeJobs(pictures, OutputOf(line), options.Format), options, streams);
}

/// A recipe does the same only on the very same pictures.
void CheckPicture(const RecipeFile::Picture& picture) {
  const std::string name = "the recipe's picture \"" + picture.Path.string() + "\" ";
  if (picture.Path.empty())
    throw UsageError("the recipe's picture came from no file: name one behind the recipe");
  GateVerdict verdict;
  std::string bytes;
  try {
    bytes = ReadPictureFile(picture.Path, verdict);
  } catch (const RunTimeError& error) {
    throw RunTimeError(name + "cannot be read: " + error.what());
  }
  if (bytes.size() == picture.FileSize && HexText(Crc32(bytes)) == picture.Checksum) return;
  throw RunTimeError(name + "is not the one that the recipe was made on (" +
                     std::to_string(picture.FileSize) + " bytes, crc32 " + picture.Checksum +
                     "; now " + std::to_string(bytes.size()) + " bytes, crc32 " +
                     HexText(Crc32(bytes)) + "); name it behind the recipe to use it all the same");
}

std::vector<BatchStep> StepsOf(const RecipeFile& recipe, const std::string& name) {
  std::vector<BatchStep> steps;
  for (const RecipeFile::Step& step : recipe.Steps)
    steps.push_back(
        {step.Text, name + ": line " + std::to_string(step.Line), std::max(step.Picture, 0)});
  return steps;
}

RecipeFile ReadRecipeFile(const std::string& name) {
  std::string text;
  if (const std::error_code error = ReadWholeFile(name, kLargestRecipe, text))
    throw RunTimeError(name + ": " + error.message());
  try {
    return ReadRecipe(text, fs::path(name).parent_path());
  } catch (const RunTimeError& error) {
    throw RunTimeError(name + ": " + error.what());
  }
}

std::vector<Job> ReplayJobs(const RecipeFile& recipe, const std::vector<fs::path>& pictures,
                            const std::string& output, TableFormat format) {
  if (!pictures.empty()) {
    if (recipe.Pictures.size() > 1)
      throw UsageError("the recipe uses " + std::to_string(recipe.Pictures.size()) +
                       " pictures: it can be done again on these only");
    return MakeJobs(pictures, output, format);
  }
  Job job;
  for (const RecipeFile::Picture& picture : recipe.Pictures) {
    CheckPicture(picture);
    job.Pictures.push_back(picture.Path);
  }
  const Job first = MakeJobs({job.Pictures.front()}, output, format).front();
  return {{first.Name, job.Pictures, first.Output}};
}

bool Replay(std::span<const std::string> words, const BatchStreams& streams) {
  const std::vector<OptionSpec> specs = WithOutput({&kErrors, 1});
  const CommandLine line = ReadCommandLine(specs, words);
  if (line.Has("help")) return streams.Out << ReplayHelp(), true;
  if (line.Operands.empty()) throw UsageError("a recipe is missing");
  const std::string output = OutputOf(line);
  const RunOptions options = ReadRunOptions(line);
  const RecipeFile recipe = ReadRecipeFile(line.Operands.front());
  const std::vector<fs::path> pictures(line.Operands.begin() + 1, line.Operands.end());
  std::vector<BatchStep> steps = StepsOf(recipe, line.Operands.front());
  if (line.Has("errors")) steps.push_back({"set errors on", "--errors"});
  const std::vector<Job> jobs = ReplayJobs(recipe, pictures, output, options.Format);
  return RunJobs(steps, jobs, options, streams);
}

}  // namespace

bool IsBatch(const std::vector<std::string>& words) {
  if (words.empty()) return false;
  for (const char* word : {"digitize", "replay", "--help", "-h", "--version"})
    if (words[0] == word) return true;
  return false;
}

int RunBatch(const std::vector<std::string>& words, const BatchStreams& streams) {
  const std::string& command = words[0];
  const std::span<const std::string> rest(words.begin() + 1, words.end());
  try {
    if (command == "--version") return streams.Out << VersionText(), 0;
    if (command == "--help" || command == "-h") return streams.Out << ProgramHelp(), 0;
    return (command == "digitize" ? Digitize(rest, streams) : Replay(rest, streams)) ? 0 : 1;
  } catch (const UsageError& error) {
    streams.Err << "graphize " << command << ": " << error.what() << "; see graphize " << command
                << " --help\n";
    return 2;
  } catch (const RunTimeError& error) {
    streams.Err << "graphize " << command << ": " << error.what() << "\n";
    return 1;
  }
}

}  // namespace graphize
