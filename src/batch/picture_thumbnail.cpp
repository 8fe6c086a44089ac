#include "batch/picture_thumbnail.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <system_error>

#include "codecs/picbuf.h"
#include "session/project_file.h"

namespace graphize {

namespace {

std::shared_ptr<const Raster> ThumbnailOfProject(const std::filesystem::path& file,
                                                 const PictureProgress& goOn) {
  const auto project = ReadProject(ReadProjectFile(file), ProjectPicture::Decoded, goOn);
  if (!project || !project->PictureFault.empty()) return nullptr;
  const KeptDocument& kept = project->Kept;
  const Curve& active = kept.Curves[static_cast<std::size_t>(kept.Active)];
  return ThumbnailOf(project->Picture, CapturedPlaces(*active.Points), goOn);
}

}  // namespace

std::shared_ptr<const Raster> ThumbnailOf(const Raster& picture, const std::vector<Place>& points,
                                          const PictureProgress& goOn) {
  if (picture.IsEmpty()) return nullptr;
  const double factor =
      std::max({picture.Width() / static_cast<double>(OtherPicturesForm::kThumbnailWidth),
                picture.Height() / static_cast<double>(OtherPicturesForm::kThumbnailHeight), 1.0});
  const auto shrunk = [&](int size) { return std::max(static_cast<int>(size / factor), 1); };
  auto thumbnail = std::make_shared<Raster>(shrunk(picture.Width()), shrunk(picture.Height()));
  const auto from = [&](int at) { return static_cast<int>(at * factor); };
  // The means of the pixels of each of its squares.
  for (int y = 0; y < thumbnail->Height(); ++y) {
    if (goOn && !goOn(100 * y / thumbnail->Height())) return nullptr;
    for (int x = 0; x < thumbnail->Width(); ++x) {
      std::uint32_t red = 0, green = 0, blue = 0, count = 0;
      for (int v = from(y); v < std::min(from(y + 1) + 1, picture.Height()); ++v)
        for (int u = from(x); u < std::min(from(x + 1) + 1, picture.Width()); ++u, ++count) {
          const std::uint32_t pixel = picture.Row(v)[u];
          red += pixel >> 16 & 0xffu;
          green += pixel >> 8 & 0xffu;
          blue += pixel & 0xffu;
        }
      thumbnail->Row(y)[x] = 0xff000000u | red / count << 16 | green / count << 8 | blue / count;
    }
  }
  for (const Place& point : points) {
    const int x = static_cast<int>(point.Column / factor), y = static_cast<int>(point.Row / factor);
    if (x >= 0 && y >= 0 && x < thumbnail->Width() && y < thumbnail->Height())
      thumbnail->Row(y)[x] = 0xffd02020u;
  }
  return thumbnail;
}

std::shared_ptr<const Raster> ReadThumbnail(const OtherPicture& picture,
                                            const PictureProgress& goOn) {
  std::error_code ignored;
  try {
    if (std::filesystem::exists(picture.Project(), ignored))
      return ThumbnailOfProject(picture.Project(), goOn);
    const auto loaded = LoadPicture(picture.File, goOn);
    return loaded ? ThumbnailOf(loaded->Picture, {}, goOn) : nullptr;
  } catch (const std::exception&) {
    return nullptr;  // whoever opens it is told
  }
}

std::vector<Place> CapturedPlaces(const PointStore& store) {
  std::vector<Place> places;
  for (int i = 1; i <= store.CaptureCount; ++i)
    if (HasPlace(store, store.CaptureId[i])) places.push_back(store.Places[store.CaptureId[i]]);
  return places;
}

}  // namespace graphize
