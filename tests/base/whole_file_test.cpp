#include "base/whole_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/temporary_folder.h"

namespace graphize {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::TemporaryFolder;
using test::WriteBytes;
using testing::ElementsAre;

/// While it lives no file can grow beyond `bytes`, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &old_); }

 private:
  rlimit old_{};
};

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

TEST(WholeFile, LinksAndPermissionsSurvive) {
  const TemporaryFolder folder;
  WriteBytes(folder / "elsewhere/real", "old");
  fs::permissions(folder / "elsewhere/real", fs::perms{0640});
  fs::create_symlink("elsewhere/real", folder / "link");
  ASSERT_FALSE(ReplaceWholeFile(folder / "link", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(BytesOf(folder / "elsewhere/real"), "new");
  EXPECT_EQ(fs::status(folder / "elsewhere/real").permissions(), fs::perms{0640});
}

TEST(WholeFile, LeftoversOfACrashedWriteAreNeitherUsedNorHarmed) {
  const TemporaryFolder folder;
  WriteBytes(folder / ".graphize-save-0", "someone's");
  ASSERT_FALSE(ReplaceWholeFile(folder / "file", "new"));
  EXPECT_EQ(BytesOf(folder / ".graphize-save-0"), "someone's");
  EXPECT_THAT(folder.Names(), ElementsAre(".graphize-save-0", "file"));
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
}  // namespace graphize
