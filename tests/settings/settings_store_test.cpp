#include "settings/settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/run_time_error.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Notes = std::vector<std::string>;

SettingsFile FileOf(const std::string& text) {
  const test::TemporaryFolder folder;
  test::WriteBytes(folder / kSettingsFileName, text);
  return ReadSettingsFile(folder / kSettingsFileName);
}

/// Every option and the window as text, in the order of a file written anew.
std::string TextOf(const Settings& settings, bool lastPoint = true, bool overlay = false,
                   const WindowPlacement& placement = {}) {
  SettingsFile file;
  WriteSettings(file, settings, lastPoint, overlay, placement);
  std::string text;
  for (const std::string& line : file.Lines) text += line;
  return text;
}

Settings SettingsOf(const std::string& text, Notes& notes) {
  Settings settings;
  ReadSettings(FileOf(text), settings, notes);
  return settings;
}

constexpr const char* kFullFile =
    "[Options]\nZoom=0\nRefreshList=-1\nXJump=11\nYJump=-12\nTraceColor=70000\nBlockColor=-2\n"
    "Trace=2\nLastPoint=0\nOverlayData=1\nCursorType=3\n\n"
    "[Data Format]\nDecimalPoint=0\nXDigits=2\nXDecimals=3\nXExp=0\nYDigits=4\nYDecimals=6\n"
    "YExp=0\nDelimiter=7\n\n"
    "[Window Position]\nWindowState=0\nWindowTop=-150\nWindowLeft=300\nWindowWidth=9000\n"
    "WindowHeight=6000\n\n"
    "[Snaps]\nSnapMode=3\nSnapDistance=25\n";

TEST(SettingsStore, AFileWrittenAnewHoldsEveryKeyInOrder) {
  Settings settings;
  settings.Zoom = 0;
  settings.RefreshList = -1;
  settings.XJump = 11;
  settings.YJump = -12;
  settings.TraceColor = 70000;
  settings.BlockColor = -2;
  settings.Trace = 2;
  settings.CursorType = 3;
  settings.DecimalPoint = settings.XExp = settings.YExp = false;
  settings.XDigits = 2;
  settings.XDecimals = 3;
  settings.YDigits = 4;
  settings.YDecimals = 6;
  settings.Delimiter = 7;
  settings.SnapMode = 3;
  settings.SnapDistance = 25;
  EXPECT_EQ(TextOf(settings, false, true, {-150, 300, 9000, 6000, WindowState::Normal}), kFullFile);
}

TEST(SettingsStore, WhatIsReadIsWhatWasWritten) {
  Notes notes;
  const SettingsFile file = FileOf(kFullFile);
  WindowPlacement placement;
  ReadPlacement(file, DefaultPlacement(1280, 1024), placement, notes);
  Settings settings = SettingsOf(kFullFile, notes);
  EXPECT_EQ(settings.RefreshList, 1);
  settings.RefreshList = -1;
  EXPECT_EQ(TextOf(settings, ReadLastPoint(file), true, placement), kFullFile);
  EXPECT_THAT(notes, IsEmpty());
}

TEST(SettingsStore, MissingFilesSectionsAndKeysGiveTheDefaults) {
  for (const char* text : {"", "[Options]\n", "Zoom=0\nXDigits=9\n", "[Option]\nXJump=1\n"}) {
    Notes notes;
    EXPECT_EQ(TextOf(SettingsOf(text, notes)), TextOf(Settings())) << text;
    EXPECT_TRUE(ReadLastPoint(FileOf(text)));
    EXPECT_THAT(notes, IsEmpty());
  }
}

TEST(SettingsStore, OptionsThatAreNoLongerTheirDefaultStand) {
  std::vector<std::string> notes;
  Settings settings = SettingsOf("[Options]\nThreshold=90\nNextLine=0\n", notes);
  EXPECT_EQ(settings.Threshold, 90);
  EXPECT_EQ(settings.NextLine, 0);
  SettingsFile file = FileOf("");
  for (const int threshold : {90, 128}) {
    settings.Threshold = static_cast<std::int16_t>(threshold);
    WriteSettings(file, settings, true, true, {});
    EXPECT_EQ(ReadInt(file, "Options", "Threshold", 0), threshold);
  }
  EXPECT_EQ(SettingsOf("[Options]\nThreshold=256\n", notes).Threshold, 128);
  EXPECT_EQ(notes.size(), 1u) << "a threshold that there is not";
}

TEST(SettingsStore, RefreshListTurnsItsSignEachTimeAndStaysOn) {
  Settings settings;
  Notes notes;
  SettingsFile file = FileOf("[Options]\nRefreshList=1\n");
  for (const int expected : {-1, 1, -1}) {
    ReadSettings(file, settings, notes);
    EXPECT_EQ(settings.RefreshList, expected);
    WriteSettings(file, settings, true, false, {});
    EXPECT_EQ(ReadInt(file, "Options", "RefreshList", 0), expected);
  }
}

TEST(SettingsStore, SwitchesAreOnForAnyOtherNumber) {
  const std::pair<const char*, bool> cases[] = {{"0", false}, {"1", true},    {"-1", true},
                                                {"7", true},  {"off", false}, {"999999", true}};
  for (const auto& [text, on] : cases) {
    Notes notes;
    EXPECT_EQ(SettingsOf("[Data Format]\nXExp=" + std::string(text), notes).XExp, on) << text;
    EXPECT_THAT(notes, IsEmpty());
  }
  EXPECT_FALSE(ReadLastPoint(FileOf("[Options]\nLastPoint=-1\n")));
}

