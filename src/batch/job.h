#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/raster.h"
#include "batch/alike_pages.h"
#include "batch/batch_step.h"
#include "commands/recipe_file.h"

namespace graphize {

enum class TableFormat { Dat, Csv, Json, Project };

struct JobOptions {
  TableFormat Format = TableFormat::Dat;
  bool Errors = false;          // also where no step asks for them
  bool PixelErrors = false;     // then those of one pixel
  bool PointsExpected = false;  // a table without points is an error even where a step saves it
  bool PictureOnly = false;     // no table
  bool KeepPicture = false;
  bool KeepFailed = false;  // also of a job that failed: the picture, and what there is for a table
  bool Strict = false;      // points that the picture does not bear out are an error
  const AlikePages* Alike = nullptr;  // the pictures are pages like the recipe's own
  std::filesystem::path Passing;  // pictures in this folder go after the run; empty: there is none
};

/// What is known of a job that failed, too, as far as it came.
struct JobResult {
  std::string Table;          // the file's content
  Raster Picture;             // as the steps leave it, without marks
  std::string Doubt;          // points that the picture does not bear out; empty: none
  int Points = 0;             // rows of all curves
  std::vector<Place> Places;  // of the active curve's points, with the picture
  std::optional<PageRegistration> Registration;  // of an alike page
  std::vector<std::string> Notes;                // what else there is to tell, such as sums
};

/// The steps of a recipe; `name` stands in front of their lines' numbers.
std::vector<BatchStep> StepsOf(const RecipeFile& recipe, const std::string& name);

/// Does the steps on a workspace of its own up to the last "save", or all when there is none, and
/// makes the table of the list as it is then. Throws RunTimeError that begins with the origin of
/// the step that went wrong, or says why there are no points; a result that was given has what is
/// known until then.
JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, const JobOptions& options);
void RunJob(const std::vector<BatchStep>& steps, const std::vector<std::filesystem::path>& pictures,
            const JobOptions& options, JobResult& result);

/// Looks at the recipe's own picture for pages that are alike: does the steps on it that shape it.
/// Throws as RunJob does, and where nothing on the picture can be held against other pages.
AlikePages LookAtOwnPicture(const std::vector<BatchStep>& steps,
                            const std::vector<std::filesystem::path>& pictures, bool align);

}  // namespace graphize
