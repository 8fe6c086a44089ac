#include <png.h>

#include <csetjmp>
#include <exception>
#include <vector>

#include "codecs/direct/direct_readers.h"
#include "codecs/direct/stored_png.h"
#include "codecs/samples.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

/// A file as the library reads it, and whether the library complained.
struct Source {
  StoredPng Bytes;
  bool IsOdd = false;
};

void ReadSource(png_structp png, png_bytep target, std::size_t size) {
  Source& source = *static_cast<Source*>(png_get_io_ptr(png));
  const bool wasStored = source.Bytes.IsStored();
  bool isRead = false;
  try {
    isRead = source.Bytes.Read(target, size);
  } catch (const std::exception&) {
    // No memory: nothing is thrown through the library.
  }
  if (!isRead) png_error(png, "end");
  if (source.Bytes.IsStored() == wasStored) return;
  png_set_crc_action(png, wasStored ? PNG_CRC_DEFAULT : PNG_CRC_QUIET_USE, PNG_CRC_NO_CHANGE);
  png_set_option(png, PNG_IGNORE_ADLER32, wasStored ? PNG_OPTION_OFF : PNG_OPTION_ON);
}

[[noreturn]] void LeaveLibrary(png_structp png, png_const_charp) {
  png_longjmp(png, 1);
}

void NoteWarning(png_structp png, png_const_charp) {
  static_cast<Source*>(png_get_error_ptr(png))->IsOdd = true;
}

/// The library's records; its errors leave `Run` by a jump, over nothing that must be destroyed.
class Reader {
 public:
  explicit Reader(Source& source)
      : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, &source, LeaveLibrary, NoteWarning)) {
    if (png_ == nullptr) return;
    info_ = png_create_info_struct(png_);
    png_set_read_fn(png_, &source, ReadSource);
  }
  ~Reader() {
    if (png_ != nullptr) png_destroy_read_struct(&png_, &info_, nullptr);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  png_structp Png() { return png_; }
  png_infop Info() { return info_; }

  /// False when the library found an error.
  template <class Work>
  bool Run(const Work& work) {
    if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) return false;
    work();
    return true;
  }

 private:
  png_structp png_;
  png_infop info_ = nullptr;
};

/// Rows of 16-bit samples, red, green, blue and opacity, highest byte first.
void ToPixels(const std::uint8_t* samples, int width, std::uint32_t* row) {
  const auto word = [&](int i) {
    return static_cast<std::uint16_t>(samples[2 * i] << 8 | samples[2 * i + 1]);
  };
  for (int x = 0; x < width; ++x) {
    const std::uint32_t clear = EightBits(static_cast<std::uint16_t>(~word(4 * x + 3)));
    row[x] =
        (PixelOf(EightBits(word(4 * x)), EightBits(word(4 * x + 1)), EightBits(word(4 * x + 2))) &
         0xffffffu) |
        (255u - clear) << 24;
  }
}

}  // namespace

std::optional<StoredPicture> ReadPng(std::string_view file, const MakeRaster& make,
                                     PictureOperation& operation) {
  Source source{StoredPng(file)};
  Reader reader(source);
  png_uint_32 width = 0, height = 0;
  int bits = 0, colours = 0, interlace = 0;
  if (!reader.Run([&] {
        png_read_info(reader.Png(), reader.Info());
        png_get_IHDR(reader.Png(), reader.Info(), &width, &height, &bits, &colours, &interlace,
                     nullptr, nullptr);
      }))
    return {};
  const bool hasClearColour = png_get_valid(reader.Png(), reader.Info(), PNG_INFO_tRNS) != 0;
  if (source.IsOdd || !DecodeRefusal(width, height).empty() ||
      (bits == 16 && interlace != PNG_INTERLACE_NONE) ||
      (colours == PNG_COLOR_TYPE_RGB && hasClearColour))
    return {};

  StoredPicture read{.Picture = make(static_cast<int>(width), static_cast<int>(height)),
                     .HasOpacity = (colours & PNG_COLOR_MASK_ALPHA) != 0 || hasClearColour};
  std::vector<std::uint8_t> samples(bits == 16 ? 8 * std::size_t{width} : 0);
  const bool done = reader.Run([&] {
    png_set_expand(reader.Png());
    png_set_gray_to_rgb(reader.Png());
    if (bits < 16) png_set_bgr(reader.Png());
    png_set_filler(reader.Png(), bits < 16 ? 0xff : 0xffff, PNG_FILLER_AFTER);
    const int passes = png_set_interlace_handling(reader.Png());
    png_read_update_info(reader.Png(), reader.Info());
    for (int pass = 0; pass < passes; ++pass)
      for (int y = 0; y < read.Picture.Height(); ++y) {
        if (operation.Stopped) return;
        std::uint32_t* row = read.Picture.Row(y);
        png_read_row(reader.Png(), bits < 16 ? reinterpret_cast<png_bytep>(row) : samples.data(),
                     nullptr);
        if (bits == 16) ToPixels(samples.data(), read.Picture.Width(), row);
        operation.Advance((pass + static_cast<double>(y) / height) / passes);
      }
    png_read_end(reader.Png(), nullptr);
  });
  if (!done || source.IsOdd || operation.Stopped) return {};
  return read;
}

}  // namespace graphize
