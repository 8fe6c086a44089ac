#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "base/raster.h"

namespace graphize {

struct PlotImage;

/// One pixel's value before it was drawn over.
struct OverdrawnPixel {
  std::uint32_t Index = 0;  // row * width + column
  std::uint32_t Pixel = 0;

  bool operator==(const OverdrawnPixel&) const = default;
};

/// In the order in which they were drawn over. It grows without being moved: a scan may mark every
/// pixel of a page.
using OverdrawnPixels = std::deque<OverdrawnPixel>;

/// Where a picture lies while another one is shown; empty while it is shown itself. Whoever may
/// want to show it again holds its box.
using PictureBox = std::shared_ptr<Raster>;

/// Pixels put away. A large log is packed: marks and grid lines come in runs of one colour.
class PixelLog {
 public:
  PixelLog() = default;
  explicit PixelLog(const OverdrawnPixels& pixels);

  /// The pixels, which are gone from here.
  OverdrawnPixels Take();
  std::size_t Bytes() const { return plain_.size() * sizeof(OverdrawnPixel) + packed_.size(); }

 private:
  std::vector<OverdrawnPixel> plain_;
  std::string packed_;
  std::size_t count_ = 0;  // of the packed pixels
};

/// What happened to the raster: enough to take it back and to do it again, in the order of what
/// happened. Every event is only the one or the other at a time, and holds what the other way
/// needs.
struct RasterEvent {
  enum class Kind {
    Drawn,      // pixels, which the image's own log remembers
    TakenBack,  // pixels of that log
    Forgotten,  // the log of an edit: the picture stays as the edit has left it
    Replaced,   // the whole picture
  };
  Kind Is = Kind::Drawn;
  bool Edit = false;      // of the last edit, else of the marks
  std::size_t Count = 0;  // of the log's newest pixels, while they are in it
  PixelLog Pixels;        // while they are not
  PictureBox Before, After;

  std::size_t Bytes() const { return sizeof(*this) + Pixels.Bytes(); }
};

/// What happened to a raster since it was last taken away.
struct RasterEvents {
  bool Kept = false;  // else nothing is noted
  std::vector<RasterEvent> Events;
  std::size_t Marks = 0, Edits = 0;  // of the image's logs, that are in no need of an event
};

/// Notes from here on what happens to the raster.
void KeepEvents(PlotImage& image);
/// Notes what has been drawn since the last event, and takes all events away.
std::vector<RasterEvent> TakeEvents(PlotImage& image);
/// Takes back the event that happened last, and does it again. Flags stay as they are.
void TakeBack(PlotImage& image, RasterEvent& event);
void DoAgain(PlotImage& image, RasterEvent& event);

}  // namespace graphize
