#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/raster.h"

namespace graphize {

/// One pass over the page, as the scanner announces it.
struct ScanFrame {
  enum class Band { Grey, Rgb, Red, Green, Blue };
  Band Is = Band::Grey;
  int Width = 0;  // pixels
  int Lines = 0;  // -1: the scanner cannot know
  int BytesPerLine = 0;
  int Depth = 8;  // bits per sample: 1, 8 or 16
};

/// Puts a page together from the bytes that a scanner sends, in pieces of any size.
///
/// - 16-bit samples, in this machine's byte order, are rounded to the nearest of 8 bits.
/// - A 1 of a 1-bit grey pass is black; of a 1-bit colour pass it is full colour. Eight pixels
///   share a byte, the leftmost in its highest bit; an Rgb pass has a byte for each colour in turn.
/// - A page may come as one Grey or Rgb pass, or as a Red, a Green and a Blue one in any order.
/// - More lines than announced are taken, fewer are an error.
///
/// Every function throws RunTimeError with the reason in plain words when what comes is no page,
/// PictureTooLarge when it is more than a picture can be.
class ScanPage {
 public:
  void BeginFrame(const ScanFrame& frame);
  void Take(const std::uint8_t* bytes, std::size_t count);
  void EndFrame();

  /// How much of the present pass has come, 0 to 1; -1 when its lines are not known.
  double PartTaken() const;

  /// The page, after its last pass.
  Raster Finish();

 private:
  void TakeLine(const std::uint8_t* line);
  void Grow();

  ScanFrame frame_;
  Raster raster_;                   // may have more rows than came
  int rows_ = 0;                    // of the present pass
  int height_ = -1;                 // known after the first pass
  unsigned colours_ = 0;            // passes that came: 1 red, 2 green, 4 blue
  std::vector<std::uint8_t> line_;  // the start of a line
};

/// Why a scan of this size, as announced, cannot be taken, a sentence; empty when it can or when
/// its height is not known.
std::string ScanSizeRefusal(int width, int lines);

}  // namespace graphize
