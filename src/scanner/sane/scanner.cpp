#include "scanner/scanner.h"
#include "base/translation.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "scanner/sane/options.h"
#include "scanner/scan_page.h"
#include "scanner/worker_thread.h"

namespace graphize {

namespace {

using namespace std::chrono_literals;

// How long a stop is waited for: a list that nobody wants any more is nothing to wait for, a device
// that is told to stop needs a moment.
constexpr auto kListPatience = 0ms;
constexpr auto kDevicePatience = 3000ms;
constexpr auto kEndPatience = 2000ms;  // the window is gone by then

WorkerThread& ScannerThread() {
  static WorkerThread thread;
  return thread;
}

std::vector<ScanSource> ListSources(bool network) {
  const LibraryInUse library;
  const SANE_Device** devices = nullptr;
  Require(sane_get_devices(&devices, network ? SANE_FALSE : SANE_TRUE));
  std::vector<ScanSource> sources;
  for (; devices != nullptr && *devices != nullptr; ++devices) {
    const SANE_Device& device = **devices;
    sources.push_back(
        {TextOf(device.name), TextOf(device.vendor), TextOf(device.model), TextOf(device.type)});
  }
  return sources;
}

ScanFrame FrameOf(const SANE_Parameters& parameters) {
  ScanFrame frame{.Width = parameters.pixels_per_line,
                  .Lines = parameters.lines,
                  .BytesPerLine = parameters.bytes_per_line,
                  .Depth = parameters.depth};
  switch (parameters.format) {
    case SANE_FRAME_GRAY:
      frame.Is = ScanFrame::Band::Grey;
      break;
    case SANE_FRAME_RGB:
      frame.Is = ScanFrame::Band::Rgb;
      break;
    case SANE_FRAME_RED:
      frame.Is = ScanFrame::Band::Red;
      break;
    case SANE_FRAME_GREEN:
      frame.Is = ScanFrame::Band::Green;
      break;
    case SANE_FRAME_BLUE:
      frame.Is = ScanFrame::Band::Blue;
      break;
    default:
      throw RunTimeError("The scanner sends pictures of a kind that cannot be read.");
  }
  return frame;
}

/// The scanner is told that it is over, however it ends: it then goes back to its rest. That is a
/// job of its own, because some drivers take long over it or hang: the page, or what went wrong, is
/// there before. A driver whose reader is only starting must not be cancelled: it may leave a lock
/// held.
struct ScanEnd {
  SANE_Handle Device;
  std::chrono::steady_clock::time_point Started = std::chrono::steady_clock::now();
  ~ScanEnd() {
    ScannerThread().Post([device = Device, earliest = Started + 150ms] {
      std::this_thread::sleep_until(earliest);
      sane_cancel(device);
    });
  }
};

/// One pass of the scanner into the page. False when it was stopped.
bool ReadFrame(SANE_Handle device, ScanPage& page, PictureOperation& operation) {
  std::vector<SANE_Byte> bytes(64 * 1024);
  while (!operation.Stopped) {
    SANE_Int count = 0;
    const SANE_Status status =
        sane_read(device, bytes.data(), static_cast<SANE_Int>(bytes.size()), &count);
    if (operation.Stopped) return false;
    if (status == SANE_STATUS_EOF) return true;
    Require(status);
    if (count == 0) std::this_thread::sleep_for(1ms);  // nothing yet
    page.Take(bytes.data(), static_cast<std::size_t>(count));
    const double part = page.PartTaken();
    if (part < 0)
      operation.Percent = -1;
    else
      operation.Advance(part);
  }
  return false;
}

PageRaster ScanPageOf(SANE_Handle device, PictureOperation& operation) {
  SANE_Parameters parameters = {};
  Require(sane_get_parameters(device, &parameters));
  if (const std::string refusal = ScanSizeRefusal(parameters.pixels_per_line, parameters.lines);
      !refusal.empty())
    throw PictureTooLarge(refusal);
  ScanPage page;
  const ScanEnd end{device};
  for (int pass = 0; pass == 0 || parameters.last_frame == SANE_FALSE; ++pass) {
    Require(sane_start(device));
    Require(sane_get_parameters(device, &parameters));
    const ScanFrame frame = FrameOf(parameters);
    const int passes =
        frame.Is == ScanFrame::Band::Grey || frame.Is == ScanFrame::Band::Rgb ? 1 : 3;
    operation.From = static_cast<double>(std::min(pass, passes - 1)) / passes;
    operation.To = operation.From + 1.0 / passes;
    page.BeginFrame(frame);
    if (!ReadFrame(device, page, operation)) return {};
    page.EndFrame();
  }
  return PageRaster(new Raster(page.Finish()));
}

}  // namespace

/// Made and destroyed on the scanner's thread. Its end takes its place behind the jobs that have
/// come, so these need not hold it.
struct ScannerHandle {
  explicit ScannerHandle(const std::string& name) {
    const SANE_Status status = sane_open(name.c_str(), &Device);
    if (status == SANE_STATUS_INVAL)
      throw RunTimeError(
          Tr("The scanner %1 was not found. Is it switched on and connected?", name));
    Require(status);
  }
  ~ScannerHandle() { sane_close(Device); }
  ScannerHandle(const ScannerHandle&) = delete;
  ScannerHandle& operator=(const ScannerHandle&) = delete;

  LibraryInUse Library;
  SANE_Handle Device = nullptr;
};

int ScannerIsAvailable(const PictureProgress& progress) {
  try {
    const auto available = RunOn(ScannerThread(), progress, kListPatience, [](PictureOperation&) {
      const LibraryInUse library;
      return 1;
    });
    return available.value_or(0);
  } catch (const RunTimeError&) {
    return 0;
  }
}

std::optional<std::vector<ScanSource>> ListScanners(bool network, const PictureProgress& progress) {
  return RunOn(ScannerThread(), progress, kListPatience,
               [network](PictureOperation&) { return ListSources(network); });
}

OpenScanner OpenScanSource(const std::string& name, const PictureProgress& progress) {
  const auto scanner = RunOn(ScannerThread(), progress, kDevicePatience, [name](PictureOperation&) {
    return OpenScanner(new ScannerHandle(name), [](ScannerHandle* handle) {
      ScannerThread().Post([handle] { delete handle; });
    });
  });
  return scanner.value_or(nullptr);
}

std::optional<ScanAbilities> SetScan(const OpenScanner& scanner, const ScanSettings& settings,
                                     const PictureProgress& progress) {
  return RunOn(ScannerThread(), progress, kDevicePatience,
               [device = scanner->Device, settings](PictureOperation&) {
                 ApplySettings(device, settings);
                 return ReadAbilities(device);
               });
}

PageRaster AcquirePage(const OpenScanner& scanner, const ScanSettings& settings, bool preview,
                       const PictureProgress& progress) {
  auto bitmap = RunOn(ScannerThread(), progress, kDevicePatience,
                      [device = scanner->Device, settings, preview](PictureOperation& operation) {
                        ApplySettings(device, settings);
                        SetPreview(device, preview);
                        return ScanPageOf(device, operation);
                      });
  return bitmap ? std::move(*bitmap) : PageRaster();
}

void FreePage(Raster* bitmap) {
  delete bitmap;
}

void EndScanning() {
  ScannerThread().End(kEndPatience);
}

}  // namespace graphize
