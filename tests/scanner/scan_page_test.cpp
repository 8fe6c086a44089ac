#include "scanner/scan_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <functional>
#include <string>

#include "scanner/scanner.h"

namespace graphize {
namespace {

using Band = ScanFrame::Band;
using Bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;
using testing::HasSubstr;

struct Pass {
  ScanFrame Frame;
  Bytes Data;
};

Raster Assemble(const std::vector<Pass>& passes, std::size_t piece = 1000) {
  ScanPage page;
  for (const auto& [frame, data] : passes) {
    page.BeginFrame(frame);
    for (std::size_t at = 0; at < data.size(); at += piece)
      page.Take(data.data() + at, std::min(piece, data.size() - at));
    page.EndFrame();
  }
  return page.Finish();
}

std::vector<std::uint32_t> PixelsOf(const Raster& raster) {
  std::vector<std::uint32_t> pixels(raster.Pixels(), raster.Pixels() + raster.PixelCount());
  for (std::uint32_t& pixel : pixels) {
    EXPECT_EQ(pixel >> 24, 0xffu);
    pixel &= 0xffffffu;
  }
  return pixels;
}

std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const PictureTooLarge& error) {
    return std::string("too large: ") + error.what();
  } catch (const RunTimeError& error) {
    return error.what();
  }
  return "no error";
}

/// 16-bit samples in this machine's order.
Bytes Words(std::initializer_list<std::uint16_t> words) {
  Bytes bytes;
  for (const std::uint16_t word : words)
    for (const auto byte : std::bit_cast<std::array<std::uint8_t, 2>>(word)) bytes.push_back(byte);
  return bytes;
}

TEST(ScanPage, EveryKindOfPassBecomesThePicture) {
  struct Case {
    const char* name;
    std::vector<Pass> passes;
    std::vector<std::uint32_t> pixels;
  };
  const Case cases[] = {
      {"grey", {{{Band::Grey, 2, 2, 2, 8}, {0, 255, 7, 128}}}, {0, 0xffffff, 0x070707, 0x808080}},
      {"colour", {{{Band::Rgb, 2, 1, 6, 8}, {1, 2, 3, 4, 5, 6}}}, {0x010203, 0x040506}},
      {"padding",
       {{{Band::Rgb, 1, 2, 5, 8}, {1, 2, 3, 99, 99, 4, 5, 6, 99, 99}}},
       {0x010203, 0x040506}},
      {"lineart: 1 is black",
       {{{Band::Grey, 10, 1, 2, 1}, {0b10000001, 0b01111111}}},
       {0, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0, 0xffffff, 0}},
      {"1-bit colour: 1 is full",
       {{{Band::Rgb, 9, 1, 6, 1}, {0x80, 0x40, 0x20, 0x80, 0x80, 0}}},
       {0xff0000, 0xff00, 0xff, 0, 0, 0, 0, 0, 0xffff00}},
      {"1-bit passes",
       {{{Band::Green, 2, 1, 1, 1}, {0x40}},
        {{Band::Red, 2, 1, 1, 1}, {0xc0}},
        {{Band::Blue, 2, 1, 1, 1}, {0}}},
       {0xff0000, 0xffff00}},
      {"16 bits round to the nearest of 8",
       {{{Band::Grey, 6, 1, 12, 16}, Words({0, 128, 129, 0x8080, 65406, 65407})}},
       {0, 0, 0x010101, 0x808080, 0xfefefe, 0xffffff}},
      {"passes in any order, the later ones of unknown height",
       {{{Band::Blue, 2, 1, 2, 8}, {3, 6}},
        {{Band::Red, 2, -1, 2, 8}, {1, 4}},
        {{Band::Green, 2, -1, 3, 8}, {2, 5, 99}}},
       {0x010203, 0x040506}},
      {"more lines than announced",
       {{{Band::Grey, 1, 1, 1, 8}, {1, 2, 3}}},
       {0x010101, 0x020202, 0x030303}},
      {"a line that is not whole", {{{Band::Grey, 2, -1, 2, 8}, {1, 2, 3}}}, {0x010101, 0x020202}},
  };
  for (const Case& c : cases)
    for (const std::size_t piece : {1, 2, 3, 1000})
      EXPECT_EQ(PixelsOf(Assemble(c.passes, piece)), c.pixels) << c.name << ", pieces of " << piece;
}

