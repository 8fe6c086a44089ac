#include "commands/recipe_file.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <variant>

#include "base/checksum.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "commands/do.h"
#include "workspace/step_text.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFirstWords = "graphize recipe ";
constexpr int kVersion = 1;
constexpr int kMostPictures = 1000;

/// From the recipe's folder where the picture lies there, so that both can be moved together.
fs::path NamedFrom(const fs::path& folder, const fs::path& picture) {
  const fs::path relative = picture.lexically_relative(folder);
  return relative.empty() || *relative.begin() == ".." ? picture : relative;
}

std::string PictureLine(int number, const RecipePicture& picture, const fs::path& folder) {
  std::string line = "picture " + std::to_string(number);
  const std::string size = std::to_string(picture.Width) + "x" + std::to_string(picture.Height);
  if (picture.Path.empty()) return line + " - " + size;
  return line + " " + Quote(NamedFrom(folder, picture.Path).string()) + " " + size + " " +
         std::to_string(picture.FileSize) + " bytes crc32 " + HexText(picture.FileChecksum);
}

RunTimeError LineError(int line, const std::string& problem) {
  return RunTimeError(Tr("line %1: %2", line, problem));
}

/// "640x480"
bool ReadSize(const std::string& word, RecipeFile::Picture& picture) {
  const std::size_t x = word.find('x');
  if (x == std::string::npos) return false;
  const auto width = IntegerText(word.substr(0, x), 1, 32767);
  const auto height = IntegerText(word.substr(x + 1), 1, 32767);
  picture.Width = width.value_or(0);
  picture.Height = height.value_or(0);
  return width && height;
}

/// The words of a line "picture".
std::optional<RecipeFile::Picture> ReadPicture(const std::vector<std::string>& words, int number,
                                               const fs::path& folder) {
  RecipeFile::Picture picture;
  if (words.size() < 4 || words[1] != std::to_string(number) || !ReadSize(words[3], picture))
    return std::nullopt;
  if (words[2] == "-") return words.size() == 4 ? std::optional(picture) : std::nullopt;
  if (words.size() != 8 || words[5] != "bytes" || words[6] != "crc32") return std::nullopt;
  constexpr double kLargestFile = 1e15;  // bytes
  const auto bytes = WholeNumberText(words[4]);
  if (!bytes || !(*bytes >= 0 && *bytes <= kLargestFile) || words[7].size() != 8)
    return std::nullopt;
  picture.Path = folder / words[2];
  picture.FileSize = static_cast<std::uintmax_t>(*bytes);
  picture.Checksum = words[7];
  return picture;
}

Step ReadStepLine(const std::string& line, int pictures, int number) {
  std::variant<Step, std::string> read = StepOf(line);
  if (const auto* problem = std::get_if<std::string>(&read)) throw LineError(number, *problem);
  Step step = std::get<Step>(std::move(read));
  if (const auto* open = std::get_if<OpenStep>(&step); open != nullptr && open->Picture > pictures)
    throw LineError(number, "\"open\" needs the number of one of the pictures above");
  return step;
}

void CheckFirstLine(std::string_view line) {
  if (!line.starts_with(kFirstWords)) throw LineError(1, "this is no recipe of this program");
  const auto version = IntegerText(line.substr(kFirstWords.size()), 1, 1000000);
  if (!version) throw LineError(1, "the recipe's version cannot be read");
  if (*version > kVersion)
    throw LineError(1, "the recipe is of version " + std::to_string(*version) +
                           ", from a newer program; this one reads version " +
                           std::to_string(kVersion));
}

}  // namespace

bool CanSaveRecipe(const Workspace& ws) {
  return ws.plot.IsPresent() && !ws.recipe.Pictures.empty();
}

