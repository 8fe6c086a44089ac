// The scanner library for real: its own backend "test" plays the scanner, its own program delivers
// the page to compare with.

#include "scanner/scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/virtual_scanner.h"

namespace graphize {
namespace {

using test::ScanimagePage;
using test::VirtualScanner;
using testing::ElementsAre;
using testing::HasSubstr;

const PictureProgress kGoOn = [](int) { return true; };

/// `page` lacks that many columns on the right.
void ExpectSame(const Raster& page, const Raster& expected, int lostColumns = 0) {
  ASSERT_EQ(page.Width(), expected.Width() - lostColumns);
  ASSERT_EQ(page.Height(), expected.Height());
  for (int y = 0; y < page.Height(); ++y)
    for (int x = 0; x < page.Width(); ++x)
      ASSERT_EQ(page.Row(y)[x], expected.Row(y)[x]) << x << ", " << y;
}

PageRaster Acquire(const ScanSettings& settings = {}, const PictureProgress& progress = kGoOn) {
  return AcquirePage(OpenScanSource("test:0", kGoOn), settings, false, progress);
}

std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const RunTimeError& error) {
    return error.what();
  }
  return "no error";
}

struct PageCase {
  const char* name;
  std::vector<std::string> options;
  const char* reference = "";  // options for scanimage, which cannot read every kind
  int lostColumns = 0;
};

void PrintTo(const PageCase& c, std::ostream* out) {
  *out << c.name;
}

class ScannedPage : public testing::TestWithParam<PageCase> {};

TEST_P(ScannedPage, IsTheOneThatScanimageDelivers) {
  const VirtualScanner scanner(GetParam().options);
  const Raster expected = ScanimagePage(GetParam().reference);
  const PageRaster page = Acquire();
  ASSERT_NE(page, nullptr);
  ExpectSame(*page, expected, GetParam().lostColumns);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ScannedPage,
    testing::Values(
        PageCase{"Colour", {}}, PageCase{"Grey", {"mode Gray"}},
        PageCase{"Lineart", {"mode Gray", "depth 1"}},
        PageCase{"LineartOfOddWidth", {"mode Gray", "depth 1", "br_x 83.0"}},
        PageCase{"Colour16", {"depth 16"}}, PageCase{"Grey16", {"mode Gray", "depth 16"}},
        PageCase{"ThreePass", {"three-pass true"}},
        PageCase{"ThreePassBackwards", {"three-pass true", "three-pass-order BGR"}},
        PageCase{"ThreePass16",
                 {"three-pass true", "three-pass-order GRB", "depth 16"},
                 "--three-pass=no"},
        PageCase{"HandScanner", {"hand-scanner true"}},
        PageCase{"GreyHandScanner", {"hand-scanner true", "mode Gray"}},
        PageCase{"PaddedLines", {"ppl-loss 13"}, "--ppl-loss 0", 13},
        PageCase{"PaddedLineart", {"ppl-loss 13", "mode Gray", "depth 1"}, "--ppl-loss 0", 13},
        PageCase{"UncertainAnnouncement", {"fuzzy-parameters true"}},
        PageCase{"SmallPieces", {"read-limit true", "read-limit-size 7"}},
        PageCase{"SmallPieces16", {"read-limit true", "read-limit-size 13", "depth 16"}},
        PageCase{"NotBlocking", {"non-blocking true"}},
        PageCase{"Large", {"resolution 300", "br_x 200.0", "br_y 200.0"}}),
    [](const auto& page) { return std::string(page.param.name); });

TEST(Scanner, SettingsAreTheDevicesOptions) {
  const VirtualScanner virtualScanner;
  const OpenScanner scanner = OpenScanSource("test:0", kGoOn);
  auto can = SetScan(scanner, {}, kGoOn);
  ASSERT_TRUE(can);
  EXPECT_THAT(can->Modes, ElementsAre("Gray", "Color"));
  EXPECT_THAT(can->PaperSources, ElementsAre("Flatbed", "Automatic Document Feeder"));
  EXPECT_THAT(can->Depths, ElementsAre(1, 8, 16));
  EXPECT_EQ(can->ResolutionRange.Max, 1200);
  EXPECT_EQ(can->Across.Max, 200);
  EXPECT_EQ(can->Now.Mode, "Color");
  EXPECT_EQ(can->Now.Resolution, 50);
  EXPECT_EQ(can->Now.Area, (PageArea{0, 0, 80, 100}));
  EXPECT_EQ(can->Width, 157);
  EXPECT_EQ(can->Height, 196);

  // The device's grid and limits hold, and what it does not know stays.
  can = SetScan(scanner,
                {.PaperSource = "Mailbox",
                 .Mode = "Gray",
                 .Depth = 12,
                 .Resolution = 5000,
                 .Area = {10.4, 20, 300, 30.2}},
                kGoOn);
  EXPECT_EQ(can->Now.PaperSource, "Flatbed");
  EXPECT_EQ(can->Now.Mode, "Gray");
  EXPECT_TRUE(can->Now.Depth == 8 || can->Now.Depth == 16) << can->Now.Depth;
  EXPECT_EQ(can->Now.Resolution, 1200);
  EXPECT_EQ(can->Now.Area, (PageArea{10, 20, 190, 30}));

  const ScanSettings settings = {
      .Mode = "Gray", .Depth = 8, .Resolution = 77, .Area = {10, 20, 41, 53}};
  const PageRaster page = AcquirePage(scanner, settings, false, kGoOn);
  ASSERT_NE(page, nullptr);
  ExpectSame(*page, ScanimagePage("--mode Gray --depth 8 --resolution 77 -l 10 -t 20 -x 41 -y 53"));
}

