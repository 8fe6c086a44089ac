// LoadPicture and SavePicture as the program sees them: the first call loads the module that does
// the work. The module's own functions of these names are hidden in it.

#include <dlfcn.h>

#include "base/run_time_error.h"
#include "image/picbuf_module.h"

namespace graphize {

namespace {

const PicbufModule& Module() {
  static const PicbufModule* module = [] {
    // Found next to the build's programs or, installed, by the program's own search path.
    void* library = dlopen("graphize_picbuf.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
      throw RunTimeError(std::string("The program is not complete: ") + dlerror());
    const void* symbol = dlsym(library, "GraphizePicbuf");
    if (symbol == nullptr)
      throw RunTimeError(std::string("The program is not complete: ") + dlerror());
    return static_cast<const PicbufModule*>(symbol);
  }();
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

}  // namespace graphize
