#include "data/data_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <system_error>
#include <tuple>

#include "base/run_time_error.h"
#include "data/list_edit.h"
#include "support/calibrated.h"
#include "support/points.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

TEST(DataFile, HoldsTheTitleAndOneLinePerRow) {
  const NumberFormats blank{"0.00000", "0.00000", " "}, semicolon{"0.0", "0.0", ";"},
      comma{"0.0", "0.0", ","};
  // Title, points, formats, decimal point, the file.
  const std::tuple<const char*, RowList, NumberFormats, bool, const char*> cases[] = {
      {"run 1",
       {{1, 2.5f}, {2, 3.75f}},
       {},
       true,
       "run 1\r\n1.00000E+00\t2.50000E+00\r\n2.00000E+00\t3.75000E+00\r\n"},
      {"", {{12.5f, 3}}, blank, true, "12.50000 3.00000\r\n"},
      {"Größe\tb", {{1, -2}}, semicolon, false, "Größe\tb\r\n1,0;-2,0\r\n"},
      {"", {{1, 2}}, comma, false, "1,0,2,0\r\n"},
      {"", {}, {}, true, ""},
  };
  const TemporaryFolder folder;
  const auto path = folder / "Kept Capitals.DAT";
  for (const auto& [title, points, formats, decimalPoint, expected] : cases) {
    SCOPED_TRACE(expected);
    const PointStore store = MakeStore(points);
    WriteDataFile(path, DataFileText(title, store, formats, decimalPoint));
    const std::string bytes = BytesOf(path);
    EXPECT_EQ(bytes, expected);
    // The clipboard has the same lines without title and last line end.
    std::string lines = PointLines(store, formats, decimalPoint);
    EXPECT_FALSE(lines.ends_with("\n"));
    if (!lines.empty()) lines += "\r\n";
    EXPECT_EQ((*title ? title + std::string("\r\n") : "") + lines, bytes);
  }
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"Kept Capitals.DAT"});
}

TEST(DataFile, HoldsTheListNotTheCapturedPoints) {
  PointStore store = MakeStore({{1, 1}, {2, 2}, {3, 3}});
  store.ListX[1] = 9;
  store.ListCount = 2;
  EXPECT_EQ(PointLines(store, {"0.", "0.", " "}, true), "9. 1.\r\n2. 2.");
}

TEST(DataFile, AFullStoreIsWrittenWholeAndReadsBack) {
  PointStore store;
  store.ListCount = 32767;
  store.ListX.resize(32768);
  store.ListY.resize(32768);
  for (int i = 1; i <= store.ListCount; ++i) {
    store.ListX[i] = static_cast<float>(i) * 0.37f;
    store.ListY[i] = -1e20f / static_cast<float>(i);
  }
  const TemporaryFolder folder;
  const auto path = folder / "full.dat";
  // Nine significant digits name a single-precision number.
  WriteDataFile(path, DataFileText("", store, {"0.00000000E+00", "0.00000000E+00", " "}, true));
  std::istringstream lines(BytesOf(path));
  int count = 0;
  for (std::string x, y; lines >> x >> y;) {
    ++count;
    ASSERT_LE(count, store.ListCount);
    ASSERT_EQ(std::strtof(x.c_str(), nullptr), store.ListX[count]);
    ASSERT_EQ(std::strtof(y.c_str(), nullptr), store.ListY[count]);
  }
  EXPECT_EQ(count, 32767);
}

TEST(DataFile, EveryFailureIsTheSystemsDescription) {
  const TemporaryFolder folder;
  const std::pair<std::filesystem::path, std::errc> cases[] = {
      {folder / "gone/a.dat", std::errc::no_such_file_or_directory},
      {folder.Path(), std::errc::is_a_directory},
      {folder / std::string(300, 'n'), std::errc::filename_too_long},
      {"", std::errc::no_such_file_or_directory},
      {"/dev/full", std::errc::not_supported},
  };
  const PointStore store = MakeStore({{1, 2}});
  for (const auto& [path, reason] : cases) {
    try {
      WriteDataFile(path, DataFileText("title", store, {}, true));
      ADD_FAILURE() << "no error for " << path;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.what(), std::make_error_code(reason).message()) << path;
    }
  }
  EXPECT_TRUE(folder.Names().empty());

  // A disk that fills up while the file is replaced leaves the old one.
  WriteBytes(folder / "old.dat", "old");
  {
    const FullDisk disk(10);
    EXPECT_THROW(WriteDataFile(folder / "old.dat", std::string(1000, 'x')), RunTimeError);
  }
  EXPECT_EQ(BytesOf(folder / "old.dat"), "old");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old.dat"});
}

TEST(RowErrors, FollowTheColumnsAndNameWhatTheFormatHides) {
  // 538 columns between 2019.0 and 2019.5, Y from 1 to 1000 on a log axis.
  const AxisCalibration axes = Calibrate(
      {{{10, 20, "2019", "1"}, {548, 20, "2019.5", "1"}, {10, 320, "2019", "1000"}}}, false, true);
  PointStore store = MakeStore({{2019.25f, 10}});
  Settings settings;
  NumberFormats formats;
  const auto hidden = [&] {
    BuildFormats(settings, formats);
    return HiddenDigits(store, axes, settings, formats);
  };
  const std::string sevenForX = "7 decimals for X would show them.";
  EXPECT_TRUE(hidden().ends_with(sevenForX)) << hidden();
  settings.YExp = false;
  settings.YDecimals = 0;
  EXPECT_TRUE(hidden().ends_with("7 decimals for X and 1 decimal for Y would show them."));

  SwapXY(store);
  const RowError swapped = RowErrorsOf(store, axes, 480)[0];
  EXPECT_FLOAT_EQ(swapped.X, 10 * std::log(10.0f) / 100);
  EXPECT_FLOAT_EQ(swapped.Y, 0.5f / 538);
  settings = Settings();
  EXPECT_TRUE(hidden().ends_with("7 decimals for Y would show them.")) << hidden();
  settings.YDecimals = 7;
  EXPECT_EQ(hidden(), "");
  settings = Settings();
  store.ListRows = PointStore::Rows::Other;
  EXPECT_EQ(hidden(), "");
}

TEST(DataFile, ProposesTheImagesNameWithItsOwnExtension) {
  const std::pair<const char*, const char*> cases[] = {
      {"C:\\Plots\\Fig3.TIF", "c:\\plots\\fig3.dat"},
      {"a.b.webp", "a.b.dat"},
      {".png", ".dat"},
      {"p1", "p1.dat"},
      {"Page.jpeg2000", "page.dat"},
      {"Scan of page 3", "scan of page 3.dat"},
      {"ends in.", "ends in.dat"},
      {"Fig. 2 of Müller", "fig. 2 of müller.dat"},
  };
  for (const auto& [image, proposal] : cases) EXPECT_EQ(DataFileProposal(image), proposal);
  EXPECT_EQ(DataFileProposal("Fig3.TIF", ".json"), "fig3.json");
  EXPECT_THROW(DataFileProposal(""), RunTimeError);
}

}  // namespace
}  // namespace graphize::test
