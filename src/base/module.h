#pragma once

namespace graphize {

/// The object `symbol` of one of the program's own modules, which is loaded for that and stays.
/// Throws RunTimeError when the module, or a library it needs, cannot be loaded, or when it is not
/// of the same build: an update may replace it while the program runs. Every module has its
/// ModuleStamp (base/version.h) under the name GraphizeModuleStamp, and SetTranslator under
/// GraphizeSetTranslator, which is given the program's.
const void* LoadModule(const char* file, const char* symbol);

}  // namespace graphize
