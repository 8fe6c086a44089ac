#include "image_tools/scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "image_tools/nearest_colour.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr int kPixelParts = 4;   // components of a pixel
constexpr int kWeightBits = 14;  // weights of one pixel add up to 1 << kWeightBits
constexpr int kMiddleBits = 6;   // fraction kept between the two directions

/// For each position of a scaled row or column the positions that it is made of: `Count` of them
/// from `First` on, each with its weight.
struct Taps {
  int Count = 1;
  std::vector<int> First;
  std::vector<std::int16_t> Weights;  // Count for each position

  const std::int16_t* Of(int position) const {
    return Weights.data() + static_cast<std::size_t>(position) * Count;
  }
};

/// Weights `share(i)` of the part up to tap i, rising from 0 to 1, as whole numbers whose sum is
/// exact.
void AddWeights(Taps& taps, int first, const auto& shareUpTo) {
  taps.First.push_back(first);
  int given = 0;
  for (int i = 1; i <= taps.Count; ++i) {
    const double share = i == taps.Count ? 1 : std::clamp(shareUpTo(i), 0.0, 1.0);
    const int upTo = static_cast<int>(std::lround(share * (1 << kWeightBits)));
    taps.Weights.push_back(static_cast<std::int16_t>(upTo - given));
    given = upTo;
  }
}

Taps TapsOf(int from, int to) {
  const double ratio = static_cast<double>(from) / to;
  Taps taps;
  if (to < from) {
    taps.Count = std::min(static_cast<int>(std::ceil(ratio)) + 1, from);
    for (int i = 0; i < to; ++i) {
      const double start = i * ratio;
      const int first = std::min(static_cast<int>(start), from - taps.Count);
      AddWeights(taps, first, [&](int tap) { return (first + tap - start) / ratio; });
    }
  } else {
    taps.Count = std::min(2, from);
    for (int i = 0; i < to; ++i) {
      const double middle = std::clamp((i + 0.5) * ratio - 0.5, 0.0, from - 1.0);
      const int first = std::min(static_cast<int>(middle), from - taps.Count);
      AddWeights(taps, first, [&](int) { return 1 - (middle - first); });
    }
  }
  return taps;
}

/// Scales rows of one width to another, with kMiddleBits of fraction; `kCount` taps, 0: any number.
template <int kParts, int kCount>
void ScaleRow(const std::uint8_t* row, const Taps& taps, std::uint16_t* out) {
  const int width = static_cast<int>(taps.First.size());
  const int count = kCount > 0 ? kCount : taps.Count;
  const std::int16_t* weights = taps.Weights.data();
  for (int x = 0; x < width; ++x, out += kParts, weights += count) {
    const std::uint8_t* bytes = row + static_cast<std::ptrdiff_t>(kParts) * taps.First[x];
    int sums[kParts] = {};
    for (int tap = 0; tap < count; ++tap)
      for (int part = 0; part < kParts; ++part)
        sums[part] += weights[tap] * bytes[kParts * tap + part];
    for (int part = 0; part < kParts; ++part)
      out[part] = static_cast<std::uint16_t>(sums[part] >> (kWeightBits - kMiddleBits));
  }
}

/// The rows of a picture scaled to a width, the last few kept. With one part for each pixel, its
/// blue one stands for all.
template <int kParts>
class ScaledRows {
 public:
  ScaledRows(const Raster& picture, const Taps& across, int kept)
      : picture_(picture), across_(across), rows_(kept) {}

  const std::uint16_t* At(int y) {
    Row& row = rows_[static_cast<std::size_t>(y) % rows_.size()];
    if (row.Y != y) {
      row.Y = y;
      row.Values.resize(kParts * across_.First.size());
      const std::uint8_t* bytes = BytesOf(picture_.Row(y));
      if (across_.Count == 2)
        ScaleRow<kParts, 2>(bytes, across_, row.Values.data());
      else
        ScaleRow<kParts, 0>(bytes, across_, row.Values.data());
    }
    return row.Values.data();
  }

 private:
  struct Row {
    int Y = -1;
    std::vector<std::uint16_t> Values;
  };

  const std::uint8_t* BytesOf(const std::uint32_t* row) {
    if constexpr (kParts == kPixelParts) return reinterpret_cast<const std::uint8_t*>(row);
    bytes_.resize(static_cast<std::size_t>(picture_.Width()));
    std::transform(row, row + picture_.Width(), bytes_.begin(),
                   [](std::uint32_t pixel) { return static_cast<std::uint8_t>(pixel); });
    return bytes_.data();
  }

  const Raster& picture_;
  const Taps& across_;
  std::vector<Row> rows_;
  std::vector<std::uint8_t> bytes_;
};

constexpr int kBits = kWeightBits + kMiddleBits;

