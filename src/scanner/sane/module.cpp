#include "scanner/scanner_module.h"

extern "C" __attribute__((visibility("default"))) const graphize::ScannerModule GraphizeScanner = {
    graphize::ScannerIsAvailable, graphize::ListScanners,
    graphize::OpenScanSource,     graphize::SetScan,
    graphize::AcquirePage,        graphize::FreePage,
    graphize::EndScanning};
