#include "raster/plot_image.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

#include "base/or_else.h"
#include "raster/line_walk.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// A pixel's part of the number.
std::uint32_t HashOf(std::uint32_t index, std::uint32_t pixel) {
  std::uint32_t hash = (pixel ^ index * 0x9e3779b1u) * 0x85ebca6bu;
  hash = (hash ^ hash >> 13) * 0xc2b2ae35u;
  return hash ^ hash >> 16;
}

/// A pixel of the base picture becomes another one.
void FollowEdit(PlotImage& image, std::uint32_t index, std::uint32_t from, std::uint32_t to) {
  if (image.Number) *image.Number += std::uint64_t{HashOf(index, to)} - HashOf(index, from);
}

/// Writes one pixel that is inside and remembers in `log` what it covers.
void Overdraw(PlotImage& image, OverdrawnPixels& log, int x, int y, std::uint32_t pixel) {
  std::uint32_t& target = image.Pixels.Row(y)[x];
  if (target == pixel) return;
  const auto index = static_cast<std::uint32_t>(static_cast<std::size_t>(y) * image.Width() + x);
  log.push_back({index, target});
  if (&log == &image.LastEdit) FollowEdit(image, index, target, pixel);
  target = pixel;
}

/// Exchanges pixels of the raster and of a log, in the order of the iterators.
template <class Iterator>
void Swap(PlotImage& image, Iterator from, Iterator to, bool edit) {
  if (from == to) return;
  const auto width = static_cast<std::uint32_t>(image.Width());
  int left = image.Width(), right = -1;
  std::uint32_t first = UINT32_MAX, last = 0;
  for (; from != to; ++from) {
    std::swap(image.Pixels.Pixels()[from->Index], from->Pixel);
    if (edit) FollowEdit(image, from->Index, from->Pixel, image.Pixels.Pixels()[from->Index]);
    const int x = static_cast<int>(from->Index % width);
    left = std::min(left, x);
    right = std::max(right, x);
    first = std::min(first, from->Index);
    last = std::max(last, from->Index);
  }
  image.Dirty.Add(left, static_cast<int>(first / width), right, static_cast<int>(last / width));
}

void Note(PlotImage& image, RasterEvent::Kind kind, bool edit, const OverdrawnPixels& pixels) {
  if (!image.Noted.Kept) return;
  image.Noted.Events.push_back(
      {.Is = kind, .Edit = edit, .Pixels = PixelLog(pixels), .Before = {}, .After = {}});
  (edit ? image.Noted.Edits : image.Noted.Marks) = 0;
}

/// Puts back what a log of the image remembers and empties it.
void Restore(PlotImage& image, bool edit) {
  OverdrawnPixels& log = edit ? image.LastEdit : image.Marks;
  if (log.empty()) return;
  NoteDrawn(image);
  SwapBackward(image, log, edit);
  OrElse([&] { Note(image, RasterEvent::Kind::TakenBack, edit, log); },
         [&] { SwapForward(image, log, edit); });
  log.clear();
}

void ForgetEdit(PlotImage& image) {
  if (image.LastEdit.empty()) return;
  NoteDrawn(image);
  Note(image, RasterEvent::Kind::Forgotten, true, image.LastEdit);
  image.LastEdit.clear();
}

/// Takes back the marks from number `first` on for which `isTaken`; all or none of a pixel's.
template <class IsTaken>
void TakeBack(PlotImage& image, std::size_t first, const IsTaken& isTaken) {
  const bool noted = image.Noted.Kept && first < image.Noted.Marks;
  if (noted) NoteDrawn(image);
  const auto begin = image.Marks.begin() + static_cast<std::ptrdiff_t>(first);
  const auto swapTaken = [&](auto from, auto to) {
    for (; from != to; ++from)
      if (isTaken(*from)) std::swap(image.Pixels.Pixels()[from->Index], from->Pixel);
  };
  // The oldest last: it covers what was there before them all.
  swapTaken(image.Marks.rbegin(), std::make_reverse_iterator(begin));
  const auto note = [&] {
    OverdrawnPixels back;
    std::copy_if(begin, image.Marks.end(), std::back_inserter(back), isTaken);
    Note(image, RasterEvent::Kind::TakenBack, false, back);
  };
  if (noted) OrElse(note, [&] { swapTaken(begin, image.Marks.end()); });
  image.Marks.erase(std::remove_if(begin, image.Marks.end(), isTaken), image.Marks.end());
  if (noted) image.Noted.Marks = image.Marks.size();
}

