#include "codecs/direct/direct_readers.h"
#include "codecs/picture_modules.h"

namespace graphize {

namespace {

std::optional<StoredPicture> ReadDirectly(PictureFile& file, const MakeRaster& make, std::string&,
                                          PictureOperation& operation) {
  if (file.Stripped.IsDamaged) return {};
  switch (file.Probe.Type) {
    case PictureType::Tif:
      return ReadTiff(file.Bytes, make, operation);
    case PictureType::Png:
      return ReadPng(file.Bytes, make, operation);
    case PictureType::Jpg:
      return ReadJpeg(file.Bytes, make, operation);
    case PictureType::Bmp:
    case PictureType::Dib:
      return ReadBitmap(file.Bytes, make, operation);
    default:
      return {};
  }
}

}  // namespace

}  // namespace graphize

extern "C" __attribute__((visibility("default")))
const graphize::ReaderModule GraphizeReader = {[] {}, graphize::ReadDirectly};
