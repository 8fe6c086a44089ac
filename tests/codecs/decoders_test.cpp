#include "codecs/decoders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "base/memory_file.h"
#include "base/module.h"
#include "base/run_time_error.h"
#include "support/planted_decoder.h"
#include "support/temporary_folder.h"

// Servers are started once, and again where one has ended.

namespace graphize {
namespace {

using test::LayersOfTheKernel;
using test::Planted;
using test::Script;
using testing::AllOf;
using testing::HasSubstr;

Decoded Decode(Decoders& decoders, DecoderKind kind = DecoderKind::Direct,
               const PictureProgress& progress = {}, const std::string& word = "nothing") {
  const Descriptor file = NewMemoryFile();
  FillMemoryFile(file, word);
  return decoders.Decode(kind, "a", file, word.size(), progress);
}

TEST(Decoders, AProgramThatDoesNotStartIsWaitedForOnceAndUntilEscape) {
  const test::TemporaryFolder folder;
  for (const char* begins : {"", "printf '\\017' >&3;"}) {
    DecoderProgram program = Script(folder, std::string(begins) + "exec sleep 1000");
    program.LongestStart = std::chrono::milliseconds(300);
    Decoders decoders(program, program);
    decoders.StartAhead(DecoderKind::Direct);
    int looks = 0;
    const PictureProgress escape = [&](int) { return ++looks < 2; };
    EXPECT_EQ(Decode(decoders, DecoderKind::Direct, escape).End, DecodeEnd::Stopped);
    const PictureProgress look = [&](int) { return ++looks > 0; };
    for (int picture = 0; picture < 2; ++picture) {
      EXPECT_EQ(Decode(decoders, DecoderKind::Direct, look).End, DecodeEnd::NoProcess);
      EXPECT_EQ(looks > 0, picture == 0);
      EXPECT_EQ(decoders.Layers(), 0u);
      looks = 0;
    }
  }
}

TEST(Decoders, AServerStaysForAllPicturesUntilItIsEnded) {
  const test::TemporaryFolder folder;
  const std::string started = (folder / "started").string();
  const DecoderProgram program =
      Script(folder, "echo >> '" + started + "'; exec " PLANTED_DECODER " \"$@\"");
  const auto starts = [&] { return test::BytesOf(started).size(); };
  Decoders decoders(program, Planted());
  EXPECT_FALSE(decoders.Layers().has_value());
  decoders.StartAhead(DecoderKind::Direct);
  while (!decoders.Layers()) std::this_thread::yield();
  EXPECT_EQ(decoders.Layers(), LayersOfTheKernel()) << "before the first picture";
  for (int picture = 0; picture < 3; ++picture) EXPECT_EQ(Decode(decoders).End, DecodeEnd::Picture);
  EXPECT_EQ(starts(), 1u);
  decoders.EndAll();
  decoders.StartAhead(DecoderKind::Library);
  EXPECT_EQ(starts(), 1u);
  EXPECT_EQ(Decode(decoders).End, DecodeEnd::Picture);
  EXPECT_EQ(starts(), 2u);
}

TEST(Decoders, AServerThatHasDiedIsReplaced) {
  const test::TemporaryFolder folder;
  DecoderProgram program = Script(
      folder, "if mkdir '" + (folder / "died").string() +
                  "' 2>&-; then printf '\\017' >&3; exit; fi; exec " PLANTED_DECODER " \"$@\"");
  program.Module = std::to_string(kApart | kLimits);
  Decoders decoders(program, Planted());
  decoders.StartAhead(DecoderKind::Direct);
  while (!decoders.Layers()) std::this_thread::yield();
  EXPECT_EQ(decoders.Layers(), kAllLayers);
  EXPECT_EQ(Decode(decoders).End, DecodeEnd::Picture);
  EXPECT_EQ(decoders.Layers(), LayersOfTheKernel() & (kApart | kLimits));
}

TEST(Decoders, AFileThatBreaksItsDecoderGetsNoneWithinTheProgram) {
  for (const char* breaks : {"abort", "negative"}) {
    const test::TemporaryFolder folder;
    const DecoderProgram program =
        Script(folder, "if mkdir '" + (folder / "started").string() +
                           "' 2>&-; then exec " PLANTED_DECODER " \"$@\"; fi");
    Decoders decoders(program, Planted());
    const auto reason = [&](const std::string& word) -> std::string {
      try {
        Decode(decoders, DecoderKind::Direct, {}, word);
      } catch (const RunTimeError& error) {
        return error.what();
      }
      return "none";
    };
    EXPECT_EQ(reason("nothing"), "none");
    EXPECT_THAT(reason("text"), HasSubstr("3 x"));
    EXPECT_EQ(reason("nothing"), "none") << "a file that is refused breaks nothing";
    EXPECT_THAT(reason(breaks), HasSubstr("broke the decoder"));
    EXPECT_THAT(reason("nothing"), HasSubstr("no process")) << "the server has gone, too";
  }
}

TEST(Decoders, AProgramThatIsNotCompleteIsNotToldAsASystemThatAllowsNoProcess) {
  DecoderProgram direct = Planted();
  direct.Program = PathInProgram("libexec/graphize/graphize-decode");
  direct.Module = "/nowhere/module.so";
  Decoders decoders(direct, Planted());
  EXPECT_EQ(Decode(decoders, DecoderKind::Library).End, DecodeEnd::Picture);
  decoders.StartAhead(DecoderKind::Direct);
  for (int look = 0; look < 100; ++look) {
    EXPECT_EQ(decoders.Layers(), LayersOfTheKernel());
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  try {
    Decode(decoders);
    ADD_FAILURE();
  } catch (const RunTimeError& error) {
    EXPECT_THAT(error.what(), AllOf(HasSubstr("not complete"), HasSubstr("/nowhere/module.so")));
  }
  EXPECT_EQ(decoders.Layers(), LayersOfTheKernel());
}

}  // namespace
}  // namespace graphize