/// Fills the part of row y from left to right that is inside.
void FillRun(PlotImage& image, OverdrawnPixels& log, int left, int right, int y,
             std::uint32_t pixel) {
  if (y < 0 || y >= image.Height()) return;
  left = std::max(left, 0);
  right = std::min(right, image.Width() - 1);
  if (left > right) return;
  for (int x = left; x <= right; ++x) Overdraw(image, log, x, y, pixel);
  image.Dirty.Add(left, y, right, y);
}

void FillBox(PlotImage& image, OverdrawnPixels& log, int x1, int y1, int x2, int y2,
             Colour colour) {
  const auto [left, right] = std::minmax(x1, x2);
  const auto [top, bottom] = std::minmax(y1, y2);
  for (int y = std::max(top, 0); y <= std::min(bottom, image.Height() - 1); ++y)
    FillRun(image, log, left, right, y, PixelOfColour(colour));
}

void FillDot(PlotImage& image, OverdrawnPixels& log, int x, int y, int width, Colour colour) {
  // A pixel belongs to the disc when its centre does; an even width puts the disc's centre half a
  // pixel to the upper left of (x, y)'s centre. Distances are doubled to stay whole.
  width = std::max(width, 1);
  const int first = -(width / 2), last = first + width - 1;
  const long long diameter = width;
  for (int j = first; j <= last; ++j) {
    const long long distanceY = 2LL * j - (first + last);
    int i = first;
    const auto inside = [&](int column) {
      const long long distanceX = 2LL * column - (first + last);
      return distanceX * distanceX + distanceY * distanceY <= diameter * diameter;
    };
    while (i <= last && !inside(i)) ++i;
    if (i <= last) FillRun(image, log, x + i, x + first + last - i, y + j, PixelOfColour(colour));
  }
}

}  // namespace

void SetPixels(PlotImage& image, std::span<const MarkedPixel> at, Colour colour) {
  const std::uint32_t pixel = PixelOfColour(colour);
  // First, so that a lack of memory leaves no mark that nobody paints; and in a copy, which no
  // store of a pixel could be for all that the compiler knows.
  DirtyArea dirty = image.Dirty;
  for (const auto& [x, y] : at)
    if (image.Contains(x, y)) dirty.Add(x, y, x, y);
  image.Dirty = dirty;
  for (const auto& [x, y] : at)
    if (image.Contains(x, y)) Overdraw(image, image.Marks, x, y, pixel);
}

void SetPixel(PlotImage& image, int x, int y, Colour colour) {
  const MarkedPixel at{x, y};
  SetPixels(image, {&at, 1}, colour);
}

void DrawLine(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour) {
  WalkLine(x1, y1, x2, y2, [&](int x, int y) { SetPixel(image, x, y, colour); });
}

void DrawBox(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour, bool filled) {
  if (filled) return FillBox(image, image.Marks, x1, y1, x2, y2, colour);
  FillBox(image, image.Marks, x1, y1, x2, y1, colour);
  FillBox(image, image.Marks, x1, y2, x2, y2, colour);
  FillBox(image, image.Marks, x1, y1, x1, y2, colour);
  FillBox(image, image.Marks, x2, y1, x2, y2, colour);
}

void DrawDot(PlotImage& image, int x, int y, int width, Colour colour) {
  FillDot(image, image.Marks, x, y, width, colour);
}

void TakeBackMarks(PlotImage& image, std::size_t first, int x) {
  if (first == image.Marks.size() || x >= image.Width()) return;
  const auto width = static_cast<std::uint32_t>(image.Width());
  // Marks mostly follow the rows: a division for each would take longer than all the rest.
  std::uint32_t row = 0;  // index of its first pixel
  TakeBack(image, first, [&](const OverdrawnPixel& mark) {
    if (mark.Index - row >= width) row = mark.Index - mark.Index % width;
    return static_cast<int>(mark.Index - row) >= x;
  });
  image.Dirty.Add(x, 0, image.Width() - 1, image.Height() - 1);
}

