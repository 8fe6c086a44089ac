#include "codecs/file_format.h"

namespace graphize {

void GetFileFormat(std::string_view name, std::int16_t& format, std::int16_t& option) {
  struct Type {
    std::string_view Extension;
    FileFormat Format;
    std::int16_t Option;
  };
  static constexpr Type kTypes[] = {
      {"tif", kTifFormat, 1},  {"tga", kTgaFormat, 0}, {"bmp", kBmpFormat, 0},
      {"gif", kGifFormat, 0},  {"dib", kDibFormat, 0}, {"pcx", kPcxFormat, 0},
      {"jpg", kJpgFormat, 75}, {"png", kPngFormat, 0},
  };
  format = kNoFormat;
  option = 0;
  for (const Type& type : kTypes) {
    if (!name.ends_with(type.Extension)) continue;
    format = type.Format;
    option = type.Option;
  }
}

}  // namespace graphize
