#include "batch/batch.h"

#include <algorithm>
#include <new>
#include <ostream>

#include "base/checksum.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/temporary_folder.h"
#include "base/tokens.h"
#include "base/version.h"
#include "base/whole_file.h"
#include "batch/axes_command.h"
#include "batch/commands.h"
#include "batch/console.h"
#include "batch/digitize.h"
#include "batch/export_project.h"
#include "batch/option_values.h"
#include "batch/standard_input.h"
#include "codecs/file_format.h"
#include "codecs/picture_probe.h"
#include "commands/recipe_file.h"
#include "session/project_file.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestRecipe = 64u << 20;

RunOptions ReadRunOptions(const CommandLine& line) {
  RunOptions options;
  options.Force = line.Has("force");
  options.Quiet = line.Has("quiet");
  options.Table.Format = TableFormatOf(line).value_or(TableFormat::Dat);
  options.Table.Strict = line.Has("strict");
  if (const GivenOption* jobs = line.Find("jobs")) {
    const auto number = IntegerText(jobs->Value, 1, 1024);
    if (!number)
      throw UsageError("--jobs \"" + jobs->Value + "\": a whole number from 1 is expected");
    options.Workers = *number;
  }
  return options;
}

bool Print(const BatchStreams& streams, const std::string& text) {
  streams.Out << text << std::flush;
  return !streams.Out.fail();
}

const std::string& OutputOf(const CommandLine& line) {
  const GivenOption* output = line.Find("output");
  if (output == nullptr || output->Value.empty()) throw UsageError("--output is missing");
  return output->Value;
}

/// The operand of --save-picture, a name of a type that can be written; empty without the option.
std::string PictureOutputOf(const CommandLine& line) {
  const GivenOption* output = line.Find("save-picture");
  if (output == nullptr) return "";
  std::int16_t format = 0, option = 0;
  GetFileFormat(LowerCase(output->Value), format, option);
  std::error_code ignored;
  const bool folder = output->Value.ends_with('/') || line.Operands.size() > 1 ||
                      fs::is_directory(output->Value, ignored);
  if (output->Value.empty() || output->Value == "-" || (format == kNoFormat && !folder))
    throw UsageError("--save-picture \"" + output->Value +
                     "\": a name is expected that ends in .tif, .bmp or another type of picture "
                     "that can be written");
  return output->Value;
}

bool Digitize(std::span<const std::string> words, const BatchStreams& streams) {
  const CommandSpec command = DigitizeSpec();
  const CommandLine line = ReadCommandLine(command, words);
  if (line.Has("help")) return Print(streams, HelpText(command));
  if (line.Operands.empty()) throw UsageError("a picture is missing");
  const std::vector<BatchStep> steps = DigitizeSteps(line);
  RunOptions options = ReadRunOptions(line);
  const auto beginsCurve = [](const BatchStep& step) { return Is<NewCurveStep>(step.Do); };
  if (options.Table.Format == TableFormat::Dat && !IsPictureOnly(line) &&
      std::any_of(steps.begin(), steps.end(), beginsCurve))
    throw UsageError("a data file holds one curve: --format csv, json or graphize hold all");
  if (options.Table.Format != TableFormat::Dat)
    for (const char* name : {"digits", "decimals", "exponent", "delimiter", "decimal-point"})
      if (line.Has(name)) throw UsageError(std::string("--") + name + " is for --format dat only");
  options.Table.PointsExpected = true;
  options.Table.PictureOnly = IsPictureOnly(line);
  options.Table.KeepPicture = line.Has("save-picture");
  const std::vector<fs::path> pictures(line.Operands.begin(), line.Operands.end());
  std::vector<Job> jobs =
      MakeJobs(pictures, {.Table = options.Table.PictureOnly ? "" : OutputOf(line),
                          .Picture = PictureOutputOf(line),
                          .Format = options.Table.Format});
  const StandardInput input(jobs, streams.In);
  options.Table.Passing = input.Folder();
  return RunJobs(steps, jobs, options, streams);
}

/// A recipe does the same only on the very same pictures.
void CheckPicture(const RecipeFile::Picture& picture) {
  const std::string name = "the recipe's picture \"" + picture.Path.string() + "\" ";
  if (picture.Path.empty())
    throw UsageError("the recipe's picture came from no file: name one behind the recipe");
  ProbeResult verdict;
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
                            const OutputNames& output, const fs::path& file) {
  if (!pictures.empty()) {
    if (recipe.Pictures.size() > 1)
      throw UsageError("the recipe uses " + std::to_string(recipe.Pictures.size()) +
                       " pictures: it can be done again on these only");
    return MakeJobs(pictures, output, {file});
  }
  Job job;
  for (const RecipeFile::Picture& picture : recipe.Pictures) {
    CheckPicture(picture);
    job.Pictures.push_back(picture.Path);
  }
  std::vector<fs::path> inputs = job.Pictures;
  inputs.push_back(file);
  const Job first = MakeJobs({job.Pictures.front()}, output, inputs).front();
  return {{first.Name, job.Pictures, first.Output, {}}};
}

