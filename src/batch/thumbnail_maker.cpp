#include "batch/thumbnail_maker.h"

#include <algorithm>

#include "batch/picture_thumbnail.h"

namespace graphize {

ThumbnailMaker::ThumbnailMaker() : thread_([this](const std::stop_token& stop) { Run(stop); }) {}

ThumbnailMaker::Made ThumbnailMaker::Exchange(std::vector<OtherPicture> wanted) {
  const std::scoped_lock lock(mutex_);
  // What is being made, or has been in the meantime, is not wanted once more.
  std::erase_if(wanted, [&](const OtherPicture& picture) {
    return picture.File == inTheMaking_ ||
           std::any_of(made_.begin(), made_.end(),
                       [&](const auto& made) { return made.first == picture.File; });
  });
  wanted_ = std::move(wanted);
  if (!wanted_.empty()) wantsMore_.notify_one();
  return std::exchange(made_, {});
}

void ThumbnailMaker::Run(const std::stop_token& stop) {
  const PictureProgress goOn = [&](int) { return !stop.stop_requested(); };
  std::unique_lock lock(mutex_);
  while (wantsMore_.wait(lock, stop, [this] { return !wanted_.empty(); }) && goOn(0)) {
    const OtherPicture picture = std::move(wanted_.front());
    wanted_.erase(wanted_.begin());
    inTheMaking_ = picture.File;
    lock.unlock();
    auto thumbnail = ReadThumbnail(picture, goOn);
    if (thumbnail == nullptr) thumbnail = std::make_shared<Raster>();
    lock.lock();
    inTheMaking_.clear();
    made_.emplace_back(picture.File, std::move(thumbnail));
  }
}

std::vector<OtherPicture> PicturesWithoutThumbnail(const OtherPicturesForm& form, int first,
                                                   int last) {
  std::vector<OtherPicture> pictures;
  if (form.IsRunning) return pictures;
  const int end = std::min(last + 1, static_cast<int>(form.Pictures.size()));
  for (int i = std::max(first, 0); i < end; ++i) {
    const OtherPicture& picture = form.Pictures[static_cast<std::size_t>(i)];
    if (picture.Thumbnail == nullptr) pictures.push_back(picture);
  }
  return pictures;
}

void PutThumbnails(OtherPicturesForm& form, const ThumbnailMaker::Made& made) {
  for (const auto& [file, thumbnail] : made)
    for (OtherPicture& picture : form.Pictures)
      if (picture.File == file && picture.Thumbnail == nullptr) picture.Thumbnail = thumbnail;
  ++form.Changes;
}

}  // namespace graphize
