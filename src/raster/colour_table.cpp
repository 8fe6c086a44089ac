#include "raster/colour_table.h"

#include <algorithm>
#include <atomic>
#include <mutex>

#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr std::size_t kMostColours = 256;

bool IsGrey(std::uint32_t pixel) {
  return pixel == (kBlackPixel | (pixel & 0xffu) * 0x010101u);
}

constexpr std::size_t kBlock = 32;
bool AreAllGrey(const std::uint32_t* pixels) {
  unsigned coloured = 0;
  for (std::size_t i = 0; i < kBlock; ++i) coloured |= static_cast<unsigned>(!IsGrey(pixels[i]));
  return coloured == 0;
}

}  // namespace

std::optional<ColourTable> ColourTable::Of(const Raster& picture, PictureOperation& operation) {
  ColourTable table;
  std::mutex mutex;
  std::atomic<bool> areFew = true;
  const bool counted =
      ParallelRows(picture.Width(), picture.Height(), operation, [&](int first, int end) {
        if (!areFew) return;
        ColourTable band;
        const std::size_t count =
            static_cast<std::size_t>(end - first) * static_cast<std::size_t>(picture.Width());
        const bool fits = band.AddAll(picture.Row(first), count);
        const std::lock_guard lock(mutex);
        if (!fits || !table.AddAll(band.colours_.data(), band.colours_.size())) areFew = false;
      });
  if (!counted || !areFew) return {};
  std::ranges::sort(table.colours_);
  for (std::size_t i = 0; i < table.colours_.size(); ++i)
    table.indexes_[table.SlotOf(table.colours_[i])] = static_cast<std::uint8_t>(i);
  return table;
}

bool ColourTable::AreGrey() const {
  return std::ranges::all_of(colours_, IsGrey);
}

bool ColourTable::AreBlackAndWhite() const {
  return std::ranges::all_of(
      colours_, [](std::uint32_t pixel) { return pixel == kBlackPixel || pixel == kWhitePixel; });
}

bool ColourTable::Add(std::uint32_t pixel) {
  std::uint32_t& slot = slots_[SlotOf(pixel)];
  if (slot != 0) return true;
  if (colours_.size() == kMostColours) return false;
  slot = pixel;
  colours_.push_back(pixel);
  return true;
}

bool ColourTable::AddAll(const std::uint32_t* pixels, std::size_t count) {
  std::array<bool, 256> greys{};  // of whole blocks, which most pages are made of
  std::uint32_t previous = 0;
  for (std::size_t i = 0; i < count;) {
    if (i + kBlock <= count && AreAllGrey(pixels + i)) {
      for (const std::size_t end = i + kBlock; i < end; ++i) greys[pixels[i] & 0xffu] = true;
      continue;
    }
    for (const std::size_t end = std::min(i + kBlock, count); i < end; ++i) {
      if (pixels[i] == previous) continue;
      previous = pixels[i];
      if (!Add(previous)) return false;
    }
  }
  for (std::uint32_t grey = 0; grey < 256; ++grey)
    if (greys[grey] && !Add(kBlackPixel | grey * 0x010101u)) return false;
  return true;
}

std::size_t ColourTable::SlotOf(std::uint32_t pixel) const {
  // Knuth's multiplicative hash; at most a quarter of the slots is taken.
  std::size_t slot = (pixel * 2654435761u) >> 22;
  while (slots_[slot] != 0 && slots_[slot] != pixel) slot = (slot + 1) % kSlots;
  return slot;
}

}  // namespace graphize
