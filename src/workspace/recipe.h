#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "workspace/step.h"

namespace graphize {

struct RecipePicture {
  std::filesystem::path Path;  // empty: pasted or scanned
  int Width = 0, Height = 0;   // pixels
  std::uintmax_t FileSize = 0;
  std::uint32_t FileChecksum = 0;

  bool operator==(const RecipePicture&) const = default;
};

/// All that led to the points as they are now, from the opening of the picture on: what Do
/// (commands/do.h) has noted.
struct Recipe {
  std::vector<Step> Steps;
  std::vector<RecipePicture> Pictures;
  std::optional<int> SavedPoints;    // rows of the last data file
  std::vector<std::string> Options;  // as the steps leave them, in the order of RecipeOptions()
  int Number = 0;                    // of the recipes that began since the start
  bool BroughtBack = false;          // it came with a document that was kept
  bool Recovered = false;            // in the folder of a session that did not end as it should
  std::vector<Step> Replaced;        // the steps of the one before, for the history to take
};

}  // namespace graphize
