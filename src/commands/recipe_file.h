#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Asks for a file and writes the recipe of the points as they are now.
void SaveRecipe(Workspace& ws, const Desktop& desktop);
bool CanSaveRecipe(const Workspace& ws);

/// The recipe as a text file: a first line with the version, a line for each picture, a line for
/// each step, a line with the number of points that they have led to, the line "end". Pictures in
/// or below `folder`, where the file will lie, are named from there.
std::string RecipeText(Workspace& ws, const std::filesystem::path& folder);
/// The same of a recipe whose options are noted; `rows` of the list, unless it tells them itself.
std::string RecipeText(const Recipe& recipe, int rows, const std::filesystem::path& folder);

/// A recipe that was read from a file.
struct RecipeFile {
  struct Picture {
    std::filesystem::path Path;  // empty: it came from no file
    int Width = 0, Height = 0;
    std::uintmax_t FileSize = 0;
    std::string Checksum;  // Crc32 of the file, as HexText
  };
  struct Line {
    int Number = 0;  // in the file, counted from 1
    Step Is;
  };
  std::vector<Picture> Pictures;
  std::vector<Line> Steps;
  std::optional<int> Points;  // rows of the data file that the steps have led to
};

/// Whether the steps have led to points on the recipe's own picture; a recipe that does not tell is
/// judged by its captures.
bool HadPoints(const RecipeFile& recipe);

/// Reads the text of a recipe that lies in `folder`. What is wrong with it, such as a version that
/// this program does not know or an end that is missing, is a RunTimeError that begins with
/// "line N: ". Whether its steps make sense is seen when they are done.
RecipeFile ReadRecipe(std::string_view text, const std::filesystem::path& folder);

}  // namespace graphize