/// A half becomes the darker side.
std::uint8_t Rounded(int sum) {
  return static_cast<std::uint8_t>((sum + (1 << (kBits - 1)) - 1) >> kBits);
}

/// One scaled row: the weighted sum of the rows that it is made of, rounded.
template <int kParts>
class RowMixer {
 public:
  RowMixer(const Raster& picture, const Taps& across, const Taps& down)
      : rows_(picture, across, down.Count), down_(down), sums_(kParts * across.First.size()) {}

  void Mix(int y, std::uint8_t* out) {
    const std::int16_t* weights = down_.Of(y);
    const int first = down_.First[static_cast<std::size_t>(y)];
    const std::size_t count = sums_.size();
    if (down_.Count == 2 && weights[0] != 0 && weights[1] != 0) {
      const std::uint16_t *a = rows_.At(first), *b = rows_.At(first + 1);
      const auto wa = static_cast<std::uint16_t>(weights[0]),
                 wb = static_cast<std::uint16_t>(weights[1]);
      for (std::size_t i = 0; i < count; ++i) out[i] = Rounded(wa * a[i] + wb * b[i]);
      return;
    }
    std::ranges::fill(sums_, 0);
    for (int tap = 0; tap < down_.Count; ++tap) {
      const int weight = weights[tap];
      if (weight == 0) continue;
      const std::uint16_t* row = rows_.At(first + tap);
      for (std::size_t i = 0; i < count; ++i) sums_[i] += weight * row[i];
    }
    for (std::size_t i = 0; i < count; ++i) out[i] = Rounded(sums_[i]);
  }

 private:
  ScaledRows<kParts> rows_;
  const Taps& down_;
  std::vector<int> sums_;
};

/// Rows of greys, which are one part each; `nearest` is the colour of each grey.
void ResizeGreyRows(const Raster& picture, const Taps& across, const Taps& down,
                    const std::array<std::uint32_t, 256>& nearest, int first, int end,
                    Raster& result) {
  RowMixer<1> mixer(picture, across, down);
  std::vector<std::uint8_t> greys(static_cast<std::size_t>(result.Width()));
  for (int y = first; y < end; ++y) {
    mixer.Mix(y, greys.data());
    std::ranges::transform(greys, result.Row(y), [&](std::uint8_t grey) { return nearest[grey]; });
  }
}

void ResizeRows(const Raster& picture, const Taps& across, const Taps& down,
                const ColourTable* colours, int first, int end, Raster& result,
                const PictureOperation& operation) {
  RowMixer<kPixelParts> mixer(picture, across, down);
  std::optional<NearestColour> nearest;
  if (colours != nullptr) nearest.emplace(colours->Colours());
  for (int y = first; y < end; ++y) {
    // A band of noise would take a tenth of a second: all colours are tried for each pixel.
    if (nearest && operation.Stopped) return;
    mixer.Mix(y, reinterpret_cast<std::uint8_t*>(result.Row(y)));
    if (nearest) nearest->Replace(result.Row(y), result.Width());
  }
}

}  // namespace

std::optional<Raster> Resize(const Raster& picture, int width, int height,
                             const ColourTable* colours, PictureOperation& operation) {
  const Taps across = TapsOf(picture.Width(), width), down = TapsOf(picture.Height(), height);
  const bool areGrey = colours != nullptr && colours->AreGrey();
  std::array<std::uint32_t, 256> nearestOfGrey{};
  if (areGrey) {
    NearestColour nearest(colours->Colours());
    for (std::uint32_t grey = 0; grey < 256; ++grey)
      nearestOfGrey[grey] = nearest.Of(kBlackPixel | grey * 0x010101u);
  }
  return RasterByRows(width, height, operation, [&](Raster& result, int first, int end) {
    if (areGrey)
      ResizeGreyRows(picture, across, down, nearestOfGrey, first, end, result);
    else
      ResizeRows(picture, across, down, colours, first, end, result, operation);
  });
}

std::optional<Raster> Stretch(const Raster& picture, int width, int height,
                              PictureOperation& operation) {
  // The pixel under the middle of each.
  const auto under = [](int position, int to, int from) {
    return static_cast<int>((2 * static_cast<std::int64_t>(position) + 1) * from / (2 * to));
  };
  std::vector<int> columns(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) columns[x] = under(x, width, picture.Width());
  return RasterByRows(width, height, operation, [&](Raster& result, int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint32_t* row = picture.Row(under(y, height, picture.Height()));
      std::ranges::transform(columns, result.Row(y), [row](int column) { return row[column]; });
    }
  });
}

std::optional<Raster> CutOut(const Raster& picture, int left, int top, int width, int height,
                             PictureOperation& operation) {
  return RasterByRows(width, height, operation, [&](Raster& part, int first, int end) {
    for (int y = first; y < end; ++y) std::copy_n(picture.Row(top + y) + left, width, part.Row(y));
  });
}

}  // namespace graphize