TEST(SettingsStore, NumbersThatDoNotFitGiveTheDefaultAndANote) {
  using Case = std::tuple<const char*, int, bool>;  // the value's text, read as, noted
  const Case xJump[] = {{"32767", 32767, false},   {"32768", 50, true},
                        {"-32768", -32768, false}, {"-32769", 50, true},
                        {"65586", 50, true},       {"99999999999999999999", 50, true},
                        {"ten", 0, false},         {"10 ; ten", 10, false}};
  for (const auto& [text, value, noted] : xJump) {
    Notes notes;
    EXPECT_EQ(SettingsOf("[Options]\nXJump=" + std::string(text), notes).XJump, value) << text;
    EXPECT_EQ(notes.size(), noted ? 1u : 0u) << text;
    EXPECT_THAT(notes, Each(AllOf(HasSubstr("\"XJump\" in [Options]"), HasSubstr("50"))));
  }
  // Negated before it is held: one more below nought than above.
  const Case refreshList[] = {{"32768", -32768, false},
                              {"32769", 0, true},
                              {"-32767", 32767, false},
                              {"-32768", 0, true},
                              {"-9223372036854775808", 0, true}};
  for (const auto& [text, value, noted] : refreshList) {
    Notes notes;
    const Settings read = SettingsOf("[Options]\nRefreshList=" + std::string(text), notes);
    EXPECT_EQ(read.RefreshList, value) << text;
    EXPECT_EQ(notes.size(), noted ? 1u : 0u) << text;
  }
  Notes notes;
  EXPECT_EQ(SettingsOf("[Options]\nTraceColor=2147483648\n", notes).TraceColor, 14);
  EXPECT_EQ(notes.size(), 1u);
}

TEST(SettingsStore, AnUnreadableFileIsNoted) {
  Notes notes;
  EXPECT_EQ(TextOf(SettingsOf(std::string(3, '\0'), notes)), TextOf(Settings()));
  EXPECT_THAT(notes, ElementsAre(HasSubstr("cannot be read")));
}

TEST(SettingsStore, ResetKeepsTheSnapOptionsOnly) {
  Notes notes;
  Settings settings = SettingsOf(kFullFile, notes), expected;
  ResetSettings(settings);
  expected.SnapMode = 3;
  expected.SnapDistance = 25;
  EXPECT_EQ(TextOf(settings), TextOf(expected));
}

std::vector<int> Numbers(const WindowPlacement& placement) {
  return {placement.Top, placement.Left, placement.Width, placement.Height,
          static_cast<int>(placement.State)};
}

TEST(WindowPlacement, DefaultsArePartsOfTheScreenInTwips) {
  EXPECT_THAT(Numbers(DefaultPlacement(1280, 1024)), ElementsAre(768, 960, 17280, 13824, 2));
  // 2427 pixels wide are 32764.5 twips: halves go to the even number.
  EXPECT_THAT(Numbers(DefaultPlacement(2427, 1001)), ElementsAre(751, 1820, 32764, 13514, 2));
  EXPECT_THROW(DefaultPlacement(2428, 1024), RunTimeError);
  EXPECT_THROW(DefaultPlacement(1280, 2428), RunTimeError);
}

TEST(WindowPlacement, WhatTheFileLacksOrCannotMeanIsTakenFromTheDefaults) {
  const WindowPlacement defaults{1, 2, 300, 400, WindowState::Maximised};
  using Ints = std::vector<int>;
  const std::tuple<const char*, Ints, std::size_t> cases[] = {
      // lines, read as, notes
      {"", Ints{1, 2, 300, 400, 2}, 0},
      {"WindowTop=-7\nWINDOWLEFT = 8\n", Ints{-7, 8, 300, 400, 2}, 0},
      {"WindowState=1\nWindowWidth=15\nWindowHeight=491505", Ints{1, 2, 15, 491505, 1}, 0},
      {"WindowTop=top\nWindowWidth=wide\nWindowState=max", Ints{0, 2, 300, 400, 0}, 1},
      {"WindowWidth=14\nWindowHeight=-600\nWindowState=3", Ints{1, 2, 300, 400, 2}, 3},
      {"WindowTop=491506\nWindowLeft=-491506\nWindowState=-1", Ints{1, 2, 300, 400, 2}, 3},
      {"WindowTop=99999999999\nWindowHeight=99999999999999999999", Ints{1, 2, 300, 400, 2}, 2},
  };
  for (const auto& [lines, expected, noted] : cases) {
    Notes notes;
    WindowPlacement placement{-1, -1, -1, -1, WindowState::Normal};
    ReadPlacement(FileOf("[Window Position]\n" + std::string(lines)), defaults, placement, notes);
    EXPECT_EQ(Numbers(placement), expected) << lines;
    EXPECT_EQ(notes.size(), noted) << lines;
  }
}

TEST(WindowPlacement, WithoutDefaultsTheWindowStaysWhereItIsAndANoteSaysSo) {
  WindowPlacement placement{1, 2, 300, 400, WindowState::Normal};
  Notes notes;
  ReadPlacement(FileOf("[Window Position]\nWindowTop=70\n"), std::nullopt, placement, notes);
  EXPECT_THAT(Numbers(placement), ElementsAre(70, 2, 300, 400, 2));
  EXPECT_THAT(notes, ElementsAre(HasSubstr("Overflow")));
  notes.clear();
  ReadPlacement(FileOf(kFullFile), std::nullopt, placement, notes);
  EXPECT_THAT(Numbers(placement), ElementsAre(-150, 300, 9000, 6000, 0));
  EXPECT_THAT(notes, IsEmpty());
}

}  // namespace
}  // namespace graphize
