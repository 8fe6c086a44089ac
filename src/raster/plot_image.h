#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/palette.h"
#include "base/raster.h"
#include "raster/raster_event.h"

namespace graphize {

/// The pixels whose colour changed since the window last painted; empty when Left > Right.
struct DirtyArea {
  int Left = 1, Top = 1, Right = 0, Bottom = 0;  // inclusive

  bool IsEmpty() const { return Left > Right; }
  void Add(int left, int top, int right, int bottom) {
    if (IsEmpty()) {
      *this = {left, top, right, bottom};
      return;
    }
    Left = std::min(Left, left);
    Top = std::min(Top, top);
    Right = std::max(Right, right);
    Bottom = std::max(Bottom, bottom);
  }
};

/// The picture the user works on. Base picture and working raster share `Pixels`: marks drawn on it
/// remember what they cover, so that clearing them, and undoing the last edit, costs what was
/// drawn.
///
/// - Marks (trace and scan marks, blockers, shading) last until ClearMarks.
/// - Edits (pen, grid removal) change the base picture; UndoEdit takes the last one back.
///
/// x grows to the right, y downward, both from 0.
struct PlotImage {
  Raster Pixels;
  PictureBox Box;                  // where `Pixels` go when another picture is shown
  OverdrawnPixels Marks;           // oldest first
  OverdrawnPixels LastEdit;        // oldest first
  bool HasUndo = false;            // an edit was begun since the picture was set
  bool PersistentDrawing = false;  // on in the edit modes and after every new picture
  DirtyArea Dirty;
  std::string SourceName;  // file name, or the word for a pasted or scanned picture
  RasterEvents Noted;      // for the history
  // See PictureNumber: of the base picture, where it is known.
  std::optional<std::uint64_t> Number;

  int Width() const { return Pixels.Width(); }
  int Height() const { return Pixels.Height(); }
  bool IsPresent() const { return !Pixels.IsEmpty(); }
  bool Contains(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(Pixels.Width()) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(Pixels.Height());
  }
};

/// The colour at (x, y), kNoColour outside.
inline Colour GetPixel(const PlotImage& image, int x, int y) {
  return image.Contains(x, y) ? ColourOfPixel(image.Pixels.Row(y)[x]) : kNoColour;
}

/// Whether (x, y) is inside and exactly black: what curve pixels are to every reader.
inline bool IsBlack(const PlotImage& image, int x, int y) {
  return image.Contains(x, y) && IsBlackPixel(image.Pixels.Row(y)[x]);
}

struct MarkedPixel {
  int X = 0, Y = 0;
};
/// Marks: what is outside the picture is not drawn.
void SetPixel(PlotImage& image, int x, int y, Colour colour);
void SetPixels(PlotImage& image, std::span<const MarkedPixel> at, Colour colour);
/// From (x1, y1) to (x2, y2), both ends included.
void DrawLine(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour);
/// A rectangle with the corners (x1, y1) and (x2, y2), both included.
void DrawBox(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour, bool filled);
/// A filled round dot `width` pixels across, centred on (x, y); a width below 2 is one pixel.
void DrawDot(PlotImage& image, int x, int y, int width, Colour colour);

/// Takes back the marks from number `first` on, oldest first, that lie in column `x` or right of
/// it.
void TakeBackMarks(PlotImage& image, std::size_t first, int x);
/// Takes back all marks on those of these pixels that show this colour.
void TakeBackMarks(PlotImage& image, std::span<const MarkedPixel> at, Colour colour);

/// The working raster becomes the base picture again.
void ClearMarks(PlotImage& image);

/// While it lives the raster shows the base picture; nothing may be drawn meanwhile.
class BasePictureShown {
 public:
  explicit BasePictureShown(PlotImage& image);
  ~BasePictureShown();
  BasePictureShown(const BasePictureShown&) = delete;
  BasePictureShown& operator=(const BasePictureShown&) = delete;

 private:
  PlotImage& image_;
};

/// Starts an edit: clears the marks, and what follows through EditPixel is one step for UndoEdit.
void BeginEdit(PlotImage& image);
/// Change the base picture. Only between BeginEdit and the next mark: marks must not be there.
void EditPixel(PlotImage& image, int x, int y, Colour colour);
/// Filled, with the corners (x1, y1) and (x2, y2), both included.
void EditBox(PlotImage& image, int x1, int y1, int x2, int y2, Colour colour);
/// A dot as DrawDot draws it.
void EditDot(PlotImage& image, int x, int y, int width, Colour colour);
/// The base picture as it was before the last BeginEdit; a second undo restores the same.
void UndoEdit(PlotImage& image);

/// Base picture and working raster are replaced; marks and undo are gone. Returns the box in which
/// the base picture that was there now lies.
PictureBox SetPicture(PlotImage& image, PictureBox picture);
PictureBox SetPicture(PlotImage& image, Raster picture);

/// A number that tells base pictures apart, whatever way has led to them: the sum over all pixels
/// of a hash of place and colour (the final mixing of MurmurHash3). It follows edits; the first
/// question for a picture reads all of it.
std::uint64_t PictureNumber(PlotImage& image);

/// What the history's events are made of. The box of the picture that is shown takes it, and that
/// of another one is emptied.
void ShowBox(PlotImage& image, const PictureBox& picture);
/// Exchange pixels of the raster and of `log`, of an edit or of marks, oldest or newest first.
void SwapForward(PlotImage& image, OverdrawnPixels& log, bool edit);
void SwapBackward(PlotImage& image, OverdrawnPixels& log, bool edit);
/// Notes what has been drawn since the last event.
void NoteDrawn(PlotImage& image);

}  // namespace graphize
