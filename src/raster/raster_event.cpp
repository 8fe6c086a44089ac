#include "raster/raster_event.h"

#include <utility>

#include "base/or_else.h"
#include "raster/plot_image.h"

namespace graphize {

namespace {

constexpr std::size_t kPackedFrom = 64 * 1024;  // bytes

void PutNumber(std::string& bytes, std::uint32_t number) {
  for (; number >= 0x80; number >>= 7) bytes += static_cast<char>(number | 0x80);
  bytes += static_cast<char>(number);
}

std::uint32_t GetNumber(const char*& at) {
  std::uint32_t number = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    number |= static_cast<std::uint32_t>(byte & 0x7f) << shift;
    if (byte < 0x80) return number;
  }
}

/// Small steps in either direction become small numbers.
std::uint32_t Folded(std::uint32_t step) {
  return step << 1 ^ (step >> 31 != 0 ? UINT32_MAX : 0);
}

std::uint32_t Unfolded(std::uint32_t folded) {
  return folded >> 1 ^ ((folded & 1) != 0 ? UINT32_MAX : 0);
}

/// Runs of one colour at even steps: step, change of the colour, number of pixels.
std::string Packed(const OverdrawnPixels& pixels) {
  std::string bytes;
  OverdrawnPixel last;
  for (std::size_t i = 0; i < pixels.size();) {
    const std::uint32_t step = pixels[i].Index - last.Index, colour = pixels[i].Pixel;
    PutNumber(bytes, Folded(step));
    PutNumber(bytes, colour ^ last.Pixel);
    std::uint32_t run = 0;
    for (; i < pixels.size() && pixels[i].Index - last.Index == step && pixels[i].Pixel == colour;
         ++i, ++run)
      last = pixels[i];
    PutNumber(bytes, run);
  }
  return bytes;
}

OverdrawnPixels Unpacked(const std::string& bytes, std::size_t count) {
  OverdrawnPixels pixels;
  OverdrawnPixel last;
  for (const char* at = bytes.data(); pixels.size() < count;) {
    const std::uint32_t step = Unfolded(GetNumber(at));
    last.Pixel ^= GetNumber(at);
    for (std::uint32_t run = GetNumber(at); run > 0; --run) {
      last.Index += step;
      pixels.push_back(last);
    }
  }
  return pixels;
}

OverdrawnPixels& LogOf(PlotImage& image, const RasterEvent& event) {
  return event.Edit ? image.LastEdit : image.Marks;
}

/// The event keeps them until all is well.
OverdrawnPixels PixelsOf(const RasterEvent& event) {
  return PixelLog(event.Pixels).Take();
}

/// Draws the event's pixels, onto the end of the image's log.
void PutOn(PlotImage& image, RasterEvent& event) {
  OverdrawnPixels pixels = PixelsOf(event);
  OverdrawnPixels& log = LogOf(image, event);
  event.Count = pixels.size();
  SwapForward(image, pixels, event.Edit);
  if (log.empty())
    log.swap(pixels);
  else
    OrElse([&] { log.insert(log.end(), pixels.begin(), pixels.end()); },
           [&] { SwapBackward(image, pixels, event.Edit); });
  event.Pixels = PixelLog();
}

/// The reverse: the newest pixels of the image's log.
void TakeOff(PlotImage& image, RasterEvent& event) {
  OverdrawnPixels& log = LogOf(image, event);
  const auto first = log.end() - static_cast<std::ptrdiff_t>(event.Count);
  OverdrawnPixels pixels(first, log.end());
  SwapBackward(image, pixels, event.Edit);
  OrElse([&] { event.Pixels = PixelLog(pixels); }, [&] { SwapForward(image, pixels, event.Edit); });
  log.erase(first, log.end());
}

void Exchange(PlotImage& image, RasterEvent& event) {
  OverdrawnPixels& log = LogOf(image, event);
  OverdrawnPixels pixels = PixelsOf(event);
  event.Pixels = PixelLog(log);
  log.swap(pixels);
}

void NoteDrawn(RasterEvents& noted, bool edit, std::size_t& before, std::size_t now) {
  if (now > before)
    noted.Events.push_back(
        {.Is = RasterEvent::Kind::Drawn, .Edit = edit, .Count = now - before, .Pixels = {}});
  before = now;
}

}  // namespace

PixelLog::PixelLog(const OverdrawnPixels& pixels) {
  if (pixels.size() * sizeof(OverdrawnPixel) <= kPackedFrom) {
    plain_.assign(pixels.begin(), pixels.end());
    return;
  }
  count_ = pixels.size();
  packed_ = Packed(pixels);
  packed_.shrink_to_fit();
}

OverdrawnPixels PixelLog::Take() {
  if (count_ == 0) {
    const std::vector<OverdrawnPixel> pixels = std::exchange(plain_, {});
    return {pixels.begin(), pixels.end()};
  }
  return Unpacked(std::exchange(packed_, {}), std::exchange(count_, 0));
}

void KeepEvents(PlotImage& image) {
  image.Noted = {
      .Kept = true, .Events = {}, .Marks = image.Marks.size(), .Edits = image.LastEdit.size()};
}

void NoteDrawn(PlotImage& image) {
  if (!image.Noted.Kept) return;
  // An edit has no marks over it.
  NoteDrawn(image.Noted, true, image.Noted.Edits, image.LastEdit.size());
  NoteDrawn(image.Noted, false, image.Noted.Marks, image.Marks.size());
}

std::vector<RasterEvent> TakeEvents(PlotImage& image) {
  NoteDrawn(image);
  return std::exchange(image.Noted.Events, {});
}

void TakeBack(PlotImage& image, RasterEvent& event) {
  using Kind = RasterEvent::Kind;
  if (event.Is == Kind::Drawn) TakeOff(image, event);
  if (event.Is == Kind::TakenBack) PutOn(image, event);
  if (event.Is == Kind::Forgotten) Exchange(image, event);
  if (event.Is == Kind::Replaced) ShowBox(image, event.Before);
  KeepEvents(image);
}

void DoAgain(PlotImage& image, RasterEvent& event) {
  using Kind = RasterEvent::Kind;
  if (event.Is == Kind::Drawn) PutOn(image, event);
  if (event.Is == Kind::TakenBack) TakeOff(image, event);
  if (event.Is == Kind::Forgotten) Exchange(image, event);
  if (event.Is == Kind::Replaced) ShowBox(image, event.After);
  KeepEvents(image);
}

}  // namespace graphize
