#pragma once

#include <string>
#include <vector>

#include "base/raster.h"

namespace graphize::test {

/// While it lives this process, and the programs it starts, have scanners that the scanner
/// library's own backend "test" plays, and no others. `options` are lines of its configuration
/// file; they come after a colour page of 80 x 100 mm at 50 dots per inch with a coloured pattern.
/// One at a time: the library remembers where its configuration was first.
class VirtualScanner {
 public:
  explicit VirtualScanner(const std::vector<std::string>& options = {});
  ~VirtualScanner() { Unplug(); }
  VirtualScanner(const VirtualScanner&) = delete;
  VirtualScanner& operator=(const VirtualScanner&) = delete;

  /// Another configuration, from the next start of the library on.
  void Configure(const std::vector<std::string>& options);
  /// No scanner any more.
  void Unplug();
};

/// From now on this process sees no scanner of this computer. To be called before the library is
/// first asked where the program may ask it by itself.
void HideRealScanners();

/// The page as the scanner library's own program delivers it, 16-bit samples rounded to 8.
/// `arguments` are its options.
Raster ScanimagePage(const std::string& arguments = {});

}  // namespace graphize::test
