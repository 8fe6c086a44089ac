#pragma once

#include <filesystem>

namespace graphize {

/// Where a file of the program's own is, by its place in an installed program: in the program's
/// folder where it was built, beside that where it was installed. Throws RunTimeError.
std::filesystem::path PathInProgram(const std::filesystem::path& place);
std::filesystem::path ModulePath(const char* file);

/// The object `symbol` of one of the program's own modules, which is loaded for that and stays.
/// Throws RunTimeError when the module, or a library it needs, cannot be loaded, or when it is not
/// of the same build: an update may replace it while the program runs. Every module has
/// base/module_entry.cpp: its ModuleStamp (base/version.h) under the name GraphizeModuleStamp, and
/// SetTranslator under GraphizeSetTranslator, which is given the program's.
const void* LoadModule(const std::filesystem::path& module, const char* symbol);

}  // namespace graphize