/// A project's steps are a recipe, too. Its picture, which it brings along, is put into `folder`.
RecipeFile ReadProjectAsRecipe(const std::string& name, std::optional<TemporaryFolder>& folder) {
  try {
    const ProjectSteps project = ReadProjectSteps(ReadProjectFile(name));
    RecipeFile recipe = ReadRecipe(project.Recipe, {});
    if (recipe.Pictures.size() != 1 || project.Picture.empty()) return recipe;
    RecipeFile::Picture& picture = recipe.Pictures.front();
    const std::string checksum = HexText(Crc32(project.Picture));
    if (!picture.Path.empty() &&
        (project.Picture.size() != picture.FileSize || checksum != picture.Checksum))
      throw RunTimeError("The picture in it is not the one that its steps were done on.");
    const fs::path file = picture.Path.empty() ? fs::path("pasted.png") : picture.Path.filename();
    folder.emplace();
    picture.Path = folder->Path() / file;
    picture.FileSize = project.Picture.size();
    picture.Checksum = checksum;
    ThrowSystemError(ReplaceWholeFile(picture.Path, project.Picture));
    return recipe;
  } catch (const RunTimeError& error) {
    throw RunTimeError(name + ": " + OneLine(error.what()));
  }
}

/// "76" or "76,40,430" of each --trace-column.
std::vector<StartOption> ColumnsOf(const CommandLine& line) {
  std::vector<StartOption> columns;
  for (const GivenOption& option : line.Options) {
    if (!option.Is("trace-column")) continue;
    constexpr const char* kExpected = "COLUMN or COLUMN,TOP,BOTTOM in whole pixels is expected";
    if (option.Value.find(',') == std::string::npos) {
      columns.push_back({.Column = Numbers<1>(option, option.Value, kExpected)[0]});
      continue;
    }
    const auto [column, top, bottom] = Numbers<3>(option, option.Value, kExpected);
    if (top >= bottom) Refuse(option, "the top lies above the bottom");
    columns.push_back({column, top, bottom});
  }
  return columns;
}

/// The file of --report; empty without it.
fs::path ReportOf(const CommandLine& line, bool force) {
  const GivenOption* report = line.Find("report");
  if (report == nullptr) return {};
  const std::string ending = LowerCase(fs::path(report->Value).extension().string());
  if (ending != ".csv" && ending != ".json") Refuse(*report, "a name in .csv or .json is expected");
  std::error_code ignored;
  if (!force && fs::exists(report->Value, ignored))
    throw RunTimeError("\"" + report->Value + "\" exists already; see --force");
  return report->Value;
}

/// A recipe for pages that are like its own picture, which is looked at: the only one that a run on
/// other pictures reads.
AlikePages AlikeOf(const RecipeFile& recipe, std::vector<BatchStep>& steps,
                   const std::vector<StartOption>& columns, bool align) {
  if (recipe.Pictures.size() != 1)
    throw UsageError("the recipe uses several pictures: pages are like one");
  CheckPicture(recipe.Pictures.front());
  BeginInColumns(steps, columns);
  try {
    return LookAtOwnPicture(steps, {recipe.Pictures.front().Path}, align);
  } catch (const RunTimeError& error) {
    throw RunTimeError("the recipe's picture \"" + recipe.Pictures.front().Path.string() +
                       "\": " + error.what());
  }
}