TEST(Scanner, AFailureIsToldInPlainWordsAndTheDeviceIsFree) {
  VirtualScanner scanner;
  const std::pair<const char*, const char*> cases[] = {
      {"UNSUPPORTED", "cannot do that"},  {"CANCELLED", "cancelled at the scanner"},
      {"DEVICE_BUSY", "is busy"},         {"INVAL", "does not accept"},
      {"EOF", "sent no picture"},         {"JAMMED", "paper is jammed"},
      {"NO_DOCS", "no documents"},        {"COVER_OPEN", "cover is open"},
      {"IO_ERROR", "connection"},         {"NO_MEM", "not enough memory"},
      {"ACCESS_DENIED", "does not allow"}};
  for (const auto& [status, words] : cases) {
    scanner.Configure({std::string("read-status-code \"SANE_STATUS_") + status + '"'});
    EXPECT_THAT(ErrorOf([] { Acquire(); }), HasSubstr(words)) << status;
  }
  scanner.Configure({});
  EXPECT_NE(Acquire(), nullptr);
}

TEST(Scanner, StopsInTheMiddleOfAPage) {
  VirtualScanner scanner({"read-delay true", "read-delay-duration 200000", "resolution 200"});
  int percent = 0, asked = 0;
  const PageRaster page = Acquire({}, [&](int now) {
    EXPECT_GE(now, percent);
    percent = now;
    ++asked;
    return now < 5;
  });
  EXPECT_EQ(page, nullptr);
  EXPECT_GE(percent, 5);
  EXPECT_LT(percent, 100);
  EXPECT_GT(asked, 1);
  scanner.Configure({});
  ExpectSame(*Acquire(), ScanimagePage());
}

TEST(Scanner, TellsWhenNobodyKnowsHowFarItIs) {
  const VirtualScanner scanner(
      {"hand-scanner true", "read-delay true", "read-delay-duration 100000"});
  int unknown = 0;
  EXPECT_NE(Acquire({}, [&](int percent) { return unknown += percent == -1, true; }), nullptr);
  EXPECT_GT(unknown, 0);
}

TEST(Scanner, APictureThatIsTooLargeIsRefusedBeforeItIsScanned) {
  const VirtualScanner scanner(
      {"geometry_max 1000.0", "read-delay true", "read-status-code \"SANE_STATUS_IO_ERROR\""});
  for (const PageArea& area : {PageArea{0, 0, 700, 10}, PageArea{0, 0, 10, 700}})
    EXPECT_THROW(Acquire({.Resolution = 1200, .Area = area}), PictureTooLarge);
  EXPECT_THROW(Acquire({.Mode = "Gray", .Depth = 8, .Resolution = 1200, .Area = {0, 0, 400, 400}}),
               PictureTooLarge);
}

TEST(Scanner, SourcesAreListedAndPresentOrNot) {
  VirtualScanner scanner({"number_of_devices 2"});
  const auto sources = ListScanners(false, kGoOn);
  ASSERT_TRUE(sources);
  ASSERT_EQ(sources->size(), 2u);
  EXPECT_EQ((*sources)[1].Name, "test:1");
  EXPECT_EQ((*sources)[1].Model, "frontend-tester");
  EXPECT_FALSE((*sources)[1].Vendor.empty() || (*sources)[1].Kind.empty());
  EXPECT_THAT(ErrorOf([] { OpenScanSource("test:7", kGoOn); }), HasSubstr("test:7 was not found"));

  scanner.Unplug();
  EXPECT_EQ(ListScanners(true, kGoOn)->size(), 0u);
  EXPECT_EQ(ScannerIsAvailable(), 1) << "one in the network may be";
}

}  // namespace
}  // namespace graphize
