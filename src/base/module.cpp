#include "base/module.h"

#include <dlfcn.h>

#include <cstring>
#include <string>
#include <system_error>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/version.h"

namespace graphize {

// Never a bare name: that would be looked for in folders that are not the program's.
std::filesystem::path PathInProgram(const std::filesystem::path& place) {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (failure)
    throw RunTimeError(
        Tr("The program cannot find its own files without /proc: %1", failure.message()));
  const std::filesystem::path folder = program.parent_path();
  if (std::filesystem::exists(folder / place, failure)) return folder / place;
  return folder.parent_path() / place;
}

std::filesystem::path ModulePath(const char* file) {
  return PathInProgram(std::filesystem::path("lib/graphize/modules") / file);
}

const void* LoadModule(const std::filesystem::path& module, const char* symbol) {
  void* library = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
  const void* object = library == nullptr ? nullptr : dlsym(library, symbol);
  if (object == nullptr)
    throw RunTimeError(Tr("The program is not complete: %1", std::string(dlerror())));
  const auto* stamp = static_cast<const char* const*>(dlsym(library, "GraphizeModuleStamp"));
  if (stamp == nullptr || std::strcmp(*stamp, ModuleStamp()) != 0)
    throw RunTimeError(
        "The program was updated while it was open. Please save your points and start it again.");
  // It has a place of its own for the translator, which is empty.
  const auto translate =
      reinterpret_cast<void (*)(Translator)>(dlsym(library, "GraphizeSetTranslator"));
  if (translate != nullptr)
    translate([](const char* english, long long count) {
      const Translator chosen = ChosenTranslator();
      return chosen != nullptr ? chosen(english, count) : std::string();
    });
  return object;
}

}  // namespace graphize
