#pragma once

namespace graphize {

/// This program's version, "1.0.0".
const char* ProgramVersion();
/// The picture library's version that the program was built with. Asking does not load it.
const char* PictureLibraryVersion();

}  // namespace graphize
