#pragma once

#include <cstdint>
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
  /// project was saved by hand. There: its project was there before, and nobody knows what it is.
  enum class State { Waiting, Done, Doubtful, Refused, Failed, Mended, There };

  std::filesystem::path File;
  State Is = State::Waiting;
  int Points = 0;
  std::optional<double> Worst;  // residual of frame and grid, pixels
  std::string Reason;
  std::shared_ptr<const Raster> Thumbnail;  // with the points; empty where none can be made
  // Of its project, when it was last looked at.
  std::filesystem::file_time_type Written = {};
  std::uint32_t Checksum = 0;

  std::filesystem::path Project() const {
    return std::filesystem::path(File).replace_extension(".graphize");
  }
  /// Whether somebody should look at it.
  bool AsksForALook() const {
    return Is == State::Doubtful || Is == State::Refused || Is == State::Failed ||
           Is == State::There;
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
  std::filesystem::path ListFile;  // where they are kept; empty: nowhere
  std::string Kept;                // its text
  std::string KeepFault;           // why they are not kept there; empty: they are
  int Selected = -1;               // of them
  bool IsRunning = false;
  int Changes = 0;  // of anything but Selected
};

}  // namespace graphize
