#include "base/module.h"

#include <dlfcn.h>

#include <cstring>
#include <string>

#include "base/run_time_error.h"
#include "base/version.h"

namespace graphize {

const void* LoadModule(const char* file, const char* symbol) {
  // Found next to the build's programs or, installed, by the program's own search path.
  void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
  const void* object = library == nullptr ? nullptr : dlsym(library, symbol);
  if (object == nullptr)
    throw RunTimeError(std::string("The program is not complete: ") + dlerror());
  const auto* stamp = static_cast<const char* const*>(dlsym(library, "GraphizeModuleStamp"));
  if (stamp == nullptr || std::strcmp(*stamp, ModuleStamp()) != 0)
    throw RunTimeError(
        "The program was updated while it was open. Please save your points and start it again.");
  return object;
}

}  // namespace graphize
