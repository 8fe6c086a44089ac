#pragma once

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "workspace/other_pictures_form.h"

namespace graphize {

/// Makes the thumbnails of pictures that were not done in this run, on a thread of its own. One at
/// a time: the pixels of a page may take half a gigabyte.
class ThumbnailMaker {
 public:
  ThumbnailMaker();
  /// Stops within hundredths of a second.
  ~ThumbnailMaker() = default;
  ThumbnailMaker(const ThumbnailMaker&) = delete;
  ThumbnailMaker& operator=(const ThumbnailMaker&) = delete;

  /// OtherPicture::Thumbnail, by OtherPicture::File.
  using Made = std::vector<std::pair<std::filesystem::path, std::shared_ptr<const Raster>>>;

  /// These are wanted from here on, and no others, in this order. What has been made since the last
  /// call.
  Made Exchange(std::vector<OtherPicture> wanted);

 private:
  void Run(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any wantsMore_;
  std::vector<OtherPicture> wanted_;
  std::filesystem::path inTheMaking_;
  Made made_;
  std::jthread thread_;  // the last member: it ends before the rest goes
};

/// Those of the form's pictures `first` to `last` that are shown and lack a thumbnail; none while
/// pictures are being done, which make their own.
std::vector<OtherPicture> PicturesWithoutThumbnail(const OtherPicturesForm& form, int first,
                                                   int last);
void PutThumbnails(OtherPicturesForm& form, const ThumbnailMaker::Made& made);

}  // namespace graphize
