// The functions of picbuf.h as the program sees them: the first call loads the module that does the
// work. The module's own functions of these names are hidden in it.

#include "base/module.h"
#include "codecs/picbuf_module.h"

namespace graphize {

namespace {

const PicbufModule& Module() {
  static const auto* module =
      static_cast<const PicbufModule*>(LoadModule("graphize_picbuf.so", "GraphizePicbuf"));
  return *module;
}

}  // namespace

std::optional<LoadedPicture> LoadPicture(const std::filesystem::path& path,
                                         const PictureProgress& progress) {
  return Module().Load(path, progress);
}

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return Module().Save(path, format, option, picture, progress);
}

std::optional<LoadedPicture> DecodePicture(const std::string& name, std::string bytes,
                                           const PictureProgress& progress) {
  return Module().Decode(name, std::move(bytes), progress);
}

std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress) {
  return Module().Encode(format, option, picture, progress);
}

}  // namespace graphize
