#include "codecs/decoders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <string>
#include <thread>

#include "base/module.h"
#include "base/run_time_error.h"
#include "support/planted_decoder.h"
#include "support/temporary_folder.h"

// Processes are started before there is a picture for them.

namespace graphize {
namespace {

using test::LayersOfTheKernel;
using test::Planted;
using test::Script;
using testing::AllOf;
using testing::HasSubstr;

TEST(Decoders, AProgramThatDoesNotStartIsWaitedForOnceAndUntilEscape) {
  const test::TemporaryFolder folder;
  DecoderProgram program = Script(folder, "exec sleep 1000");
  program.LongestStart = std::chrono::milliseconds(300);
  Decoders decoders(program, program);
  decoders.StartAhead(1, kManyPictures);
  EXPECT_FALSE(decoders.Layers().has_value());
  int looks = 0;
  EXPECT_TRUE(decoders.Take(DecoderKind::Direct, [&](int) { return ++looks < 2; }).WasStopped);
  const PictureProgress look = [&](int) { return ++looks > 0; };
  for (int picture = 0; picture < 2; ++picture) {
    const auto taken = decoders.Take(DecoderKind::Direct, look);
    EXPECT_FALSE(taken.Worker || taken.WasStopped);
    EXPECT_EQ(looks > 0, picture == 0);
    EXPECT_EQ(decoders.Layers(), 0u);
    decoders.StartNext(DecoderKind::Direct);
    looks = 0;
  }
}

TEST(Decoders, TheLibraryIsStartedAheadWhereItIsNeeded) {
  Decoders decoders(Planted(), Planted());
  const auto ahead = [&] {
    return std::pair(decoders.CountAhead(DecoderKind::Direct),
                     decoders.CountAhead(DecoderKind::Library));
  };
  const auto decode = [&](DecoderKind kind) {
    decoders.CountPicture();
    EXPECT_TRUE(decoders.Take(kind, {}).Worker.has_value());
    decoders.StartNext(kind);
    return ahead();
  };
  using Ahead = std::pair<std::size_t, std::size_t>;
  decoders.StartAhead(2, 5);
  EXPECT_EQ(ahead(), Ahead(2, 0));
  EXPECT_EQ(decode(DecoderKind::Direct), Ahead(2, 0));
  EXPECT_EQ(decode(DecoderKind::Library), Ahead(2, 2));
  EXPECT_EQ(decode(DecoderKind::Direct), Ahead(2, 2));
  EXPECT_EQ(decode(DecoderKind::Direct), Ahead(1, 1)) << "as many as are to come";
  decoders.StartAhead(2, 100);
  EXPECT_EQ(decode(DecoderKind::Library), Ahead(2, 2));
  EXPECT_EQ(decode(DecoderKind::Direct), Ahead(2, 2)) << "types take turns";
  for (int picture = 0; picture < 20; ++picture) decode(DecoderKind::Direct);
  EXPECT_EQ(ahead(), Ahead(2, 0)) << "given back";
  decoders.StartAhead(1, kManyPictures);
  EXPECT_EQ(ahead(), Ahead(1, 1));
  EXPECT_EQ(decode(DecoderKind::Direct), Ahead(1, 1));
}

TEST(Decoders, OneThatDiesWhileItWaitsIsReplaced) {
  const test::TemporaryFolder folder;
  DecoderProgram program =
      Script(folder, "if mkdir '" + (folder / "died").string() + "'; then echo $$ > '" +
                         (folder / "id").string() +
                         "'; printf '\\017' >&3; exit; fi; exec " PLANTED_DECODER " \"$@\"");
  program.Module = std::to_string(kApart | kLimits);
  Decoders decoders(program, Planted());
  decoders.StartAhead(1, 100);
  while (!decoders.Layers()) std::this_thread::yield();
  EXPECT_EQ(decoders.Layers(), kAllLayers);
  siginfo_t end{};
  const auto id = static_cast<id_t>(std::stoi(test::BytesOf(folder / "id")));
  ASSERT_EQ(waitid(P_PID, id, &end, WEXITED | WNOWAIT), 0);
  decoders.StartNext(DecoderKind::Direct);
  ASSERT_NE(waitid(P_PID, id, &end, WEXITED | WNOWAIT), 0) << "not buried";
  ASSERT_EQ(decoders.CountAhead(DecoderKind::Direct), 1u);
  while (decoders.Layers() == kAllLayers) std::this_thread::yield();
  EXPECT_EQ(decoders.Layers(), LayersOfTheKernel() & (kApart | kLimits));
}

TEST(Decoders, AProgramThatIsNotCompleteIsNotToldAsASystemThatAllowsNoProcess) {
  DecoderProgram direct = Planted();
  direct.Program = PathInProgram("libexec/graphize/graphize-decode");
  direct.Module = "/nowhere/module.so";
  Decoders decoders(direct, Planted());
  decoders.StartAhead(1, 100);
  EXPECT_TRUE(decoders.Take(DecoderKind::Library, {}).Worker.has_value());
  while (decoders.CountAhead(DecoderKind::Direct) > 0 && !HasFailure())
    EXPECT_EQ(decoders.Layers(), LayersOfTheKernel());
  try {
    decoders.Take(DecoderKind::Direct, {});
    ADD_FAILURE();
  } catch (const RunTimeError& error) {
    EXPECT_THAT(error.what(), AllOf(HasSubstr("not complete"), HasSubstr("/nowhere/module.so")));
  }
  EXPECT_EQ(decoders.Layers(), LayersOfTheKernel());
}

}  // namespace
}  // namespace graphize
