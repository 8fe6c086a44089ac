#pragma once

namespace graphize {

/// This program's version, "1.0.0".
const char* ProgramVersion();
/// What the program and its modules must have in common: it changes with the version and with every
/// change of the types that go between them.
const char* ModuleStamp();
/// The picture library's version that the program was built with. Asking does not load it.
const char* PictureLibraryVersion();
/// The same for the scanner library; empty where the program was built without.
const char* ScannerLibraryVersion();

}  // namespace graphize
