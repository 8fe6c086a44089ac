#include "base/version.h"
#include "image/scanner_module.h"

extern "C" __attribute__((visibility("default"))) const char* const GraphizeModuleStamp =
    graphize::ModuleStamp();

extern "C" __attribute__((visibility("default"))) const graphize::ScannerModule GraphizeScanner = {
    graphize::TWAIN_IsAvailable, graphize::TWAIN_SelectImageSource, graphize::OpenScanSource,
    graphize::SetScan,           graphize::TWAIN_AcquireNative,     graphize::TWAIN_FreeNative};
