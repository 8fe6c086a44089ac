#include "image/module.h"

#include <dlfcn.h>

#include <string>

#include "base/run_time_error.h"

namespace graphize {

const void* LoadModule(const char* file, const char* symbol) {
  // Found next to the build's programs or, installed, by the program's own search path.
  void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
  const void* object = library == nullptr ? nullptr : dlsym(library, symbol);
  if (object == nullptr)
    throw RunTimeError(std::string("The program is not complete: ") + dlerror());
  return object;
}

}  // namespace graphize
