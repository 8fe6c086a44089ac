#include "data/data_file.h"

#include <algorithm>
#include <system_error>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "data/list_text.h"

namespace graphize {

namespace {

constexpr const char* kLineEnd = "\r\n";

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The name without its extension: the last dot and the letters and digits behind it.
std::string WithoutExtension(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return name;
  const std::string extension = name.substr(dot + 1);
  const bool plain = std::all_of(extension.begin(), extension.end(), IsLetterOrDigit);
  return plain ? name.substr(0, dot) : name;
}

}  // namespace

std::string PointLines(const PointStore& store, const NumberFormats& formats, bool decimalPoint,
                       std::span<const RowError> errors) {
  std::string lines;
  for (int i = 1; i <= store.ListCount; ++i) {
    if (i > 1) lines += kLineEnd;
    lines += PointLine(store.ListX[i], store.ListY[i], formats, decimalPoint);
    if (errors.empty()) continue;
    const RowError& error = errors[i - 1];
    lines += formats.Delimiter + PointLine(error.X, error.Y, formats, decimalPoint);
  }
  return lines;
}

std::string DataFileText(const std::string& title, const PointStore& store,
                         const NumberFormats& formats, bool decimalPoint,
                         std::span<const RowError> errors) {
  std::string text;
  if (!title.empty()) text = title + kLineEnd;
  if (store.ListCount > 0) text += PointLines(store, formats, decimalPoint, errors) + kLineEnd;
  return text;
}

void WriteDataFile(const std::filesystem::path& path, const std::string& text) {
  if (const std::error_code failure = ReplaceWholeFile(path, text))
    throw RunTimeError(failure.message());
}

std::string DataFileProposal(const std::string& imageFileName, const std::string& extension) {
  if (imageFileName.empty()) throw RunTimeError("There is no picture to name the file after.");
  return LowerCase(WithoutExtension(imageFileName)) + extension;
}

}  // namespace graphize