void TakeBackMarks(PlotImage& image, std::span<const MarkedPixel> at, Colour colour) {
  std::vector<std::uint32_t> pixels;
  for (const auto& [x, y] : at) {
    if (GetPixel(image, x, y) != colour) continue;
    pixels.push_back(static_cast<std::uint32_t>(static_cast<std::size_t>(y) * image.Width() + x));
    image.Dirty.Add(x, y, x, y);
  }
  if (pixels.empty()) return;
  std::sort(pixels.begin(), pixels.end());
  TakeBack(image, 0, [&](const OverdrawnPixel& mark) {
    return std::binary_search(pixels.begin(), pixels.end(), mark.Index);
  });
}

void ClearMarks(PlotImage& image) {
  Restore(image, false);
}

BasePictureShown::BasePictureShown(PlotImage& image) : image_(image) {
  for (auto it = image_.Marks.rbegin(); it != image_.Marks.rend(); ++it)
    std::swap(image_.Pixels.Pixels()[it->Index], it->Pixel);
}

BasePictureShown::~BasePictureShown() {
  for (OverdrawnPixel& mark : image_.Marks)
    std::swap(image_.Pixels.Pixels()[mark.Index], mark.Pixel);
}

void BeginEdit(PlotImage& image) {
  ClearMarks(image);
  ForgetEdit(image);
  image.HasUndo = true;
}

void EditPixel(PlotImage& image, int x, int y, Colour colour) {
  if (!image.Contains(x, y)) return;
  Overdraw(image, image.LastEdit, x, y, PixelOfColour(colour));
  image.Dirty.Add(x, y, x, y);
}

void EditBox(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour) {
  FillBox(image, image.LastEdit, x1, y1, x2, y2, colour);
}

void EditDot(PlotImage& image, int x, int y, int width, Colour colour) {
  FillDot(image, image.LastEdit, x, y, width, colour);
}

void UndoEdit(PlotImage& image) {
  ClearMarks(image);
  Restore(image, true);
}

PictureBox SetPicture(PlotImage& image, PictureBox picture) {
  ClearMarks(image);
  ForgetEdit(image);
  if (image.Box == nullptr) image.Box = std::make_shared<Raster>();
  const RasterEvent event{.Is = RasterEvent::Kind::Replaced,
                          .Pixels = {},
                          .Before = image.Box,
                          .After = std::move(picture)};
  if (image.Noted.Kept) image.Noted.Events.push_back(event);
  ShowBox(image, event.After);
  image.HasUndo = false;
  return event.Before;
}

PictureBox SetPicture(PlotImage& image, Raster picture) {
  return SetPicture(image, std::make_shared<Raster>(std::move(picture)));
}

void ShowBox(PlotImage& image, const PictureBox& picture) {
  const PictureBox before = image.Box;
  *image.Box = std::exchange(image.Pixels, Raster());
  image.Pixels = std::exchange(*picture, Raster());
  image.Box = picture;
  image.Number.reset();
  image.Dirty = {0, 0, image.Width() - 1, image.Height() - 1};
}

std::uint64_t PictureNumber(PlotImage& image) {
  if (image.Number) return *image.Number;
  const BasePictureShown base(image);
  const Raster& pixels = image.Pixels;
  // Of a blank picture not the same as of the same turned.
  std::atomic<std::uint64_t> number = HashOf(static_cast<std::uint32_t>(pixels.Width()), 0);
  PictureOperation operation;
  ParallelRows(pixels.Width(), pixels.Height(), operation, [&](int first, int end) {
    const auto start = static_cast<std::size_t>(first) * pixels.Width();
    const auto behind = static_cast<std::size_t>(end) * pixels.Width();
    std::uint64_t sum = 0;
    for (std::size_t i = start; i < behind; ++i)
      sum += HashOf(static_cast<std::uint32_t>(i), pixels.Pixels()[i]);
    number += sum;
  });
  image.Number = number;
  return number;
}

void SwapForward(PlotImage& image, OverdrawnPixels& log, bool edit) {
  Swap(image, log.begin(), log.end(), edit);
}

void SwapBackward(PlotImage& image, OverdrawnPixels& log, bool edit) {
  Swap(image, log.rbegin(), log.rend(), edit);
}

}  // namespace graphize
