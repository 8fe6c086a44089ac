#include "batch/picture_thumbnail.h"

#include <algorithm>
#include <cstdint>

#include "workspace/other_pictures_form.h"

namespace graphize {

std::shared_ptr<const Raster> ThumbnailOf(const Raster& picture, const std::vector<Place>& points) {
  if (picture.IsEmpty()) return nullptr;
  const double factor =
      std::max({picture.Width() / static_cast<double>(OtherPicturesForm::kThumbnailWidth),
                picture.Height() / static_cast<double>(OtherPicturesForm::kThumbnailHeight), 1.0});
  const auto shrunk = [&](int size) { return std::max(static_cast<int>(size / factor), 1); };
  auto thumbnail = std::make_shared<Raster>(shrunk(picture.Width()), shrunk(picture.Height()));
  const auto from = [&](int at) { return static_cast<int>(at * factor); };
  // The means of the pixels of each of its squares.
  for (int y = 0; y < thumbnail->Height(); ++y)
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
  for (const Place& point : points) {
    const int x = static_cast<int>(point.Column / factor), y = static_cast<int>(point.Row / factor);
    if (x >= 0 && y >= 0 && x < thumbnail->Width() && y < thumbnail->Height())
      thumbnail->Row(y)[x] = 0xffd02020u;
  }
  return thumbnail;
}

}  // namespace graphize
