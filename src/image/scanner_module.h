#pragma once

#include "image/scanner.h"

namespace graphize {

/// What the module graphize_scanner.so offers under the name `GraphizeScanner`.
struct ScannerModule {
  decltype(&TWAIN_IsAvailable) IsAvailable;
  decltype(&TWAIN_SelectImageSource) SelectImageSource;
  decltype(&OpenScanSource) Open;
  decltype(&SetScan) Set;
  decltype(&TWAIN_AcquireNative) AcquireNative;
  decltype(&TWAIN_FreeNative) FreeNative;
};

}  // namespace graphize
