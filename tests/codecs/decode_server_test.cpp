#include "codecs/decode_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include "base/memory_file.h"
#include "base/module.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "codecs/file_format.h"
#include "support/picture_bytes.h"
#include "support/planted_decoder.h"
#include "support/temporary_folder.h"

// Pictures are decoded by a process that can do nothing else, and nothing in a file is seen.

namespace graphize {
namespace {

using test::LayersOfTheKernel;
using test::PixelsOf;
using test::Planted;
using test::Script;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Came {
  std::string Of;  // a message, "stopped" or "a picture" and its warning
  unsigned Layers = 0;
  bool IsSpent = false;  // the server
};

/// What comes of a decoder that does as it is told.
Came Told(const std::string& word, const DecoderProgram& program = Planted(),
          const PictureProgress& progress = {}) {
  DecodeServer server(program);
  const Descriptor file = NewMemoryFile();
  Came came{.Layers = server.Layers(program.LongestStart).value_or(0)};
  if (came.Layers == 0 || !FillMemoryFile(file, word)) return {"no server"};
  try {
    const Decoded decoded = server.Decode("/tmp/name", file, word.size(), progress);
    const Raster& picture = decoded.Picture.Picture;
    switch (decoded.End) {
      case DecodeEnd::Picture:
        came.Of = "a picture " + decoded.Picture.Warning;
        EXPECT_EQ(*(picture.Row(picture.Height()) - 1) << 8, 0u);
        break;
      case DecodeEnd::Left:
        came.Of = "left";
        break;
      case DecodeEnd::Stopped:
        came.Of = "stopped";
        break;
      case DecodeEnd::NoProcess:
        came.Of = "no process";
    }
    EXPECT_EQ(server.Layers({}), came.Layers) << "what a try was confined by";
  } catch (const RunTimeError& error) {
    came.Of = error.what();
  } catch (const std::bad_alloc&) {
    came.Of = "no memory";
  }
  came.IsSpent = server.IsSpent();
  return came;
}

TEST(DecodeServer, WhateverADecoderDoesIsOneMessage) {
  constexpr const char* kBroke = "broke the decoder";
  constexpr const char* kTooLong = "was ended after";
  constexpr const char* kDenied = "Permission denied";
  struct Case {
    const char* Word;
    const char* Expected;
    unsigned Layer = kApart;  // which alone stops it
  };
  const Case cases[] = {{"nothing", "a picture "},
                        {"warn", "a picture The file is damaged."},
                        {"null", kBroke},
                        {"abort", kBroke},
                        {"leave", kBroke},
                        {"small", kBroke},
                        {"large", kBroke},
                        {"sparse", "a picture "},
                        {"too large", kBroke},
                        {"wraps", kBroke},
                        {"negative", kBroke},
                        {"left", kBroke},
                        {"speak", "Bad file descriptor"},
                        {"lie", "a picture "},
                        {"terminate", "from outside (signal 15)"},
                        {"killed", "short of memory, or by somebody"},
                        {"loop", kTooLong, kLimits},
                        {"sleep", kTooLong},
                        {"memory", "no memory", kLimits},
                        {"exec", kBroke, kFewCalls},
                        {"socket", kBroke, kFewCalls},
                        {"fork", kBroke, kFewCalls},
                        {"clone3", "not implemented", kFewCalls},
                        {"kill", kBroke, kFewCalls},
                        {"code", kDenied, kFewCalls},
                        {"protect", kDenied, kFewCalls},
                        {"open", kDenied, kFewCalls},
                        {"open", kDenied, kNoFiles},
                        {"opened", kDenied, kNoFiles}};
  const unsigned layers = LayersOfTheKernel();
  EXPECT_EQ(Told("nothing").Layers, layers);
  for (const Case& c : cases) {
    if ((layers & c.Layer) == 0) continue;
    const Came came = Told(c.Word);
    EXPECT_THAT(came.Of, HasSubstr(c.Expected)) << c.Word;
    EXPECT_EQ(came.IsSpent, came.Of.starts_with("Decoding it was ended") ||
                                came.Of.find(kBroke) != std::string::npos)
        << c.Word << ": the next attempt is not to know what this one has learnt";
    const unsigned alone = c.Layer == kApart ? layers : c.Layer;
    EXPECT_THAT(Told(c.Word, Planted(alone)).Of, HasSubstr(c.Expected)) << c.Word << " alone";
  }
  const std::string text = Told("text").Of;
  EXPECT_THAT(text, AllOf(HasSubstr("3 x [2Jaaa"), Not(HasSubstr("\x1b")), Not(HasSubstr("\n"))));
  EXPECT_LT(text.size(), 2001u);
}

TEST(DecodeServer, ADecoderHasAllCoresOfTheProgram) {
  cpu_set_t cores;
  ASSERT_EQ(sched_getaffinity(0, sizeof cores, &cores), 0);
  EXPECT_EQ(Told("cores").Of, std::to_string(CPU_COUNT(&cores)) + " cores");
}

TEST(DecodeServer, WhatItsParentLacksTakesNoLayerAway) {
  const test::TemporaryFolder folder;
  const DecoderProgram limited = Script(
      folder, "ulimit -t 50; ulimit -n 8; ulimit -f 3000000; exec " PLANTED_DECODER " \"$@\"");
  EXPECT_EQ(Told("nothing", limited).Layers, LayersOfTheKernel());

  int kept[3];
  for (int stream = 0; stream < 3; ++stream) {
    kept[stream] = fcntl(stream, F_DUPFD_CLOEXEC, 100);
    close(stream);
  }
  const Came came = Told("nothing");
  for (int stream = 0; stream < 3; ++stream) {
    dup2(kept[stream], stream);
    close(kept[stream]);
  }
  EXPECT_EQ(came.Of, "a picture ");
  EXPECT_EQ(came.Layers, LayersOfTheKernel());
}

TEST(DecodeServer, EndsWithTheProgram) {
  PrepareToDecode(DecodersReady::None);  // of others, no process ends here
  prctl(PR_SET_CHILD_SUBREAPER, 1);      // so that their ends are told here
  for (const std::string word : {"loop", "ignore", "close"}) {
    if (word == "close" && (LayersOfTheKernel() & kFewCalls) == 0) continue;
    const pid_t program = fork();
    if (program == 0) {
      Told(word, Planted(), [](int percent) { return percent == 0 || raise(SIGKILL) == 0; });
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(program, &status, 0), program);
    EXPECT_TRUE(WIFSIGNALED(status));
    for (int process = 0; process < 2; ++process) {
      ASSERT_GT(waitpid(-1, &status, 0), 0) << "the server and its decoder";
      EXPECT_TRUE(WIFEXITED(status) || WTERMSIG(status) == SIGKILL) << "not by the limit of time";
    }
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0);
}

/// Whether `work` is true in a process that is given neither threads nor processes.
bool IsTrueWithoutThreads(const std::function<bool()>& work) {
  const pid_t process = fork();
  if (process == 0) {
    const rlimit none = {};
    static_cast<void>(setresuid(65534, 65534, 65534));  // the limit is none for root
    setrlimit(RLIMIT_NPROC, &none);
    try {
      std::thread([] {}).join();
      _exit(2);
    } catch (const std::system_error&) {
      _exit(work() ? 0 : 1);
    }
  }
  int status = 0;
  return waitpid(process, &status, 0) == process && status == 0;
}

TEST(DecodeServer, WithoutThreadsOrMemoryFilesPicturesAreStillDecoded) {
  const Raster picture = Raster::Filled(4000, 1000, kBlackPixel);
  for (const int format : {kTifFormat, kBmpFormat}) {
    PrepareToDecode(DecodersReady::None);  // they decode for this process alone
    const std::string bytes = *EncodePicture(format, 0, picture);
    const auto isDecoded = [&] {
      const auto loaded = DecodePicture("a", bytes, [](int) { return true; });
      return loaded && PixelsOf(loaded->Picture) == PixelsOf(picture);
    };
    EXPECT_TRUE(IsTrueWithoutThreads(isDecoded)) << format;
    const test::FullDisk none(0);
    EXPECT_TRUE(isDecoded()) << format;
    EXPECT_THAT(MissingDecodeProtection(), HasSubstr("within this program"));
  }
  const std::string bytes = *EncodePicture(kBmpFormat, 0, picture);
  EXPECT_TRUE(DecodePicture("a", bytes));
  EXPECT_EQ(MissingDecodeProtection(), MissingProtection(LayersOfTheKernel()));
  EXPECT_THAT(DecodedWithinProgram(), HasSubstr("within this program")) << "what was is told";
  const test::FullDisk none(0);
  EXPECT_THROW(DecodePicture("a", bytes), RunTimeError) << "a file may have brought it about";
}

TEST(DecodeServer, EscapeEndsItWhateverItDoes) {
  for (const char* word : {"loop", "sleep"}) {
    std::vector<int> percents;
    const PictureProgress stop = [&](int percent) {
      percents.push_back(percent);
      return percents.size() < 3;
    };
    EXPECT_EQ(Told(word, Planted(), stop).Of, "stopped") << word;
    EXPECT_THAT(percents, testing::Each(AllOf(testing::Ge(0), testing::Le(100)))) << word;
  }
}

TEST(DecodeServer, WithoutTheProgramPicturesAreStillDecoded) {
  const auto layers = [](const DecoderProgram& program) {
    return DecodeServer(program).Layers(program.LongestStart);
  };
  EXPECT_EQ(layers({.Program = "/nowhere/graphize-decode"}), 0u);
  EXPECT_EQ(layers({.Program = "/bin/true"}), 0u);
  EXPECT_THROW(layers({.Program = PathInProgram("libexec/graphize/graphize-decode"),
                       .Module = "/nowhere/module.so"}),
               RunTimeError);
}

TEST(DecodeServer, WhatTheSystemRefusesIsToldInOneSentence) {
  EXPECT_EQ(MissingProtection(kAllLayers), "");
  EXPECT_THAT(MissingProtection(0), HasSubstr("within this program"));
  EXPECT_THAT(MissingProtection(kApart | kNoFiles | kLimits),
              HasSubstr("does not limit its calls (seccomp)."));
  EXPECT_THAT(MissingProtection(kApart | kFewCalls), HasSubstr("its files (Landlock), its memory"));
  DecodePicture("a", *EncodePicture(kPngFormat, 0, Raster::Filled(4, 3, kBlackPixel)));
  EXPECT_EQ(MissingDecodeProtection(), MissingProtection(LayersOfTheKernel()));
}

DecoderProgram Direct() {
  return {.Program = PathInProgram("libexec/graphize/graphize-decode"),
          .Module = ModulePath("graphize_direct.so"),
          .LeavesFiles = true};
}

/// A PNG whose last rows have been lost.
std::string CutPng() {
  const std::string png =
      *EncodePicture(kPngFormat, 0, test::MakeRaster(3, 1, {kBlackPixel, kWhitePixel, 7}));
  return png.substr(0, png.size() - 20);
}

TEST(DecodeServer, OnlyUsualPicturesAreReadWithoutTheLibrary) {
  DecoderProgram leaves = Planted();
  leaves.LeavesFiles = true;
  EXPECT_EQ(Told("left", leaves).Of, "left");
  const Raster picture = Raster::Filled(9, 7, kBlackPixel);
  for (int format = kTifFormat; format <= kPngFormat; ++format) {
    const bool isLeft = format == kTgaFormat || format == kGifFormat || format == kPcxFormat;
    EXPECT_EQ(Told(*EncodePicture(format, 80, picture), Direct()).Of,
              isLeft ? "left" : "a picture ")
        << format;
  }
  for (const std::string& file : {test::CmykJpg(), test::WebP(), CutPng()})
    EXPECT_EQ(Told(file, Direct()).Of, "left");
  EXPECT_THAT(Told("no picture", Direct()).Of, HasSubstr("not a picture"));
}

TEST(DecodeServer, EscapeEndsItInEitherDecoder) {
  PrepareToDecode(DecodersReady::None);  // so that the second one is waited for, too
  bool isStopped = true;
  for (int looks = 1; isStopped; ++looks) {
    std::vector<int> percents;
    const auto loaded = DecodePicture("a", test::CmykJpg(), [&](int percent) {
      percents.push_back(percent);
      return static_cast<int>(percents.size()) < looks;
    });
    isStopped = !loaded;
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    EXPECT_TRUE(!loaded || loaded->Picture.Height() == 8);
  }
}

/// The picture's pixels or the error, and the warning.
template <class Decode>
std::string VerdictOf(const Decode& decode) {
  try {
    const auto loaded = decode();
    std::string verdict = std::to_string(loaded->Picture.Width()) + ' ' + loaded->Warning;
    for (const std::uint32_t pixel : PixelsOf(loaded->Picture)) verdict += test::LowFirst(pixel, 4);
    return verdict + test::LowFirst(loaded->FileChecksum, 4);
  } catch (const RunTimeError& error) {
    return error.what();
  }
}

TEST(DecodeServer, PixelsAndVerdictsAreThoseOfThisProcess) {
  const test::TemporaryFolder folder;
  std::vector<std::string> files;
  Raster picture(90, 70);
  for (std::size_t i = 0; i < picture.PixelCount(); ++i)
    picture.Pixels()[i] = 0xff000000u | static_cast<std::uint32_t>(i * i * 77);
  for (int format = kTifFormat; format <= kPngFormat; ++format)
    files.push_back(*EncodePicture(format, 80, picture));
  files.insert(files.end(), {test::WebP(), test::AnimatedWebP(), test::GifOnScreen(),
                             test::CmykJpg(), test::MakeTif(2, 1, 2, 6, "\1\2\3\4\5\6"), CutPng()});
  std::mt19937 random(GTEST_FLAG_GET(random_seed));
  const char* asked = std::getenv("GRAPHIZE_MUTATIONS");
  const std::size_t count = asked == nullptr ? 60 : std::stoul(asked);
  for (std::size_t i = 0; i < count; ++i) {
    std::string bytes = files[i % files.size()];
    const std::size_t reach = i % 2 == 0 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size();
    if (i >= files.size()) bytes[random() % reach] ^= static_cast<char>(1 << random() % 8);
    const std::string name = i % files.size() == 1 ? "a.tga" : "a";
    const std::string here = VerdictOf([&] { return DecodePictureHere(name, bytes); });
    EXPECT_EQ(VerdictOf([&] { return DecodePicture(name, bytes); }), here) << i;
    EXPECT_EQ(VerdictOf([&] { return DecodePicture("a.GIF", bytes); }),
              VerdictOf([&] { return DecodePictureHere("a.GIF", bytes); }))
        << i << " by the library alone";
  }
}

TEST(DecodeServer, ErrorsAreInTheUsersLanguage) {
  SetTranslator([](const char* text, long long) -> std::string {
    return std::string_view(text).starts_with("The picture is too large: it is %1 x %2 pixels, and")
               ? "Zu gross: %3 < %1"
               : "";
  });
  std::string bmp = test::MakeBmp({}, Raster::Filled(1, 1, kBlackPixel));
  bmp.replace(18, 8, test::LowFirst(2'000'000, 4) + test::LowFirst(7, 4));
  EXPECT_THAT(VerdictOf([&] { return DecodePicture("a", bmp); }),
              HasSubstr("Zu gross: 1000000 < 2000000"));
  SetTranslator(nullptr);
}

TEST(DecodeServer, ThreadsShareIt) {
  const std::string bytes = *EncodePicture(kPngFormat, 0, Raster::Filled(40, 30, kBlackPixel));
  PrepareToDecode(DecodersReady::None);
  for (const DecodersReady ready : {DecodersReady::Usual, DecodersReady::None}) {
    std::vector<std::thread> threads;
    std::atomic<int> opened = 0;
    for (int i = 0; i < 4; ++i)
      threads.emplace_back([&] {
        for (int j = 0; j < 5; ++j) opened += DecodePicture("a", bytes)->Picture.Height() == 30;
      });
    PrepareToDecode(ready);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(opened, 20);
  }
}

}  // namespace
}  // namespace graphize
