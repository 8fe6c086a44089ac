// What can be set at an open device. On the scanner's thread only; failures are RunTimeErrors.
#pragma once

#include "scanner/sane/library.h"
#include "scanner/scanner.h"

namespace graphize {

/// Sets what the settings say, each to the nearest that the device allows; 0 and empty texts leave
/// it as it is.
void ApplySettings(SANE_Handle device, const ScanSettings& settings);

/// What the device offers, and what is set now.
ScanAbilities ReadAbilities(SANE_Handle device);

/// Whether the next page is a quick look; devices without that take it as any other.
void SetPreview(SANE_Handle device, bool on);

}  // namespace graphize
