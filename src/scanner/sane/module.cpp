#include "base/translation.h"
#include "base/version.h"
#include "scanner/scanner_module.h"

extern "C" __attribute__((visibility("default"))) const char* const GraphizeModuleStamp =
    graphize::ModuleStamp();

extern "C" __attribute__((visibility("default"))) void GraphizeSetTranslator(
    graphize::Translator translator) {
  graphize::SetTranslator(translator);
}

extern "C" __attribute__((visibility("default"))) const graphize::ScannerModule GraphizeScanner = {
    graphize::ScannerIsAvailable, graphize::ListScanners,
    graphize::OpenScanSource,     graphize::SetScan,
    graphize::AcquirePage,        graphize::FreePage,
    graphize::EndScanning};