TEST(ScanPage, UnknownHeightGrows) {
  Bytes data(5000 * 3);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i / 3 % 251);
  const Raster page = Assemble({{{Band::Grey, 3, -1, 3, 8}, data}}, 777);
  ASSERT_EQ(page.Height(), 5000);
  for (int y = 0; y < 5000; ++y)
    ASSERT_EQ(page.Row(y)[2], 0xff000000u | static_cast<unsigned>(y % 251) * 0x010101u) << y;
}

TEST(ScanPage, WhatIsNoPageIsRefused) {
  const ScanFrame grey = {Band::Grey, 2, 2, 2, 8};
  const auto changed = [&](auto change) {
    ScanFrame frame = grey;
    change(frame);
    return std::vector<Pass>{{frame, {1, 2, 3, 4}}};
  };
  const std::pair<std::vector<Pass>, const char*> cases[] = {
      {{{grey, {1, 2, 3}}}, "only 1 of 2 lines"},
      {{{grey, {}}}, "sent no picture"},
      {changed([](ScanFrame& f) { f.Lines = -1, f.Width = 9, f.BytesPerLine = 9; }), "no picture"},
      {changed([](ScanFrame& f) { f.Depth = 12; }), "12 bits per colour"},
      {changed([](ScanFrame& f) { f.BytesPerLine = 1; }), "cannot be"},
      {changed([](ScanFrame& f) { f.Depth = 16; }), "cannot be"},
      {changed([](ScanFrame& f) { f.Is = Band::Rgb; }), "cannot be"},
      {changed([](ScanFrame& f) { f.Width = 0; }), "cannot be"},
      {changed([](ScanFrame& f) { f.Lines = 0; }), "cannot be"},
      {changed([](ScanFrame& f) { f.Lines = 40000; }), "too large: "},
      {changed([](ScanFrame& f) { f.Width = f.BytesPerLine = 32768; }), "too large: "},
      {changed([](ScanFrame& f) { f.Width = f.BytesPerLine = 20000, f.Lines = 20000; }),
       "too large: "},
      {{{{Band::Red, 1, 1, 1, 8}, {1}}, {{Band::Blue, 1, 1, 1, 8}, {1}}}, "all colours"},
      {{{{Band::Red, 1, 1, 1, 8}, {1}}, {{Band::Red, 1, 1, 1, 8}, {1}}}, "fit together"},
      {{{{Band::Red, 1, 1, 1, 8}, {1}}, {{Band::Blue, 2, 1, 2, 8}, {1, 1}}}, "fit together"},
      {{{{Band::Red, 1, 1, 1, 8}, {1}}, {{Band::Blue, 1, 1, 1, 8}, {1, 1}}}, "fit together"},
      {{{{Band::Red, 1, 2, 1, 8}, {1, 1}}, {{Band::Blue, 1, 1, 1, 8}, {1}}}, "only 1 of 2"},
  };
  for (const auto& [passes, words] : cases)
    EXPECT_THAT(ErrorOf([&, &passes = passes] { Assemble(passes); }), HasSubstr(words));

  ScanPage endless;
  endless.BeginFrame({Band::Grey, 1, -1, 1, 8});
  const Bytes line(1000);
  EXPECT_THAT(ErrorOf([&] {
                for (int i = 0; i < 33; ++i) endless.Take(line.data(), line.size());
              }),
              HasSubstr("too large: "));
}

TEST(ScanPage, ThePartThatCame) {
  ScanPage page;
  page.BeginFrame({Band::Red, 1, 4, 1, 8});
  EXPECT_EQ(page.PartTaken(), 0);
  const Bytes line(4);
  page.Take(line.data(), 3);
  EXPECT_EQ(page.PartTaken(), 0.75);
  page.Take(line.data(), 4);
  EXPECT_EQ(page.PartTaken(), 1);
  page.EndFrame();
  page.BeginFrame({Band::Green, 1, -1, 1, 8});
  EXPECT_EQ(page.PartTaken(), 0) << "the first pass tells the height";
  ScanPage hand;
  hand.BeginFrame({Band::Grey, 1, -1, 1, 8});
  EXPECT_EQ(hand.PartTaken(), -1);
}

}  // namespace
}  // namespace graphize
