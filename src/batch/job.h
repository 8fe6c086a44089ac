#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/raster.h"
#include "workspace/step.h"

namespace graphize {

/// A step, and where it comes from: "line 12" or "--trace 70,430".
struct BatchStep {
  Step Do;
  std::string Origin;
  int Width = 0, Height = 0;  // an OpenStep's picture then, 0 when that is not known
  bool LooksForAxes = false;  // before it, on the picture as it is then
  bool TakesAxes = false;     // an AxisStep, or the SetStep of a log axis: with what was found
};

enum class TableFormat { Dat, Csv, Json, Project };

struct JobOptions {
  TableFormat Format = TableFormat::Dat;
  bool Errors = false;          // also where no step asks for them
  bool PixelErrors = false;     // then those of one pixel
  bool PointsExpected = false;  // a table without points is an error even where a step saves it
  bool PictureOnly = false;     // no table
  bool KeepPicture = false;
  bool Strict = false;            // points that the picture does not bear out are an error
  std::filesystem::path Passing;  // pictures in this folder go after the run; empty: there is none
};

struct JobResult {
  std::string Table;               // the file's content
  Raster Picture;                  // as the steps leave it, without marks
  std::string Doubt;               // points that the picture does not bear out; empty: none
  std::vector<std::string> Notes;  // what else there is to tell, such as sums
};

/// Does the steps on a workspace of its own up to the last "save", or all when there is none, and
/// makes the table of the list as it is then. Throws RunTimeError that begins with the origin of
/// the step that went wrong, or says why there are no points.
JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, const JobOptions& options);

}  // namespace graphize
