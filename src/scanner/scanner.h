#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "base/run_time_error.h"
#include "raster/picture_operation.h"

namespace graphize {

/// A device to scan with.
struct ScanSource {
  std::string Name;  // what it is opened by, "test:0"
  std::string Vendor, Model, Kind;
};

/// A rectangle of the scanner's glass, from its upper left corner, in millimetres (in pixels for
/// the few devices that say so).
struct PageArea {
  double Left = 0, Top = 0, Width = 0, Height = 0;

  bool operator==(const PageArea&) const = default;
};

/// What to scan. What is empty or 0 stays as the device has it.
struct ScanSettings {
  std::string PaperSource;  // "Flatbed"
  std::string Mode;         // "Color"
  int Depth = 0;            // bits per sample
  double Resolution = 0;    // dots per inch
  PageArea Area;
};

struct ScanRange {
  double Min = 0, Max = 0;
  double Step = 0;  // 0: any value between
};

/// What the open device offers with its present settings. A list is empty, and a range 0 wide, for
/// what cannot be chosen.
struct ScanAbilities {
  std::vector<std::string> PaperSources, Modes;
  std::vector<int> Depths;
  std::vector<double> Resolutions;  // else any in ResolutionRange
  ScanRange ResolutionRange;
  ScanRange Across, Down;  // of the area's edges
  bool AreaInPixels = false;

  ScanSettings Now;
  int Width = 0, Height = 0;  // pixels, as the device expects them; Height -1 when it cannot know
};

/// The scanned picture would be larger than a picture may be, or than the memory.
class PictureTooLarge : public RunTimeError {
 public:
  using RunTimeError::RunTimeError;
};

/// A device that is open; closed with the last of these.
struct ScannerHandle;
using OpenScanner = std::shared_ptr<ScannerHandle>;

// The scanner library is called on one thread of its own, whichever thread these functions are
// called on. Where there is a `progress` it is called meanwhile, with -1 percent where nobody can
// know; when it says stop the result is empty and no error. Other failures throw RunTimeError with
// the reason in plain words.

/// 1 when scanners can be looked for: the library is there and starts. Else 0; never throws.
int ScannerIsAvailable(const PictureProgress& progress = {});

/// Ends the scanner's thread before the program does, because the drivers must not be torn down
/// under it; no scanner is to be asked for anything afterwards. Where a driver hangs, or has
/// cancelled a thread of its own, only std::_Exit leaves the program safely.
void EndScanning();

/// The sources to choose from. Devices in the network are looked for only when asked: that takes
/// seconds.
std::optional<std::vector<ScanSource>> ListScanners(bool network, const PictureProgress& progress);

/// Opens a device by its name. Only one program can have it open.
OpenScanner OpenScanSource(const std::string& name, const PictureProgress& progress);

/// Sets what is given and returns what the device has made of that. What it does not offer stays.
std::optional<ScanAbilities> SetScan(const OpenScanner& scanner, const ScanSettings& settings,
                                     const PictureProgress& progress);

/// The scanned picture; null when the scan was stopped. Freed by FreePage.
void FreePage(Raster* bitmap);
struct FreePageRaster {
  void operator()(Raster* bitmap) const { FreePage(bitmap); }
};
using PageRaster = std::unique_ptr<Raster, FreePageRaster>;

/// Scans one page. A picture beyond the limits (raster/size_limits.h) is PictureTooLarge, before
/// scanning where the device can tell. Fewer lines than the device announced are an error.
/// `preview` asks for speed where the device knows the difference.
PageRaster AcquirePage(const OpenScanner& scanner, const ScanSettings& settings, bool preview,
                       const PictureProgress& progress);

}  // namespace graphize
