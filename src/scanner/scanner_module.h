#pragma once

#include "scanner/scanner.h"

namespace graphize {

/// What the module graphize_scanner.so offers under the name `GraphizeScanner`.
struct ScannerModule {
  decltype(&ScannerIsAvailable) IsAvailable;
  decltype(&ListScanners) List;
  decltype(&OpenScanSource) Open;
  decltype(&SetScan) Set;
  decltype(&AcquirePage) Acquire;
  decltype(&FreePage) Free;
  decltype(&EndScanning) End;
};

}  // namespace graphize
