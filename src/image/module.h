#pragma once

namespace graphize {

/// The object `symbol` of one of the program's own modules, which is loaded for that and stays.
/// Throws RunTimeError when the module, or a library it needs, cannot be loaded.
const void* LoadModule(const char* file, const char* symbol);

}  // namespace graphize
