#include "settings/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "base/run_time_error.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

SettingsFile FileOf(const std::string& text) {
  const TemporaryFolder folder;
  WriteBytes(folder / "file.ini", text);
  return ReadSettingsFile(folder / "file.ini");
}

std::string TextOf(const SettingsFile& file) {
  const TemporaryFolder folder;
  SaveSettingsFile(folder / "file.ini", file);
  return BytesOf(folder / "file.ini");
}

constexpr std::int64_t kMissing = -77;

TEST(SettingsFile, NumbersAreReadFromHandEditedLines) {
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const std::pair<const char*, std::int64_t> cases[] = {
      {"[S]\nKey=5\n", 5},
      {"[S]\r\nKey=5\r\n", 5},
      {"  [ s ] junk\n\t kEY \t=  5 \t\n", 5},
      {"\xef\xbb\xbf[S]\nKey=5\n", 5},
      {"\xef\xbb\xbf\n[S]\nKey=5\n", 5},
      {"[S\nKey=5\n", 5},
      // Numbers that go on as something else, or are none.
      {"[S]\nKey=+5\n", 5},
      {"[S]\nKey=007\n", 7},
      {"[S]\nKey=5.9\n", 5},
      {"[S]\nKey=5; five\n", 5},
      {"[S]\nKey=5=6\n", 5},
      {"[S]\nKey=abc\n", 0},
      {"[S]\nKey= ; none\n", 0},
      {"[S]\nKey=-\n", 0},
      {"[S]\nKey=- 5\n", 0},
      {"[S]\nKey=99999999999999999999\n", most},
      {"[S]\nKey=-99999999999999999999 or so\n", least},
      // The first of two counts, also over two sections of one name.
      {"[S]\nKey=1\nKey=2\n", 1},
      {"[S]\nOther=0\n[T]\nKey=1\n[S]\nKey=2\n[s]\nKey=3\n", 2},
      // Missing.
      {"", kMissing},
      {"Key=5\n", kMissing},
      {"[S]\n;Key=5\n#Key=5\n", kMissing},
      {"[S]\nKey\n", kMissing},
      {"[S]\nKeys=5\nMy Key=5\n", kMissing},
      {"[S]\n[T]\nKey=5\n", kMissing},
      {";[S]\nKey=5\n", kMissing},
      {"[]\nKey=5\n", kMissing},
      {"[S]\n[Key=5]\n", kMissing},
  };
  for (const auto& [text, number] : cases)
    EXPECT_EQ(ReadInt(FileOf(text), "S", "Key", kMissing), number) << text;
}

TEST(SettingsFile, AWriteChangesTheValueAndNothingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"[S]\nKey=5\n", "[S]\nKey=42\n"},
      {"[S]\nKey=5", "[S]\nKey=42"},
      {"[S]\r\nKey=5\r\nOther=1\r\n", "[S]\r\nKey=42\r\nOther=1\r\n"},
      {"[S]\nKey=5\r\nOther=1\n", "[S]\nKey=42\r\nOther=1\n"},
      {"; mine\n\n[ s ]\n kEy =\t5  ; five\n# end", "; mine\n\n[ s ]\n kEy =\t42  ; five\n# end"},
      {"[S]\nKey=  # none\n", "[S]\nKey=42  # none\n"},
      {"[S]\nKey=a b c\nKey=6\n", "[S]\nKey=42\nKey=6\n"},
      {"\xef\xbb\xbf[S]\nKey=5\n", "\xef\xbb\xbf[S]\nKey=42\n"},
      {"[T]\nKey=1\n[S]\n[S]\nKey=5\n", "[T]\nKey=1\n[S]\n[S]\nKey=42\n"},
      // A new key goes to the end of its section, before the blank lines there.
      {"[S]\nOther=1\n\n[T]\nKey=1\n", "[S]\nOther=1\nKey=42\n\n[T]\nKey=1\n"},
      {"[S]\n[T]\n", "[S]\nKey=42\n[T]\n"},
      {"[S]\nOther=1\n[T]\n[S]\nMore=1\n", "[S]\nOther=1\nKey=42\n[T]\n[S]\nMore=1\n"},
      {"[S]\r\nOther=1", "[S]\r\nOther=1\r\nKey=42\r\n"},
      {"[S]\nKey ; =5\n", "[S]\nKey ; =5\nKey=42\n"},
      {"[S]\nKey=; none\n", "[S]\nKey=42 ; none\n"},
      // A new section goes to the end of the file.
      {"", "[S]\nKey=42\n"},
      {"\xef\xbb\xbf", "\xef\xbb\xbf\n[S]\nKey=42\n"},
      {"\n", "\n[S]\nKey=42\n"},
      {"[T]\nKey=1", "[T]\nKey=1\n\n[S]\nKey=42\n"},
      {"[T]\r\nKey=1\r\n\r\n", "[T]\r\nKey=1\r\n\r\n[S]\r\nKey=42\r\n"},
  };
  for (const auto& [before, after] : cases) {
    SettingsFile file = FileOf(before);
    EXPECT_EQ(TextOf(file), before);
    WriteValue(file, "S", "Key", "42");
    EXPECT_EQ(TextOf(file), after);
    EXPECT_EQ(ReadInt(FileOf(after), "S", "Key", kMissing), 42) << after;
    WriteValue(file, "s", "KEY", "42");
    EXPECT_EQ(TextOf(file), after) << "written twice";
  }
}

