#include "codecs/file_format.h"

#include <gtest/gtest.h>

#include <utility>

namespace graphize {
namespace {

TEST(FileFormat, TheLastThreeCharactersInSmallLettersDecide) {
  struct Case {
    const char* Name;
    int Format, Option;
  };
  const Case cases[] = {
      {"plot.tif", 1, 1},    {"plot.tga", 2, 0},  {"plot.bmp", 3, 0},  {"plot.gif", 4, 0},
      {"plot.dib", 5, 0},    {"plot.pcx", 6, 0},  {"plot.jpg", 7, 75}, {"tif", 1, 1},
      {"my.bmp.jpg", 7, 75}, {"nodotgif", 4, 0},  {"plot.TIF", 0, 0},  {"plot.Jpg", 0, 0},
      {"plot.jpeg", 0, 0},   {"plot.tiff", 0, 0}, {"plot.png", 8, 0},  {"plot.jpg ", 0, 0},
      {"if", 0, 0},          {"", 0, 0},
  };
  for (const Case& c : cases) {
    std::int16_t format = -1, option = -1;
    GetFileFormat(c.Name, format, option);
    EXPECT_EQ(std::pair(int{format}, int{option}), std::pair(c.Format, c.Option)) << c.Name;
  }
}

}  // namespace
}  // namespace graphize
