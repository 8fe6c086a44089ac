#include <csetjmp>
#include <cstdio>

// The library's header needs <cstdio> before it.
#include <jpeglib.h>

#include "codecs/direct/direct_readers.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

struct Errors {
  jpeg_error_mgr Manager;  // the first member: the library knows no other
  std::jmp_buf Out;
  bool IsOdd = false;
};

struct Watch {
  jpeg_progress_mgr Manager;  // the first member
  PictureOperation* Operation;
};

Errors& ErrorsOf(j_common_ptr info) {
  return *reinterpret_cast<Errors*>(info->err);
}

/// The library's record; its errors leave `Run` by a jump, over nothing that must be destroyed.
class Reader {
 public:
  Reader(std::string_view file, PictureOperation& operation) {
    Info.err = jpeg_std_error(&errors_.Manager);
    errors_.Manager.error_exit = [](j_common_ptr info) { std::longjmp(ErrorsOf(info).Out, 1); };
    errors_.Manager.emit_message = [](j_common_ptr info, int level) {
      if (level < 0) ErrorsOf(info).IsOdd = true;
    };
    watch_.Operation = &operation;
    // A file of many scans says nothing of rows for a long time.
    watch_.Manager.progress_monitor = [](j_common_ptr info) {
      if (reinterpret_cast<Watch*>(info->progress)->Operation->Stopped) info->err->error_exit(info);
    };
    isMade_ = Run([&] {
      jpeg_create_decompress(&Info);
      Info.progress = &watch_.Manager;
      jpeg_mem_src(&Info, reinterpret_cast<const unsigned char*>(file.data()), file.size());
    });
  }
  ~Reader() {
    if (isMade_) jpeg_destroy_decompress(&Info);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  bool IsOdd() const { return !isMade_ || errors_.IsOdd; }

  /// False when the library found an error.
  template <class Work>
  bool Run(const Work& work) {
    if (setjmp(errors_.Out) != 0) return false;
    work();
    return true;
  }

  jpeg_decompress_struct Info{};

 private:
  Errors errors_{};
  Watch watch_{};
  bool isMade_ = false;
};

}  // namespace

std::optional<StoredPicture> ReadJpeg(std::string_view file, const MakeRaster& make,
                                      PictureOperation& operation) {
  Reader reader(file, operation);
  jpeg_decompress_struct& info = reader.Info;
  if (reader.IsOdd() || !reader.Run([&] { jpeg_read_header(&info, TRUE); }) || reader.IsOdd())
    return {};
  const bool isUsual = info.jpeg_color_space == JCS_GRAYSCALE ||
                       info.jpeg_color_space == JCS_YCbCr || info.jpeg_color_space == JCS_RGB;
  if (!isUsual || info.data_precision != 8 ||
      !DecodeRefusal(info.image_width, info.image_height).empty())
    return {};

  StoredPicture read{
      .Picture = make(static_cast<int>(info.image_width), static_cast<int>(info.image_height))};
  const bool done = reader.Run([&] {
    info.out_color_space = JCS_EXT_BGRA;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height && !operation.Stopped) {
      auto* row =
          reinterpret_cast<JSAMPROW>(read.Picture.Row(static_cast<int>(info.output_scanline)));
      jpeg_read_scanlines(&info, &row, 1);
      operation.Advance(static_cast<double>(info.output_scanline) / info.output_height);
    }
    if (!operation.Stopped) jpeg_finish_decompress(&info);
  });
  if (!done || reader.IsOdd() || operation.Stopped) return {};
  return read;
}

}  // namespace graphize
