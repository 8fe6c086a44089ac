#include <omp.h>
#include <tesseract/capi.h>

#include <array>
#include <memory>
#include <mutex>

#include "base/run_time_error.h"
#include "finding_axes/text_reader.h"

namespace graphize {

namespace {

struct Deleter {
  void operator()(TessBaseAPI* library) const {
    TessBaseAPIEnd(library);
    TessBaseAPIDelete(library);
  }
};
using Library = std::unique_ptr<TessBaseAPI, Deleter>;

Library Started() {
  Library library(TessBaseAPICreate());
  // It tells its own troubles to standard error otherwise.
  std::array<char, 16> name{"debug_file"}, value{"/dev/null"};
  std::array<char*, 1> names{name.data()}, values{value.data()};
  if (TessBaseAPIInit4(library.get(), nullptr, "eng", tesseract::OEM_LSTM_ONLY, nullptr, 0,
                       names.data(), values.data(), names.size(), 0) != 0)
    throw RunTimeError("The text recogniser has no English data (package tesseract-ocr-eng).");
  TessBaseAPISetPageSegMode(library.get(), tesseract::PSM_SINGLE_LINE);
  return library;
}

}  // namespace

std::string ReadTextLine(const TextLine& line) {
  static std::mutex one;
  const std::lock_guard lock(one);
  // Its threads take longer to meet than a label takes to read; their number it sets itself.
  omp_set_max_active_levels(0);
  static const Library library = Started();
  TessBaseAPISetImage(library.get(), line.Grey.data(), line.Width, line.Height, 1, line.Width);
  TessBaseAPISetSourceResolution(library.get(), 200);
  std::string text;
  if (char* read = TessBaseAPIGetUTF8Text(library.get())) {
    text = read;
    TessDeleteText(read);
  }
  TessBaseAPIClear(library.get());
  return text;
}

}  // namespace graphize

extern "C" __attribute__((visibility("default")))
const graphize::TextReaderModule GraphizeText = {graphize::ReadTextLine};