TEST(SettingsFile, SavingMakesTheFolderAgain) {
  const TemporaryFolder folder;
  SettingsFile file = ReadSettingsFile(folder / "a/b/file.ini");
  EXPECT_EQ(file.ReadError, "");
  WriteValue(file, "S", "Key", "1");
  SaveSettingsFile(folder / "a/b/file.ini", file);
  fs::remove_all(folder / "a");
  SaveSettingsFile(folder / "a/b/file.ini", file);
  EXPECT_THAT(folder.Names(), ElementsAre("a", "a/b", "a/b/file.ini"));
}

TEST(SettingsFile, AFailedSaveSaysWhyAndKeepsTheOldFile) {
  const TemporaryFolder folder;
  WriteBytes(folder / "file.ini", "[S]\nKey=1\n");
  fs::permissions(folder / "file.ini", fs::perms::owner_read);
  SettingsFile file = ReadSettingsFile(folder / "file.ini");
  WriteValue(file, "S", "Key", "2");
  const fs::path paths[] = {folder / "file.ini", folder / "file.ini/below/file.ini",
                            "/proc/graphize/file.ini"};
  for (const fs::path& path : paths) {
    try {
      SaveSettingsFile(path, file);
      ADD_FAILURE() << path;
    } catch (const RunTimeError& error) {
      EXPECT_THAT(error.what(), HasSubstr("The settings file " + path.string()));
    }
  }
  EXPECT_EQ(BytesOf(folder / "file.ini"), "[S]\nKey=1\n");
  EXPECT_THAT(folder.Names(), ElementsAre("file.ini"));
}

TEST(SettingsFile, AFileThatCannotBeReadIsNotOverwritten) {
  const TemporaryFolder folder;
  const std::string wide{"\xff\xfe[\0S\0]\0\n\0", 10};
  const std::string large(2 << 20, '\n');
  WriteBytes(folder / "wide.ini", wide);
  WriteBytes(folder / "large.ini", large);
  WriteBytes(folder / "folder.ini/inside", "");
  for (const char* name : {"wide.ini", "large.ini", "folder.ini"}) {
    SettingsFile file = ReadSettingsFile(folder / name);
    EXPECT_THAT(file.ReadError, HasSubstr((folder / name).string()));
    EXPECT_EQ(ReadInt(file, "S", "Key", kMissing), kMissing);
    WriteValue(file, "S", "Key", "2");
    EXPECT_THROW(SaveSettingsFile(folder / name, file), RunTimeError);
  }
  EXPECT_EQ(BytesOf(folder / "wide.ini"), wide);
  EXPECT_EQ(BytesOf(folder / "large.ini"), large);
}

}  // namespace
}  // namespace graphize::test
