#include "raster/colour_table.h"

#include <algorithm>

namespace graphize {

std::optional<ColourTable> ColourTable::Of(const Raster& picture) {
  ColourTable table;
  std::uint32_t previous = 0;
  const std::uint32_t* const end = picture.Pixels() + picture.PixelCount();
  for (const std::uint32_t* p = picture.Pixels(); p != end; ++p) {
    if (*p == previous) continue;
    previous = *p;
    std::uint32_t& slot = table.slots_[table.SlotOf(*p)];
    if (slot != 0) continue;
    if (table.colours_.size() == 256) return {};
    slot = *p;
    table.colours_.push_back(*p);
  }
  std::ranges::sort(table.colours_);
  for (std::size_t i = 0; i < table.colours_.size(); ++i)
    table.indexes_[table.SlotOf(table.colours_[i])] = static_cast<std::uint8_t>(i);
  return table;
}

std::size_t ColourTable::SlotOf(std::uint32_t pixel) const {
  // Knuth's multiplicative hash; at most a quarter of the slots is taken.
  std::size_t slot = (pixel * 2654435761u) >> 22;
  while (slots_[slot] != 0 && slots_[slot] != pixel) slot = (slot + 1) % kSlots;
  return slot;
}

}  // namespace graphize
