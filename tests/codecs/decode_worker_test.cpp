#include "codecs/decode_worker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "base/memory_file.h"
#include "base/module.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "codecs/file_format.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"

// Pictures are decoded by a process that can do nothing else, and nothing in a file is seen.

namespace graphize {
namespace {

using test::PixelsOf;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

DecoderProgram Planted() {
  return {.Program = PLANTED_DECODER, .Module = "", .Seconds = 1};
}

struct Came {
  std::string Of;  // a message, "stopped" or "a picture" and its warning
  unsigned Layers = 0;
};

/// What comes of a decoder that does as it is told.
Came Told(const std::string& word, const PictureProgress& progress = {}) {
  auto worker = DecodeWorker::Start(Planted());
  const Descriptor file = NewMemoryFile();
  if (!worker || !FillMemoryFile(file, word)) return {"no worker"};
  Came came{.Layers = worker->Layers()};
  try {
    const auto loaded = worker->Decode("/tmp/name", file, word.size(), progress);
    came.Of = loaded ? "a picture " + loaded->Warning : "stopped";
    EXPECT_TRUE(!loaded || loaded->Picture.Row(0)[1] == kBlackPixel);
  } catch (const RunTimeError& error) {
    came.Of = error.what();
  } catch (const std::bad_alloc&) {
    came.Of = "no memory";
  }
  return came;
}

TEST(DecodeWorker, WhateverADecoderDoesIsOneMessage) {
  constexpr const char* kBroke = "broke the decoder";
  constexpr const char* kTooLong = "was ended after";
  constexpr const char* kDenied = "Permission denied";
  struct Case {
    const char* Word;
    const char* Expected;
    unsigned Layer = kApart;  // by which it is stopped
  };
  const Case cases[] = {{"nothing", "a picture "},
                        {"warn", "a picture The file is damaged."},
                        {"null", kBroke},
                        {"abort", kBroke},
                        {"leave", kBroke},
                        {"small", kBroke},
                        {"loop", kTooLong, kLimits},
                        {"sleep", kTooLong},
                        {"memory", "no memory", kLimits},
                        {"exec", kBroke, kFewCalls},
                        {"socket", kBroke, kFewCalls},
                        {"fork", kBroke, kFewCalls},
                        {"kill", kBroke, kFewCalls},
                        {"code", kDenied, kFewCalls},
                        {"open", kDenied, kNoFiles},
                        {"opened", kDenied, kNoFiles}};
  const unsigned layers = Told("nothing").Layers;
  for (const Case& c : cases) {
    if ((layers & c.Layer) == 0) continue;  // this system, or a sanitizer, refuses it
    EXPECT_THAT(Told(c.Word).Of, HasSubstr(c.Expected)) << c.Word;
  }
  const std::string text = Told("text").Of;
  EXPECT_THAT(text, AllOf(HasSubstr("3 x [2Jaaa"), Not(HasSubstr("\x1b")), Not(HasSubstr("\n"))));
  EXPECT_LT(text.size(), 2001u);
}

TEST(DecodeWorker, EscapeEndsItWhateverItDoes) {
  for (const char* word : {"loop", "sleep"}) {
    std::vector<int> percents;
    const PictureProgress stop = [&](int percent) {
      percents.push_back(percent);
      return percents.size() < 3;
    };
    EXPECT_EQ(Told(word, stop).Of, "stopped") << word;
    EXPECT_THAT(percents, testing::Each(AllOf(testing::Ge(0), testing::Le(100)))) << word;
  }
}

TEST(DecodeWorker, WithoutTheProgramPicturesAreStillDecoded) {
  EXPECT_FALSE(DecodeWorker::Start({.Program = "/nowhere/graphize-decode"}).has_value());
  auto other = DecodeWorker::Start({.Program = "/bin/true"});
  ASSERT_TRUE(other.has_value());
  EXPECT_EQ(other->Layers(), 0u);
  auto strange = DecodeWorker::Start({.Program = PathInProgram("libexec/graphize/graphize-decode"),
                                      .Module = "/nowhere/module.so"});
  ASSERT_TRUE(strange.has_value());
  EXPECT_EQ(strange->Layers(), 0u);
}

TEST(DecodeWorker, WhatTheSystemRefusesIsToldInOneSentence) {
  EXPECT_EQ(MissingProtection(kAllLayers), "");
  EXPECT_THAT(MissingProtection(0), HasSubstr("within this program"));
  EXPECT_THAT(MissingProtection(kApart | kNoFiles | kLimits),
              HasSubstr("does not limit its calls (seccomp)."));
  EXPECT_THAT(MissingProtection(kApart | kFewCalls), HasSubstr("its files (Landlock), its memory"));
  DecodePicture("a", *EncodePicture(kPngFormat, 0, Raster::Filled(4, 3, kBlackPixel)));
  EXPECT_EQ(MissingDecodeProtection(), MissingProtection(Told("nothing").Layers));
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

TEST(DecodeWorker, PixelsAndVerdictsAreThoseOfThisProcess) {
  const test::TemporaryFolder folder;
  std::vector<std::string> files;
  Raster picture(90, 70);
  for (std::size_t i = 0; i < picture.PixelCount(); ++i)
    picture.Pixels()[i] = 0xff000000u | static_cast<std::uint32_t>(i * i * 77);
  for (int format = kTifFormat; format <= kPngFormat; ++format)
    files.push_back(*EncodePicture(format, 80, picture));
  files.insert(files.end(), {test::WebP(), test::AnimatedWebP(), test::GifOnScreen(),
                             test::CmykJpg(), test::MakeTif(2, 1, 2, 6, "\1\2\3\4\5\6")});
  std::mt19937 random(testing::UnitTest::GetInstance()->random_seed());
  for (std::size_t i = 0; i < 60; ++i) {
    std::string bytes = files[i % files.size()];
    const std::size_t reach = i % 2 == 0 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size();
    if (i >= files.size()) bytes[random() % reach] ^= static_cast<char>(1 << random() % 8);
    const std::string name = i % files.size() == 1 ? "a.tga" : "a";
    const std::string here = VerdictOf([&] { return DecodePictureHere(name, bytes); });
    EXPECT_EQ(VerdictOf([&] { return DecodePicture(name, bytes); }), here) << i;
  }
}

TEST(DecodeWorker, ErrorsAreInTheUsersLanguage) {
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

TEST(DecodeWorker, ThreadsShareThoseStartedAhead) {
  PrepareToDecode(3, 17);  // fewer than there are in the end
  const std::string bytes = *EncodePicture(kPngFormat, 0, Raster::Filled(40, 30, kBlackPixel));
  std::vector<std::thread> threads;
  std::atomic<int> opened = 0;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 5; ++j) opened += DecodePicture("a", bytes)->Picture.Height() == 30;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(opened, 20);
}

}  // namespace
}  // namespace graphize