void SaveRecipe(Workspace& ws, const Desktop& desktop) {
  const fs::path name = fs::path(ws.picture.Name).stem();
  auto path = desktop.ChooseFile({.ForSaving = true,
                                  .Title = Tr("Save Recipe As..."),
                                  .Folder = ws.picture.Folder,
                                  .FileName = name.string() + ".recipe",
                                  .Filters = Tr("Recipes (*.recipe)|*.recipe"),
                                  .DefaultExtension = "recipe"});
  if (!path) return;
  try {
    const std::string text = RecipeText(ws, path->parent_path());
    if (const std::error_code error = ReplaceWholeFile(*path, text))
      throw RunTimeError(error.message());
  } catch (const RunTimeError& error) {
    Tell(desktop, Tr("Error while saving. \r\n%1", std::string(error.what())),
         MessageIcon::Critical);
  }
}

std::string RecipeText(Workspace& ws, const fs::path& folder) {
  NoteOptions(ws);
  return RecipeText(ws.recipe, ws.store.ListCount, folder);
}

std::string RecipeText(const Recipe& recipe, int rows, const fs::path& folder) {
  std::string text = std::string(kFirstWords) + std::to_string(kVersion) +
                     "\n# Do the same again:  graphize replay THIS-FILE [PICTURE...] -o OUT\n"
                     "# Positions are columns and rows of pixels, rows downward from the top.\n";
  for (std::size_t i = 0; i < recipe.Pictures.size(); ++i)
    text += PictureLine(static_cast<int>(i) + 1, recipe.Pictures[i], folder) + "\n";
  for (const Step& step : recipe.Steps) text += TextOf(step) + "\n";
  text += "points " + std::to_string(recipe.SavedPoints.value_or(rows)) + "\n";
  return text + "end\n";
}

RecipeFile ReadRecipe(std::string_view text, const fs::path& folder) {
  RecipeFile recipe;
  constexpr const char* kBlanks = " \t\r\n";
  const bool whole = text.substr(0, text.find_last_not_of(kBlanks) + 1).ends_with("\nend");
  bool ended = false;
  int number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string line(text.substr(0, end));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    line = TrimRight(line);
    if (++number == 1) {
      CheckFirstLine(line);
      continue;
    }
    if (line.find_first_not_of(kBlanks) == line.npos || line[0] == '#') continue;
    if (ended) throw LineError(number, "there is more behind the line \"end\"");
    if (line == "end") {
      ended = true;
      continue;
    }
    const auto words = Tokenize(line);
    if (!words) throw LineError(number, "a quotation mark is missing");
    if (words->front() == "points") {
      if (words->size() == 2) recipe.Points = IntegerText((*words)[1], 0, 32767);
      if (!recipe.Points) throw LineError(number, "this line does not tell the number of points");
      continue;
    }
    if (words->front() != "picture") {
      if (!whole && text.empty()) break;  // a part of a line
      recipe.Steps.push_back(
          {number, ReadStepLine(line, static_cast<int>(recipe.Pictures.size()), number)});
      continue;
    }
    const int next = static_cast<int>(recipe.Pictures.size()) + 1;
    const auto picture = ReadPicture(*words, next, folder);
    if (!picture || next > kMostPictures)
      throw LineError(number, "this line does not describe picture " + std::to_string(next));
    recipe.Pictures.push_back(*picture);
  }
  if (number == 0) throw LineError(1, "the file is empty");
  if (!ended) throw LineError(number, "the recipe was cut off: its last line is not \"end\"");
  if (recipe.Steps.empty() || !Is<OpenStep>(recipe.Steps.front().Is))
    throw LineError(number, "the recipe does not begin with opening a picture");
  return recipe;
}

bool HadPoints(const RecipeFile& recipe) {
  if (recipe.Points) return *recipe.Points > 0;
  return std::any_of(recipe.Steps.begin(), recipe.Steps.end(), [](const RecipeFile::Line& line) {
    return Is<CaptureStep>(line.Is) || Is<PointStep>(line.Is) || Is<TraceStep>(line.Is) ||
           Is<ReadStep>(line.Is) || Is<SymbolsStep>(line.Is) || Is<ReadAllStep>(line.Is) ||
           Is<ScanStep>(line.Is);
  });
}

}  // namespace graphize
