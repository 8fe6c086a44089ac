#include "codecs/decode_file.h"

#include <algorithm>
#include <utility>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "raster/orientation.h"
#include "raster/transparency.h"

namespace graphize {

namespace {

/// The first frame of an animation in its place on the screen, which is white.
Raster OnScreen(Raster frame, const StrippedPicture& file, const MakeRaster& make) {
  const auto width = static_cast<int>(file.ScreenWidth),
             height = static_cast<int>(file.ScreenHeight);
  if (width == 0 || (width == frame.Width() && height == frame.Height())) return frame;
  Raster screen = make(width, height);
  std::fill_n(screen.Pixels(), screen.PixelCount(), kWhitePixel);
  const auto left = static_cast<int>(file.FrameLeft), top = static_cast<int>(file.FrameTop);
  if (left + frame.Width() > width || top + frame.Height() > height)
    throw RunTimeError("The file is damaged.");
  for (int y = 0; y < frame.Height(); ++y)
    std::copy_n(frame.Row(y), frame.Width(), screen.Row(top + y) + left);
  return screen;
}

Raster Upright(const Raster& picture, int orientation, const MakeRaster& make) {
  const bool onItsSide = orientation >= 5;
  Raster upright = make(onItsSide ? picture.Height() : picture.Width(),
                        onItsSide ? picture.Width() : picture.Height());
  OrientRows(picture, orientation, upright, 0, upright.Height());
  return upright;
}

}  // namespace

const char* const kDamagedPicture =
    Marked("The file is damaged or incomplete. What could be read of it is shown.");

std::optional<LoadedPicture> DecodeFile(const std::string& name, std::string_view file,
                                        const MakeRaster& make, PictureOperation& operation,
                                        const std::function<ReadStored>& read) {
  PictureFile picture{.Probe = ProbePicture(name, file.substr(0, kProbeSize)), .Bytes = file};
  if (!picture.Probe.Refusal.empty()) throw RunTimeError(picture.Probe.Refusal);

  StrippedPicture& stripped = picture.Stripped;
  stripped = StripMetadata(picture.Probe.Type, file);
  picture.Bitmap = ReadBitmapHeader(file);
  if (picture.Bitmap && IsPacked(*picture.Bitmap)) {
    stripped.Bytes = UnpackBitmap(*picture.Bitmap, file);
    picture.Bitmap = ReadBitmapHeader(stripped.Bytes);
  }
  if (!stripped.Bytes.empty()) picture.Bytes = stripped.Bytes;
  LoadedPicture loaded;
  if (stripped.IsDamaged) loaded.Warning = Tr(kDamagedPicture);

  const int orientation = picture.Bitmap && picture.Bitmap->Height < 0 ? 4
                          : picture.Probe.Mirrored                     ? 2
                                                                       : stripped.Orientation;
  const bool turned = orientation >= 2 && orientation <= 8;
  const MakeRaster onHeap = RasterOnHeap;
  const MakeRaster& makeFirst = turned || stripped.ScreenWidth > 0 ? onHeap : make;
  auto stored = read(picture, makeFirst, loaded.Warning, operation);
  if (!stored || operation.Stopped) return {};
  if (stored->HasOpacity) Flatten(stored->Picture);
  loaded.Picture = OnScreen(std::move(stored->Picture), stripped, turned ? onHeap : make);
  if (turned) loaded.Picture = Upright(loaded.Picture, orientation, make);
  return loaded;
}

}  // namespace graphize
