#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "scanner/scanner.h"

namespace graphize {

/// The window FRM_Scan: what to scan with the device that is open.
struct ScanForm {
  enum class Work { None, Preview, Scan };

  std::string Device;               // for people
  ScanAbilities Can;                // and what the device is set to
  std::vector<double> Resolutions;  // to choose from, rising
  std::string Size;                 // of the picture to come
  std::string Hint;                 // what will not work well, or nothing

  Work Doing = Work::None;
  int Percent = 0;  // -1: nobody knows

  Raster Preview;         // of the whole glass; empty until asked for
  int PreviewNumber = 0;  // another one with each preview
};

/// What the device offers now, and what the picture will be.
void ShowAbilities(ScanForm& form, ScanAbilities can);

/// Whether any resolution in the device's range may be typed; else only those of the list.
bool MayTypeResolution(const ScanForm& form);

bool HasArea(const ScanAbilities& can);
/// All that the device can scan.
PageArea WholeArea(const ScanAbilities& can);
/// The part of `area` that the device can scan; the whole when nothing is left of it.
PageArea WithinReach(const PageArea& area, const ScanAbilities& can);

/// What a device that was not used before is set to: 300 dots per inch in 8-bit greys, as near as
/// it can. That is fine enough for thin lines, and all a graph of one colour needs.
ScanSettings FirstSettings(const ScanAbilities& can);

/// A quick, coarse look at the whole glass.
ScanSettings PreviewSettings(const ScanForm& form);

}  // namespace graphize
