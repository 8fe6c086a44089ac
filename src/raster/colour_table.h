#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// The colours of a picture that has at most 256, as pixels 0xffRRGGBB in ascending order, so that
/// black comes first and white last.
class ColourTable {
 public:
  /// Nothing when the picture has more colours, or the operation was stopped.
  static std::optional<ColourTable> Of(const Raster& picture, PictureOperation& operation);

  const std::vector<std::uint32_t>& Colours() const { return colours_; }
  /// Whether all of them are black, white or between.
  bool AreGrey() const;
  bool AreBlackAndWhite() const;
  /// The place in Colours() of a colour that is in it.
  std::uint8_t IndexOf(std::uint32_t pixel) const { return indexes_[SlotOf(pixel)]; }

 private:
  static constexpr std::size_t kSlots = 1024;

  std::size_t SlotOf(std::uint32_t pixel) const;
  /// False when there is no place for another colour.
  bool Add(std::uint32_t pixel);
  bool AddAll(const std::uint32_t* pixels, std::size_t count);

  std::vector<std::uint32_t> colours_;
  std::array<std::uint32_t, kSlots> slots_{};  // 0: free, as no pixel is
  std::array<std::uint8_t, kSlots> indexes_{};
};

}  // namespace graphize
