// Whatever allocation or call to the disk fails in a batch run, it ends: each picture's table is
// whole or not there, and what was not done is told.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "batch/batch.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "faults/faults.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

constexpr int kPictures = 6;

/// A run over copies of one picture, with two workers.
class BatchFaults : public ::testing::TestWithParam<Call> {
 protected:
  explicit BatchFaults(int pictures = kPictures) : pictures_(pictures) {
    for (int i = 0; i < pictures_; ++i) {
      SavePicture(Picture(i), kBmpFormat, 0, PictureForRandomUser());
      words_.push_back(Picture(i).string());
    }
  }
  std::filesystem::path Picture(int i) const {
    return folder_ / ("page" + std::to_string(i) + ".bmp");
  }
  std::filesystem::path Tables() const { return folder_ / "tables"; }
  std::string TableOf(int i) const {
    const auto table = Tables() / ("page" + std::to_string(i) + ".dat");
    return std::filesystem::exists(table) ? BytesOf(table) : "";
  }
  void Begin() {
    std::filesystem::remove_all(Tables());
    err_.str(std::string(1 << 16, '\0'));  // what is told needs no memory
    err_.seekp(0);
  }
  int Run() { return RunBatch(words_, {out_, err_}); }
  std::string Told() const { return err_.str().c_str(); }
  bool IsTold(const std::string& words) const { return Told().find(words) != std::string::npos; }
  void LetThemFail();

 private:
  int pictures_;
  TemporaryFolder folder_;
  std::vector<std::string> words_ = {"digitize",
                                     "--origin=20,130:0,0",
                                     "--x-axis=180,130:8",
                                     "--y-axis=20,10:6",
                                     "--trace=21,70",
                                     "--black-white",
                                     "--jobs=2",
                                     "--output=" + (Tables() / "").string(),
                                     "--quiet"};
  std::ostringstream out_, err_;
};

void BatchFaults::LetThemFail() {
  Begin();
  ASSERT_EQ(Run(), 0) << Told();
  const std::string table = TableOf(0);
  ASSERT_GT(table.size(), 100u);
  Begin();
  const std::int64_t before = Allocations();
  Run();
  const bool isDisk = GetParam() != Call::Allocate;
  const std::int64_t calls = isDisk ? 2 * pictures_ : Allocations() - before;
  const char* asked = std::getenv("GRAPHIZE_FAULTS");
  const std::int64_t runs =
      std::min<std::int64_t>(asked != nullptr ? std::atoll(asked) : 300, calls);
  int refused = 0;
  for (std::int64_t i = 0; i < runs; ++i) {
    const auto number = static_cast<int>(1 + i * calls / runs);
    SCOPED_TRACE("call " + std::to_string(number) + " of " + std::to_string(calls));
    Begin();
    int status = 0;
    bool happened = false;
    {
      const Fault fault(GetParam(), number);
      status = Run();
      happened = fault.Happened();
    }
    const bool isWholeTold = IsTold("graphize digitize: out of memory");
    for (int page = 0; page < pictures_; ++page) {
      const std::string of = TableOf(page);
      EXPECT_TRUE(of == table || of.empty()) << "half a table";
      const bool isTold = isWholeTold || IsTold(Picture(page).string() + ": ");
      EXPECT_TRUE(of == table || (isTold && status != 0)) << "lost in silence: " << Told();
      refused += of == table ? 0 : 1;
    }
    EXPECT_TRUE(status == 0 || happened);
    EXPECT_EQ(status == 0, Told().empty()) << Told();
    if (HasFailure()) break;
  }
  EXPECT_GT(refused, 0);
  Begin();
  EXPECT_EQ(Run(), 0) << "later: " << Told();
}

TEST_P(BatchFaults, EachPictureIsDoneOrTold) {
  LetThemFail();
}

class OnePictureFaults : public BatchFaults {
 protected:
  OnePictureFaults() : BatchFaults(1) {}
};

TEST_P(OnePictureFaults, ItIsDoneOrTold) {
  LetThemFail();
}

std::string NameOf(const ::testing::TestParamInfo<Call>& each) {
  constexpr const char* kNames[] = {"Create", "Write", "Sync", "Rename", "Allocate"};
  return kNames[static_cast<int>(each.param)];
}

INSTANTIATE_TEST_SUITE_P(Calls, BatchFaults,
                         ::testing::Values(Call::Create, Call::Write, Call::Sync, Call::Rename,
                                           Call::Allocate),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Calls, OnePictureFaults, ::testing::Values(Call::Sync, Call::Allocate),
                         NameOf);

}  // namespace
}  // namespace graphize::test
