#include "image_tools/scaling.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "image_tools/nearest_colour.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr int kParts = 4;        // components of a pixel
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

/// Scales rows of one width to another, with kMiddleBits of fraction.
void ScaleRow(const std::uint32_t* row, const Taps& taps, std::uint16_t* out) {
  const int width = static_cast<int>(taps.First.size());
  for (int x = 0; x < width; ++x, out += kParts) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(row + taps.First[x]);
    const std::int16_t* weights = taps.Of(x);
    int sums[kParts] = {};
    for (int tap = 0; tap < taps.Count; ++tap)
      for (int part = 0; part < kParts; ++part)
        sums[part] += weights[tap] * bytes[kParts * tap + part];
    for (int part = 0; part < kParts; ++part)
      out[part] = static_cast<std::uint16_t>(sums[part] >> (kWeightBits - kMiddleBits));
  }
}

/// The rows of a picture scaled to a width, the last few kept.
class ScaledRows {
 public:
  ScaledRows(const Raster& picture, const Taps& across, int kept)
      : picture_(picture), across_(across), rows_(kept) {}

  const std::uint16_t* At(int y) {
    Row& row = rows_[static_cast<std::size_t>(y) % rows_.size()];
    if (row.Y != y) {
      row.Y = y;
      row.Values.resize(kParts * across_.First.size());
      ScaleRow(picture_.Row(y), across_, row.Values.data());
    }
    return row.Values.data();
  }

 private:
  struct Row {
    int Y = -1;
    std::vector<std::uint16_t> Values;
  };
  const Raster& picture_;
  const Taps& across_;
  std::vector<Row> rows_;
};

void AddRow(const std::uint16_t* row, int weight, std::vector<int>& sums) {
  int* const out = sums.data();
  const std::size_t count = sums.size();
  for (std::size_t i = 0; i < count; ++i) out[i] += weight * row[i];
}

/// A half becomes the darker side.
void RoundRow(const std::vector<int>& sums, std::uint32_t* row) {
  constexpr int kBits = kWeightBits + kMiddleBits;
  auto* const bytes = reinterpret_cast<std::uint8_t*>(row);
  const std::size_t count = sums.size();
  for (std::size_t i = 0; i < count; ++i)
    bytes[i] = static_cast<std::uint8_t>((sums[i] + (1 << (kBits - 1)) - 1) >> kBits);
}

}  // namespace

std::optional<Raster> Resize(const Raster& picture, int width, int height,
                             const ColourTable* colours, PictureOperation& operation) {
  Raster result(width, height);
  const Taps across = TapsOf(picture.Width(), width), down = TapsOf(picture.Height(), height);
  const bool done = ParallelRows(width, height, operation, [&](int first, int end) {
    ScaledRows rows(picture, across, down.Count);
    std::vector<int> sums(static_cast<std::size_t>(kParts) * width);
    std::optional<NearestColour> nearest;
    if (colours != nullptr) nearest.emplace(colours->Colours());
    for (int y = first; y < end; ++y) {
      std::ranges::fill(sums, 0);
      for (int tap = 0; tap < down.Count; ++tap)
        if (const int weight = down.Of(y)[tap]; weight != 0)
          AddRow(rows.At(down.First[y] + tap), weight, sums);
      RoundRow(sums, result.Row(y));
      if (nearest) nearest->Replace(result.Row(y), width);
    }
  });
  if (!done) return std::nullopt;
  return result;
}

std::optional<Raster> Stretch(const Raster& picture, int width, int height,
                              PictureOperation& operation) {
  // The pixel under the middle of each.
  const auto under = [](int position, int to, int from) {
    return static_cast<int>((2 * static_cast<std::int64_t>(position) + 1) * from / (2 * to));
  };
  std::vector<int> columns(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) columns[x] = under(x, width, picture.Width());
  Raster result(width, height);
  const bool done = ParallelRows(width, height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint32_t* row = picture.Row(under(y, height, picture.Height()));
      std::ranges::transform(columns, result.Row(y), [row](int column) { return row[column]; });
    }
  });
  if (!done) return std::nullopt;
  return result;
}

}  // namespace graphize
