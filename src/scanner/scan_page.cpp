#include "scanner/scan_page.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "base/translation.h"
#include "raster/size_limits.h"
#include "scanner/scanner.h"

namespace graphize {

namespace {

constexpr int kFirstRows = 1024;  // of a page whose height is not known

unsigned ColoursOf(ScanFrame::Band band) {
  switch (band) {
    case ScanFrame::Band::Red:
      return 1;
    case ScanFrame::Band::Green:
      return 2;
    case ScanFrame::Band::Blue:
      return 4;
    default:
      return 7;
  }
}

std::size_t LeastBytes(const ScanFrame& frame) {
  const std::size_t samples = frame.Is == ScanFrame::Band::Rgb ? 3 : 1;
  const auto width = static_cast<std::size_t>(frame.Width);
  return samples * (frame.Depth == 1 ? (width + 7) / 8 : width * (frame.Depth / 8));
}

std::string RefusalOf(const ScanFrame& frame) {
  if (frame.Depth != 1 && frame.Depth != 8 && frame.Depth != 16)
    return Tr("The scanner sends %1 bits per colour; only 1, 8 and 16 can be read.", frame.Depth);
  if (frame.Width < 1 || frame.Lines < -1 || frame.Lines == 0 || frame.BytesPerLine < 1 ||
      static_cast<std::size_t>(frame.BytesPerLine) < LeastBytes(frame))
    return Tr("The scanner announces a picture that cannot be.");
  return {};
}

/// Sample `index` of a line, 0 to 255. Of 1-bit samples `index` is the byte times 8 plus the bit
/// from its highest one.
template <int Depth>
std::uint32_t SampleAt(const std::uint8_t* line, int index) {
  if constexpr (Depth == 8) {
    return line[index];
  } else if constexpr (Depth == 16) {
    std::uint16_t sample = 0;
    std::memcpy(&sample, line + std::size_t{2} * index, sizeof sample);
    return (sample * 255u + 32767u) / 65535u;
  } else {
    return (line[index / 8] >> (7 - index % 8) & 1) != 0 ? 255u : 0u;
  }
}

template <int Depth>
void DecodeGrey(const std::uint8_t* line, int width, std::uint32_t* row) {
  for (int x = 0; x < width; ++x) {
    const std::uint32_t level = SampleAt<Depth>(line, x);
    row[x] = 0xff000000u | (Depth == 1 ? 255u - level : level) * 0x010101u;
  }
}

template <int Depth>
void DecodeRgb(const std::uint8_t* line, int width, std::uint32_t* row) {
  for (int x = 0; x < width; ++x) {
    const auto sample = [&](int colour) {
      const int index = Depth == 1 ? (x / 8 * 3 + colour) * 8 + x % 8 : x * 3 + colour;
      return SampleAt<Depth>(line, index);
    };
    row[x] = 0xff000000u | sample(0) << 16 | sample(1) << 8 | sample(2);
  }
}

template <int Depth>
void AddColour(const std::uint8_t* line, int width, int shift, std::uint32_t* row) {
  for (int x = 0; x < width; ++x) row[x] |= SampleAt<Depth>(line, x) << shift;
}

template <int Depth>
void Decode(const std::uint8_t* line, ScanFrame::Band band, int width, std::uint32_t* row) {
  switch (band) {
    case ScanFrame::Band::Grey:
      return DecodeGrey<Depth>(line, width, row);
    case ScanFrame::Band::Rgb:
      return DecodeRgb<Depth>(line, width, row);
    case ScanFrame::Band::Red:
      return AddColour<Depth>(line, width, 16, row);
    case ScanFrame::Band::Green:
      return AddColour<Depth>(line, width, 8, row);
    case ScanFrame::Band::Blue:
      return AddColour<Depth>(line, width, 0, row);
  }
}

}  // namespace

std::string ScanSizeRefusal(int width, int lines) {
  return SizeRefusal(std::max(width, 1), std::max(lines, 1));
}

void ScanPage::BeginFrame(const ScanFrame& frame) {
  if (const std::string refusal = RefusalOf(frame); !refusal.empty()) throw RunTimeError(refusal);
  if (const std::string refusal = ScanSizeRefusal(frame.Width, frame.Lines); !refusal.empty())
    throw PictureTooLarge(refusal);
  const bool isFirst = height_ < 0;
  if (!isFirst && (frame.Width != frame_.Width || (colours_ & ColoursOf(frame.Is)) != 0))
    throw RunTimeError("The scanner's passes over the page do not fit together.");
  frame_ = frame;
  colours_ |= ColoursOf(frame.Is);
  rows_ = 0;
  line_.clear();
  if (isFirst) raster_ = Raster(frame.Width, frame.Lines > 0 ? frame.Lines : kFirstRows);
}

void ScanPage::Take(const std::uint8_t* bytes, std::size_t count) {
  const auto length = static_cast<std::size_t>(frame_.BytesPerLine);
  while (count > 0) {
    if (line_.empty() && count >= length) {
      TakeLine(bytes);
      bytes += length;
      count -= length;
      continue;
    }
    const std::size_t piece = std::min(count, length - line_.size());
    line_.insert(line_.end(), bytes, bytes + piece);
    bytes += piece;
    count -= piece;
    if (line_.size() < length) return;
    TakeLine(line_.data());
    line_.clear();
  }
}

void ScanPage::TakeLine(const std::uint8_t* line) {
  const bool isFirst = height_ < 0;
  if (!isFirst && rows_ == height_)
    throw RunTimeError("The scanner's passes over the page do not fit together.");
  if (rows_ == raster_.Height()) Grow();
  std::uint32_t* row = raster_.Row(rows_);
  if (isFirst) std::fill_n(row, raster_.Width(), kBlackPixel);
  switch (frame_.Depth) {
    case 1:
      Decode<1>(line, frame_.Is, frame_.Width, row);
      break;
    case 8:
      Decode<8>(line, frame_.Is, frame_.Width, row);
      break;
    default:
      Decode<16>(line, frame_.Is, frame_.Width, row);
      break;
  }
  ++rows_;
}

void ScanPage::Grow() {
  if (const std::string refusal = ScanSizeRefusal(frame_.Width, rows_ + 1); !refusal.empty())
    throw PictureTooLarge(refusal);
  // Never more than a picture may have.
  const std::int64_t most =
      std::min<std::int64_t>(kMaxPictureSide, kMaxPicturePixels / frame_.Width);
  Raster larger(frame_.Width,
                static_cast<int>(std::min<std::int64_t>(most, 2 * std::int64_t{rows_})));
  std::copy_n(raster_.Pixels(), raster_.PixelCount(), larger.Pixels());
  raster_ = std::move(larger);
}

void ScanPage::EndFrame() {
  const int wanted = std::max(height_ < 0 ? frame_.Lines : height_, 1);
  if (rows_ < wanted)
    throw RunTimeError(rows_ == 0 ? Tr("The scanner sent no picture.")
                                  : Tr("The scanner sent only %1 of %2 lines.", rows_, wanted));
  height_ = rows_;
}

double ScanPage::PartTaken() const {
  const int lines = height_ < 0 ? frame_.Lines : height_;
  return lines < 1 ? -1 : std::min(1.0, static_cast<double>(rows_) / lines);
}

Raster ScanPage::Finish() {
  if (colours_ != 7) throw RunTimeError("The scanner did not send all colours of the page.");
  if (raster_.Height() == height_) return std::move(raster_);
  Raster page(raster_.Width(), height_);
  std::copy_n(raster_.Pixels(), page.PixelCount(), page.Pixels());
  raster_ = {};
  return page;
}

}  // namespace graphize
