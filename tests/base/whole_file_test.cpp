#include "base/whole_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST(WholeFile, WhatIsWrittenIsReadBack) {
  const TemporaryFolder folder;
  const std::string all{"\0\r\n\xff end", 8};
  for (const std::string& bytes : {std::string(), all, std::string(100'000, 'x')}) {
    ASSERT_FALSE(ReplaceWholeFile(folder / "file", bytes));
    std::string read = "old";
    ASSERT_FALSE(ReadWholeFile(folder / "file", 100'000, read));
    EXPECT_EQ(read, bytes);
  }
  EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

TEST(WholeFile, WhatCannotBeReadIsRefusedWithItsReason) {
  const TemporaryFolder folder;
  WriteBytes(folder / "large", std::string(101, 'x'));
  fs::create_directory(folder / "folder");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", folder / "endless");
  const std::pair<const char*, std::errc> cases[] = {
      {"absent", std::errc::no_such_file_or_directory},
      {"large/below", std::errc::not_a_directory},
      {"large", std::errc::file_too_large},
      {"folder", std::errc::is_a_directory},
      {"pipe", std::errc::not_supported},
      {"endless", std::errc::not_supported},
  };
  for (const auto& [name, reason] : cases) {
    std::string bytes = "kept";
    EXPECT_EQ(ReadWholeFile(folder / name, 100, bytes), reason) << name;
    EXPECT_EQ(bytes, "kept") << name;
  }
}

TEST(WholeFile, AFailedWriteLeavesEverythingAsItWas) {
  const TemporaryFolder folder;
  WriteBytes(folder / "old", "old");
  WriteBytes(folder / "protected", "old");
  fs::permissions(folder / "protected", fs::perms::owner_read);
  fs::create_directory(folder / "folder");
  const auto before = folder.Names();
  const std::string longName(256, 'n');
  const std::pair<std::string, std::errc> cases[] = {
      {"protected", std::errc::permission_denied},
      {"folder", std::errc::is_a_directory},
      {"vanished/file", std::errc::no_such_file_or_directory},
      {"old/file", std::errc::not_a_directory},
      {longName, std::errc::filename_too_long},
  };
  for (const auto& [name, reason] : cases)
    EXPECT_EQ(ReplaceWholeFile(folder / name, "new"), reason) << name;
  {
    const FullDisk disk(1000);
    const std::string large(1'000'000, 'x');
    EXPECT_EQ(ReplaceWholeFile(folder / "old", large), std::errc::file_too_large);
    EXPECT_EQ(ReplaceWholeFile(folder / "new", large), std::errc::file_too_large);
  }
  EXPECT_EQ(folder.Names(), before);
  EXPECT_EQ(BytesOf(folder / "old"), "old");
  EXPECT_EQ(BytesOf(folder / "protected"), "old");
}

TEST(WholeFile, ALargeFileIsWrittenInPiecesAndStopsBetweenThem) {
  const TemporaryFolder folder;
  WriteBytes(folder / "file", "old");
  const std::string large(9'000'000, 'x');
  int asked = 0, stopAt = 0;
  const auto goesOn = [&] { return asked++ != stopAt; };
  for (; stopAt < 3; ++stopAt, asked = 0) {
    EXPECT_EQ(ReplaceWholeFile(folder / "file", large, goesOn), std::errc::operation_canceled);
    EXPECT_EQ(BytesOf(folder / "file"), "old");
  }
  EXPECT_FALSE(ReplaceWholeFile(folder / "file", large, goesOn));
  EXPECT_EQ(asked, 3);
  EXPECT_TRUE(BytesOf(folder / "file") == large);
  EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

TEST(WholeFile, LinksAndPermissionsSurvive) {
  const TemporaryFolder folder;
  WriteBytes(folder / "elsewhere/real", "old");
  fs::permissions(folder / "elsewhere/real", fs::perms{0640});
  fs::create_symlink("elsewhere/real", folder / "link");
  ASSERT_FALSE(ReplaceWholeFile(folder / "link", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(BytesOf(folder / "elsewhere/real"), "new");
  EXPECT_EQ(fs::status(folder / "elsewhere/real").permissions(), fs::perms{0640});

  // A link to a link to what is not there yet, and one that leads to itself.
  fs::create_symlink("elsewhere/next", folder / "dangling");
  fs::create_symlink("made", folder / "elsewhere/next");
  ASSERT_FALSE(ReplaceWholeFile(folder / "dangling", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "dangling") && fs::is_symlink(folder / "elsewhere/next"));
  EXPECT_EQ(BytesOf(folder / "elsewhere/made"), "new");
  fs::create_symlink("circle", folder / "circle");
  EXPECT_EQ(ReplaceWholeFile(folder / "circle", "new"), std::errc::too_many_symbolic_link_levels);
}

TEST(WholeFile, TheSameFileIsKnownByAnyOfItsPaths) {
  const TemporaryFolder folder;
  for (const char* name : {"a", "b"}) ASSERT_FALSE(ReplaceWholeFile(folder / name, "same bytes"));
  fs::create_symlink("a", folder / "link");
  fs::create_hard_link(folder / "a", folder / "twin");
  fs::create_symlink("none", folder / "broken");
  const auto a = IdentityOf(folder / "a");
  ASSERT_TRUE(a);
  for (const char* path : {"link", "twin", "./a"}) EXPECT_EQ(IdentityOf(folder / path), a) << path;
  EXPECT_NE(IdentityOf(folder / "b"), a);
  for (const char* path : {"none", "broken", "a/b"})
    EXPECT_FALSE(IdentityOf(folder / path)) << path;
}

TEST(WholeFile, OnlyWhatAKilledRunHasLeftIsRemoved) {
  const TemporaryFolder folder;
  for (const char* name : {"0", "1", "3", "5", "other"})
    WriteBytes(folder / (std::string(".graphize-save-") + name), name);
  // Still being written, something else, in use elsewhere.
  const int lock = open((folder / ".graphize-save-1").c_str(), O_WRONLY);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  fs::create_symlink(".graphize-save-other", folder / ".graphize-save-2");
  fs::create_hard_link(folder / ".graphize-save-3", folder / "linked");
  fs::create_directory(folder / ".graphize-save-4");
  ASSERT_FALSE(ReplaceWholeFile(folder / "file", "new"));
  close(lock);
  EXPECT_THAT(folder.Names(),
              ElementsAre(".graphize-save-1", ".graphize-save-2", ".graphize-save-3",
                          ".graphize-save-4", ".graphize-save-other", "file", "linked"));
  EXPECT_EQ(BytesOf(folder / ".graphize-save-1"), "1");
  EXPECT_EQ(BytesOf(folder / "file"), "new");
}

TEST(WholeFile, ANameInTheCurrentFolderNeedsNoFolder) {
  const TemporaryFolder folder;
  const fs::path old = fs::current_path();
  fs::current_path(folder.Path());
  const std::error_code failure = ReplaceWholeFile("bare", "new");
  fs::current_path(old);
  EXPECT_FALSE(failure) << failure.message();
  EXPECT_THAT(folder.Names(), ElementsAre("bare"));
}

}  // namespace
}  // namespace graphize::test