bool Replay(std::span<const std::string> words, const BatchStreams& streams) {
  const CommandSpec command = ReplaySpec();
  const CommandLine line = ReadCommandLine(command, words);
  if (line.Has("help")) return Print(streams, HelpText(command));
  if (line.Operands.empty()) throw UsageError("a recipe is missing");
  const std::string& name = line.Operands.front();
  const std::string output = OutputOf(line);
  RunOptions options = ReadRunOptions(line);
  const GivenOption* errors = line.Find("errors");
  options.Table.Errors = errors != nullptr;
  options.Table.PixelErrors = errors != nullptr && !errors->Value.empty();
  std::optional<TemporaryFolder> folder;
  const RecipeFile recipe = LowerCase(name).ends_with(kProjectEnding)
                                ? ReadProjectAsRecipe(name, folder)
                                : ReadRecipeFile(name);
  const std::vector<fs::path> pictures(line.Operands.begin() + 1, line.Operands.end());
  std::vector<BatchStep> steps = StepsOf(recipe, name + ": ");
  const std::vector<StartOption> columns = ColumnsOf(line);
  const bool align = line.Has("align");
  for (const char* alike : {"align", "trace-column"})
    if (line.Has(alike) && pictures.empty())
      throw UsageError(std::string("--") + alike + " is for other pictures: name them");
  options.Report = ReportOf(line, options.Force);
  std::optional<AlikePages> pages;
  if (align || !columns.empty()) pages = AlikeOf(recipe, steps, columns, align);
  if (pages) options.Table.Alike = &*pages;
  std::vector<Job> jobs = ReplayJobs(
      recipe, pictures, {.Table = output, .Picture = "", .Format = options.Table.Format}, name);
  if (folder && pictures.empty()) jobs.front().Name = name;
  // Without a picture the recipe's own is used, which may have led to an empty file.
  options.Table.PointsExpected = !pictures.empty() && (HadPoints(recipe) || !columns.empty());
  const StandardInput input(jobs, streams.In);
  options.Table.Passing = folder ? folder->Path() : input.Folder();
  return RunJobs(steps, jobs, options, streams);
}

bool Export(std::span<const std::string> words, const BatchStreams& streams) {
  const CommandSpec command = ExportSpec();
  const CommandLine line = ReadCommandLine(command, words);
  if (line.Has("help")) return Print(streams, HelpText(command));
  return ExportProject(line, streams);
}

bool Axes(std::span<const std::string> words, const BatchStreams& streams) {
  const CommandSpec command = AxesSpec();
  const CommandLine line = ReadCommandLine(command, words);
  if (line.Has("help")) return Print(streams, HelpText(command));
  return PrintAxes(line, streams);
}

/// The window's own options, which are Qt's, with one dash or two.
bool IsWindowOption(std::string_view word) {
  word.remove_prefix(std::min(word.find_first_not_of('-'), word.size()));
  word = word.substr(0, word.find('='));
  static constexpr std::string_view kNames[] = {
      "display",       "geometry",     "platform",      "platformpluginpath",
      "platformtheme", "plugin",       "qmljsdebugger", "qwindowgeometry",
      "qwindowicon",   "qwindowtitle", "reverse",       "session",
      "style",         "stylesheet",   "title",         "icon",
      "name",          "fn",           "font"};
  return std::find(std::begin(kNames), std::end(kNames), word) != std::end(kNames);
}

/// A word that can only have been meant as a command or option: there is no file of that name.
bool IsUnknownCommand(const std::string& word) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; };
  std::error_code ignored;
  return std::all_of(word.begin(), word.end(), isLetter) && !fs::exists(word, ignored) &&
         !(word.starts_with('-') && IsWindowOption(word));
}

}  // namespace

bool IsBatch(const std::vector<std::string>& words) {
  if (words.empty()) return false;
  return words[0] == "digitize" || words[0] == "replay" || words[0] == "export" ||
         words[0] == "axes" || IsUnknownCommand(words[0]);
}

int RunBatch(const std::vector<std::string>& words, const BatchStreams& streams) {
  const std::string& command = words[0];
  const std::span<const std::string> rest(words.begin() + 1, words.end());
  try {
    if (command == "digitize") return Digitize(rest, streams) ? 0 : 1;
    if (command == "replay") return Replay(rest, streams) ? 0 : 1;
    if (command == "export") return Export(rest, streams) ? 0 : 1;
    if (command == "axes") return Axes(rest, streams) ? 0 : 1;
    const bool known = command == "--version" || command == "--help" || command == "-h";
    if (known && !rest.empty()) throw UsageError("\"" + rest[0] + "\" is too much");
    if (command == "--version")
      return Print(streams, std::string("graphize ") + ProgramVersion() + "\n") ? 0 : 1;
    if (command == "--help" || command == "-h")
      return Print(streams, HelpText(ProgramSpec())) ? 0 : 1;
  } catch (const UsageError& error) {
    const bool option = command.starts_with('-');
    streams.Err << "graphize " << command << ": " << error.what() << "; see graphize "
                << (option ? "" : command + " ") << "--help\n";
    return 2;
  } catch (const RunTimeError& error) {
    streams.Err << "graphize " << command << ": " << error.what() << "\n";
    return 1;
  } catch (const std::bad_alloc&) {
    streams.Err << "graphize " << command << ": out of memory\n";
    return 1;
  }
  streams.Err << "graphize: there is no command, option or picture \"" << command
              << "\"; see graphize --help\n";
  return 2;
}

}  // namespace graphize
