// The scanner's functions as the program sees them: the first call loads the module that does the
// work. The module's own functions of these names are hidden in it.

#include <atomic>

#include "base/module.h"
#include "scanner/scanner_module.h"

namespace graphize {

namespace {

std::atomic<const ScannerModule*> loaded = nullptr;

const ScannerModule& Module() {
  static const auto* module = static_cast<const ScannerModule*>(
      LoadModule(ModulePath("graphize_scanner.so"), "GraphizeScanner"));
  loaded = module;
  return *module;
}

}  // namespace

int ScannerIsAvailable(const PictureProgress& progress) {
  try {
    return Module().IsAvailable(progress);
  } catch (const RunTimeError&) {
    return 0;  // no scanner library on this computer
  }
}

std::optional<std::vector<ScanSource>> ListScanners(bool network, const PictureProgress& progress) {
  return Module().List(network, progress);
}

OpenScanner OpenScanSource(const std::string& name, const PictureProgress& progress) {
  return Module().Open(name, progress);
}

std::optional<ScanAbilities> SetScan(const OpenScanner& scanner, const ScanSettings& settings,
                                     const PictureProgress& progress) {
  return Module().Set(scanner, settings, progress);
}

PageRaster AcquirePage(const OpenScanner& scanner, const ScanSettings& settings, bool preview,
                       const PictureProgress& progress) {
  return Module().Acquire(scanner, settings, preview, progress);
}

void FreePage(Raster* bitmap) {
  Module().Free(bitmap);
}

void EndScanning() {
  if (const ScannerModule* module = loaded) module->End();
}

}  // namespace graphize
