#include "settings/scanner_source.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace graphize {
namespace {

TEST(ScannerSource, EveryNameComesBackAndAllElseStays) {
  const test::TemporaryFolder folder;
  const auto path = folder / "graphize.ini";
  const std::string before = "; mine\n[Options]\nZoom=0 ; off\n\n[Other]\nkey = value\n";
  test::WriteBytes(path, before);
  EXPECT_EQ(ReadScannerSource(ReadSettingsFile(path)), ScannerSource());
  for (const std::string name :
       {"test:0", "airscan:e0:Canon MG5300 series", " a ; b # c ", "50%25", "%", "a\tb\nc", "%4",
        "net:[::1]:genesys:libusb:001:002", "Büro"}) {
    SettingsFile file = ReadSettingsFile(path);
    const ScannerSource source{name, "Maker " + name};
    WriteScannerSource(file, source);
    SaveSettingsFile(path, file);
    EXPECT_EQ(ReadScannerSource(ReadSettingsFile(path)), source);
    EXPECT_TRUE(test::BytesOf(path).starts_with(before));
  }
}

TEST(ScannerSource, NamesWrittenByHandAreTakenAsTheyAre) {
  const test::TemporaryFolder folder;
  for (const auto& [written, name] :
       {std::pair{"airscan:e0:My Scanner", "airscan:e0:My Scanner"}, std::pair{"100%", "100%"},
        std::pair{"a%zzb", "a%zzb"}, std::pair{"test:1 ; mine", "test:1"}}) {
    test::WriteBytes(folder / "x.ini", std::string("[Scanner]\nSource=") + written + "\n");
    EXPECT_EQ(ReadScannerSource(ReadSettingsFile(folder / "x.ini")).Name, name);
  }
}

}  // namespace
}  // namespace graphize
