#include "base/version.h"

namespace graphize {

const char* ProgramVersion() {
  return GRAPHIZE_VERSION;
}

const char* ModuleStamp() {
  return GRAPHIZE_VERSION "-" GRAPHIZE_MODULE_TYPES;
}

const char* PictureLibraryVersion() {
  return GRAPHIZE_PICTURE_LIBRARY_VERSION;
}

const char* ScannerLibraryVersion() {
  return GRAPHIZE_SCANNER_LIBRARY_VERSION;
}

}  // namespace graphize
