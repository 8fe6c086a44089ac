#include "support/virtual_scanner.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "scanner/scanner.h"
#include "support/temporary_folder.h"

namespace graphize::test {

namespace {

const TemporaryFolder& ConfigurationFolder() {
  static const TemporaryFolder folder;
  setenv("SANE_CONFIG_DIR", folder.Path().c_str(), 1);
  return folder;
}

/// A PNM file of the types P4, P5 and P6.
Raster ReadPnm(const std::string& bytes) {
  std::istringstream stream(bytes);
  std::string magic;
  int width = 0, height = 0, most = 1;
  const auto number = [&](int& n) {
    while ((stream >> std::ws).peek() == '#') stream.ignore(1000, '\n');
    stream >> n;
  };
  stream >> magic;
  number(width);
  number(height);
  if (magic != "P4") number(most);
  stream.ignore(1);
  if (!stream || width < 1 || height < 1) return {};
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data()) + stream.tellg();
  const int samples = magic == "P6" ? 3 : 1, size = most > 255 ? 2 : 1;
  const std::size_t line =
      magic == "P4" ? (width + 7) / 8 : static_cast<std::size_t>(width) * samples * size;
  if (bytes.size() < static_cast<std::size_t>(stream.tellg()) + line * height) return {};
  const auto sample = [&](std::size_t index) -> std::uint32_t {
    if (magic == "P4") return (p[index / 8] >> (7 - index % 8) & 1) != 0 ? 0 : 255;
    const int value = size == 2 ? p[2 * index] * 256 + p[2 * index + 1] : p[index];
    return static_cast<std::uint32_t>(std::lround(value * 255.0 / most));
  };
  Raster page(width, height);
  for (int y = 0; y < height; ++y, p += line)
    for (int x = 0; x < width; ++x) {
      const auto at = static_cast<std::size_t>(x) * samples;
      const std::uint32_t red = sample(at);
      page.Row(y)[x] = samples == 1
                           ? 0xff000000u | red * 0x010101u
                           : 0xff000000u | red << 16 | sample(at + 1) << 8 | sample(at + 2);
    }
  return page;
}

/// Ends the process as the program does: a driver that has cancelled its thread may have left a
/// lock of the C library taken, for which exit handlers would wait.
class ScanningEnds : public testing::EmptyTestEventListener {
  void OnTestProgramEnd(const testing::UnitTest& tests) override {
    EndScanning();
    std::filesystem::remove_all(ConfigurationFolder().Path());
    std::fflush(nullptr);
    std::_Exit(tests.Passed() ? 0 : 1);
  }
};

[[maybe_unused]] const bool kScanningEnds = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new ScanningEnds);
  return true;
}();

}  // namespace

VirtualScanner::VirtualScanner(const std::vector<std::string>& options) {
  Configure(options);
}

void VirtualScanner::Configure(const std::vector<std::string>& options) {
  std::string text =
      "number_of_devices 1\nmode Color\ndepth 8\nresolution 50\ntest-picture \"Color pattern\"\n"
      "br_x 80.0\nbr_y 100.0\n";
  for (const std::string& option : options) text += option + "\n";
  WriteBytes(ConfigurationFolder() / "test.conf", text);
  WriteBytes(ConfigurationFolder() / "dll.conf", "test\n");
}

void VirtualScanner::Unplug() {
  HideRealScanners();
}

void HideRealScanners() {
  WriteBytes(ConfigurationFolder() / "dll.conf", "");
}

Raster ScanimagePage(const std::string& arguments) {
  // It may wait forever at its end for what ScanningEnds tells of; the page is out by then.
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
      popen(("timeout --signal=KILL 30 scanimage --format=pnm " + arguments).c_str(), "r"), pclose);
  std::string bytes;
  std::array<char, 65536> piece;
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe.get()))
    bytes.append(piece.data(), count);
  Raster page = ReadPnm(bytes);
  EXPECT_FALSE(page.IsEmpty()) << "scanimage delivers no page: sane-utils or libsane1 is missing";
  return page;
}

}  // namespace graphize::test
