#include "session/kept_raster.h"

#include <charconv>
#include <utility>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr std::string_view kHeader = "row,column,length,color\n",
                           kBitsHeader = "row,column,length\n";

struct Run {
  int Row = 0, Column = 0, Length = 0;
};

void PutRun(std::string& text, const Run& run) {
  text +=
      std::to_string(run.Row) + "," + std::to_string(run.Column) + "," + std::to_string(run.Length);
}

/// Takes runs from the text, one by one.
class RunReader {
 public:
  RunReader(std::string_view text, std::string_view header, int width, int height)
      : text_(text), width_(width), height_(height) {
    if (!text_.starts_with(header)) Fail("the header is another one");
    text_.remove_prefix(header.size());
    // Whoever draws a pixel again draws it in another color: more than that nobody does.
    constexpr std::size_t kMostTimes = 8, kAlways = 1'000'000;
    left_ =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kMostTimes + kAlways;
  }

  bool AtEnd() const { return text_.empty(); }
  Run Take() {
    ++line_;
    Run run;
    run.Row = Number(height_ - 1);
    Expect(',');
    run.Column = Number(width_ - 1);
    Expect(',');
    run.Length = Number(width_ - run.Column);
    if (run.Length == 0) Fail("a run without pixels");
    if (static_cast<std::size_t>(run.Length) > left_) Fail("there are too many pixels");
    left_ -= static_cast<std::size_t>(run.Length);
    return run;
  }
  std::uint32_t TakeColour() {
    Expect(',');
    Expect('#');
    const auto pixel = NumberOfHexText("ff" + std::string(text_.substr(0, 6)));
    if (!pixel) Fail("a color that is none");
    text_.remove_prefix(6);
    return *pixel;
  }
  void EndLine() {
    if (text_.starts_with('\r')) text_.remove_prefix(1);
    Expect('\n');
  }

 private:
  int Number(int most) {
    int value = -1;
    const auto [behind, fault] = std::from_chars(text_.data(), text_.data() + text_.size(), value);
    if (fault != std::errc() || value < 0 || value > most) Fail("a number that cannot be");
    text_.remove_prefix(static_cast<std::size_t>(behind - text_.data()));
    return value;
  }
  void Expect(char c) {
    if (!text_.starts_with(c)) Fail("the line is not as it has to be");
    text_.remove_prefix(1);
  }
  [[noreturn]] void Fail(const char* problem) const {
    throw RunTimeError(Tr("line %1: %2", line_, problem));
  }

  std::string_view text_;
  int width_, height_;
  int line_ = 1;
  std::size_t left_ = 0;  // pixels
};

}  // namespace

std::string RunsText(const OverdrawnPixels& pixels, int width) {
  std::string text(kHeader);
  const auto columns = static_cast<std::uint32_t>(width);
  for (std::size_t i = 0; i < pixels.size();) {
    const OverdrawnPixel& first = pixels[i];
    const std::uint32_t column = first.Index % columns;
    std::uint32_t length = 1;
    while (i + length < pixels.size() && column + length < columns &&
           pixels[i + length].Index == first.Index + length &&
           pixels[i + length].Pixel == first.Pixel)
      ++length;
    PutRun(text, {static_cast<int>(first.Index / columns), static_cast<int>(column),
                  static_cast<int>(length)});
    text += ",#" + HexText(first.Pixel).substr(2) + "\n";
    i += length;
  }
  return text;
}

OverdrawnPixels ReadRuns(std::string_view text, int width, int height) {
  RunReader reader(text, kHeader, width, height);
  OverdrawnPixels pixels;
  while (!reader.AtEnd()) {
    const Run run = reader.Take();
    const std::uint32_t pixel = reader.TakeColour();
    reader.EndLine();
    const auto first = static_cast<std::uint32_t>(run.Row) * static_cast<std::uint32_t>(width) +
                       static_cast<std::uint32_t>(run.Column);
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(run.Length); ++i)
      pixels.push_back({first + i, pixel});
  }
  return pixels;
}

std::string BitsText(const BitMap& bits) {
  std::string text(kBitsHeader);
  for (int y = 0; y < bits.Height(); ++y)
    for (int x = 0; x < bits.Width(); ++x) {
      if (bits.Row(y)[x >> 6] == 0) {
        x |= 63;
        continue;
      }
      int end = x;
      while (end < bits.Width() && bits.Get(end, y)) ++end;
      if (end == x) continue;
      PutRun(text, {y, x, end - x});
      text += '\n';
      x = end;
    }
  return text;
}

BitMap ReadBits(std::string_view text, int width, int height) {
  RunReader reader(text, kBitsHeader, width, height);
  BitMap bits(width, height);
  while (!reader.AtEnd()) {
    const Run run = reader.Take();
    reader.EndLine();
    for (int x = run.Column; x < run.Column + run.Length; ++x) bits.Set(x, run.Row);
  }
  return bits;
}

void PutEdited(PlotImage& image, Raster picture, OverdrawnPixels lastEdit) {
  // Back to before the edit, in the raster and in its log; then the edit again.
  for (auto pixel = lastEdit.rbegin(); pixel != lastEdit.rend(); ++pixel)
    std::swap(picture.Pixels()[pixel->Index], pixel->Pixel);
  SetPicture(image, std::move(picture));
  if (lastEdit.empty()) return;
  BeginEdit(image);
  const auto width = static_cast<std::uint32_t>(image.Width());
  for (const OverdrawnPixel& pixel : lastEdit)
    EditPixel(image, static_cast<int>(pixel.Index % width), static_cast<int>(pixel.Index / width),
              ColourOfPixel(pixel.Pixel));
}

}  // namespace graphize
