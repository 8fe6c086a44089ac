#include "image_tools/neighbourhood_filters.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/parallel_rows.h"

namespace graphize {

namespace {

// Rows are read as bytes, four to a pixel, and all sums fit into 16 bits: plain loops over them
// become vector instructions.
using Byte = std::uint8_t;
using Sum = std::uint16_t;
constexpr std::ptrdiff_t kParts = 4;

/// A row of sums with `Reach` pixels more on both sides.
template <class Value>
class PaddedRow {
 public:
  PaddedRow(int width, int reach)
      : count_(kParts * width), reach_(kParts * reach), values_(count_ + 2 * reach_) {}

  Value* Data() { return values_.data() + reach_; }
  /// Repeats the outermost pixels on both sides.
  void Pad() {
    for (std::ptrdiff_t i = 0; i < reach_; ++i) {
      values_[i] = Data()[i % kParts];
      Data()[count_ + i] = Data()[count_ - kParts + i % kParts];
    }
  }

 private:
  std::ptrdiff_t count_, reach_;
  std::vector<Value> values_;
};

const Byte* BytesOf(const Raster& picture, int y) {
  return reinterpret_cast<const Byte*>(picture.Row(std::clamp(y, 0, picture.Height() - 1)));
}

Byte* BytesOf(Raster& picture, int y) {
  return reinterpret_cast<Byte*>(picture.Row(y));
}

/// Weights 1 2 1 of three rows; at most 4 * 255.
void AddRows3(const Byte* a, const Byte* b, const Byte* c, Sum* __restrict sums,
              std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) sums[i] = static_cast<Sum>(a[i] + 2 * b[i] + c[i]);
}

std::optional<Raster> Filled(const Raster& picture, PictureOperation& operation,
                             const auto& fillBand) {
  return RasterByRows(picture.Width(), picture.Height(), operation, fillBand);
}

/// The picture plus `weight` / 64 of its difference to the mean of 3 x 3 pixels.
std::optional<Raster> TowardsMean(const Raster& picture, int weight, PictureOperation& operation) {
  const std::ptrdiff_t count = kParts * picture.Width();
  const auto mix = [&](const Byte* row, const Sum* sums, Byte* __restrict out) {
    const auto w = static_cast<std::int16_t>(weight);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const int mean = (sums[i - kParts] + 2 * sums[i] + sums[i + kParts] + 8) >> 4;
      const auto change =
          static_cast<std::int16_t>((static_cast<std::int16_t>((mean - row[i]) * w) + 32) >> 6);
      out[i] = static_cast<Byte>(std::clamp(row[i] + change, 0, 255));
    }
  };
  return Filled(picture, operation, [&](Raster& result, int first, int end) {
    PaddedRow<Sum> sums(picture.Width(), 1);
    for (int y = first; y < end; ++y) {
      AddRows3(BytesOf(picture, y - 1), BytesOf(picture, y), BytesOf(picture, y + 1), sums.Data(),
               count);
      sums.Pad();
      mix(BytesOf(picture, y), sums.Data(), BytesOf(result, y));
    }
  });
}

}  // namespace

std::optional<Raster> Blur(const Raster& picture, PictureOperation& operation) {
  const std::ptrdiff_t count = kParts * picture.Width();
  const auto addRows = [count](const Byte* a, const Byte* b, const Byte* c, const Byte* d,
                               const Byte* e, Sum* __restrict sums) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
      sums[i] = static_cast<Sum>(a[i] + e[i] + 4 * (b[i] + d[i]) + 6 * c[i]);
  };
  const auto addPixels = [count](const Sum* s, Byte* __restrict out) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const auto sum = static_cast<Sum>(s[i - 2 * kParts] + s[i + 2 * kParts] +
                                        4 * (s[i - kParts] + s[i + kParts]) + 6 * s[i] + 128);
      out[i] = static_cast<Byte>(sum >> 8);
    }
  };
  return Filled(picture, operation, [&](Raster& result, int first, int end) {
    PaddedRow<Sum> sums(picture.Width(), 2);
    for (int y = first; y < end; ++y) {
      addRows(BytesOf(picture, y - 2), BytesOf(picture, y - 1), BytesOf(picture, y),
              BytesOf(picture, y + 1), BytesOf(picture, y + 2), sums.Data());
      sums.Pad();
      addPixels(sums.Data(), BytesOf(result, y));
    }
  });
}

std::optional<Raster> Soften(const Raster& picture, int amount, PictureOperation& operation) {
  return TowardsMean(picture, (64 * amount + 5) / 10, operation);
}

std::optional<Raster> Sharpen(const Raster& picture, int amount, PictureOperation& operation) {
  return TowardsMean(picture, -(128 * amount + 5) / 10, operation);
}

std::optional<Raster> DetectEdges(const Raster& picture, int amount, PictureOperation& operation) {
  const std::ptrdiff_t count = kParts * picture.Width();
  const auto gain = static_cast<Sum>(1 + amount);
  const auto subtractRows = [count](const Byte* a, const Byte* c, std::int16_t* __restrict out) {
    for (std::ptrdiff_t i = 0; i < count; ++i) out[i] = static_cast<std::int16_t>(c[i] - a[i]);
  };
  const auto addGradients = [count, gain](const Sum* sums, const std::int16_t* rises,
                                          Byte* __restrict out) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const auto x = static_cast<std::int16_t>(sums[i + kParts] - sums[i - kParts]);
      const auto y =
          static_cast<std::int16_t>(rises[i - kParts] + 2 * rises[i] + rises[i + kParts]);
      const auto length = static_cast<Sum>(std::max<int>(x, -x) + std::max<int>(y, -y));
      out[i] = static_cast<Byte>(std::min<Sum>(static_cast<Sum>(length * gain) / 24, 255));
    }
  };
  return Filled(picture, operation, [&](Raster& result, int first, int end) {
    PaddedRow<Sum> sums(picture.Width(), 1);
    PaddedRow<std::int16_t> rises(picture.Width(), 1);
    for (int y = first; y < end; ++y) {
      AddRows3(BytesOf(picture, y - 1), BytesOf(picture, y), BytesOf(picture, y + 1), sums.Data(),
               count);
      subtractRows(BytesOf(picture, y - 1), BytesOf(picture, y + 1), rises.Data());
      sums.Pad();
      rises.Pad();
      addGradients(sums.Data(), rises.Data(), BytesOf(result, y));
      std::for_each_n(result.Row(y), result.Width(), [](auto& pixel) { pixel |= kBlackPixel; });
    }
  });
}

}  // namespace graphize
