#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"

namespace graphize {

/// A picture that is to be read as the calibrated one was. What comes of it is a project beside it.
struct OtherPicture {
  /// Refused: it does not fit the calibrated page. Failed: anything else went wrong. Mended: its
  /// project was saved by hand, or there before.
  enum class State { Waiting, Done, Doubtful, Refused, Failed, Mended };

  std::filesystem::path File;
  State Is = State::Waiting;
  int Points = 0;
  std::optional<double> Worst;  // residual of frame and grid, pixels
  std::string Reason;
  std::shared_ptr<const Raster> Thumbnail;       // with the points; none while it waits
  std::filesystem::file_time_type Written = {};  // of its project, when it was last looked at

  std::filesystem::path Project() const {
    return std::filesystem::path(File).replace_extension(".graphize");
  }
  /// Whether somebody should look at it.
  bool AsksForALook() const {
    return Is == State::Doubtful || Is == State::Refused || Is == State::Failed;
  }
};

/// The window FRM_OtherPictures.
struct OtherPicturesForm {
  static constexpr int kThumbnailWidth = 96, kThumbnailHeight = 72;  // pixels

  // The page that all others are like, as it was when the window was opened on it.
  std::string Calibrated;  // name of its picture
  std::filesystem::path CalibratedFile;
  std::shared_ptr<const std::string> CalibratedBytes;  // of that file, where it came in a project
  std::string Recipe;
  int RecipeNumber = -1;

  std::vector<OtherPicture> Pictures;
  int Selected = -1;  // of them
  bool IsRunning = false;
  int Changes = 0;  // of anything but Selected
};

}  // namespace graphize
