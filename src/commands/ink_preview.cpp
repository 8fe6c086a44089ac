#include "commands/ink_preview.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/translation.h"
#include "commands/do.h"
#include "commands/forms.h"
#include "commands/ink_commands.h"
#include "commands/picture_reading.h"
#include "commands/preview_commands.h"
#include "reading/ink_mask.h"

namespace graphize {

namespace {

float ToleranceOf(const InkForm& form) {
  return static_cast<float>(form.Tolerance) / InkForm::kAsFound;
}

void LookAtPicture(Workspace& ws) {
  ws.ink.Picture = PictureNumber(ws.plot);
  ws.ink.IsAlone = CanShowColours(ws);
}

/// What counts as an ink.
struct InkMask {
  BitMap Pixels;  // empty when it was stopped
  long long Count = 0;
  bool IsPaper = false;  // the colour is no ink
};

InkMask MaskOf(const Raster& picture, std::uint32_t colour, float tolerance,
               PictureOperation& operation) {
  InkMask mask;
  const std::optional<Raster> alone = InkAlone(picture, colour, tolerance, operation);
  mask.IsPaper = !alone;
  if (!alone || alone->IsEmpty()) return mask;
  mask.Pixels = BitMap(alone->Width(), alone->Height());
  for (int y = 0; y < alone->Height(); ++y)
    for (int x = 0; x < alone->Width(); ++x)
      if (alone->Row(y)[x] == kBlackPixel) {
        mask.Pixels.Set(x, y);
        ++mask.Count;
      }
  return mask;
}

void Choose(Workspace& ws, const Desktop& desktop, std::uint32_t pixel) {
  ws.ink.Chosen = pixel;
  ShowMask(ws, desktop);
}

}  // namespace

void ShowInk(Workspace& ws, const Desktop& desktop) {
  if (const auto refused = InkRefused(ws)) return Tell(desktop, refused->Reason);
  ws.ink = {};
  ws.ink.Swatches = ReadBeside(ws, desktop, Marked("Looking for inks..."),
                               [&](PictureOperation& operation) { return InksIn(ws, operation); });
  ws.ink.Hint = ws.ink.Swatches.empty() ? Tr("No ink was found: click one on the picture")
                                        : Tr("Choose an ink, or click one on the picture");
  LookAtPicture(ws);
  ws.form = Form::Ink;
}

void ShowMask(Workspace& ws, const Desktop& desktop) {
  InkForm& form = ws.ink;
  if (ws.form != Form::Ink || !form.Chosen) return;
  const std::uint32_t colour = *form.Chosen;
  const float tolerance = ToleranceOf(form);
  form.Hint = Tr("Looking for this ink...");
  InkMask mask =
      ReadBeside(ws, desktop, Marked("Looking for this ink..."), [&](PictureOperation& operation) {
        return MaskOf(ColouredPicture(ws), colour, tolerance, operation);
      });
  form.Mask = std::move(mask.Pixels);
  if (mask.IsPaper) {
    form.Chosen.reset();
    form.Hint = Tr("This is the colour of the paper");
  } else if (form.Mask.IsEmpty()) {
    form.Hint = Tr("Stopped: what counts as this ink is not shown");
  } else {
    std::vector<Rgb> others;
    for (const PictureInk& ink : form.Swatches) others.push_back(ink.Colour);
    form.MarkColour = ColourBeside(RgbOf(colour), others);
    form.Hint = TrCount("%1 pixel is this ink", "%1 pixels are this ink", mask.Count);
  }
}

void ChooseSwatch(Workspace& ws, const Desktop& desktop, int index) {
  const auto& swatches = ws.ink.Swatches;
  if (index < static_cast<int>(swatches.size()))
    Choose(ws, desktop, PixelOf(swatches[static_cast<std::size_t>(index)].Colour));
}

void PickInk(Workspace& ws, const Desktop& desktop, int x, int y) {
  if (!ws.plot.Contains(x, y)) return;
  const auto pixel = [&] {
    const BasePictureShown base(ws.plot);
    return PixelOf(InkNear(ColouredPicture(ws), x, y));
  }();
  Choose(ws, desktop, pixel);
}

void SetInkTolerance(Workspace& ws, int percent) {
  ws.ink.Tolerance = std::clamp(percent, InkForm::kNarrowest, InkForm::kWidest);
}

void TakeInk(Workspace& ws, const Desktop& desktop) {
  if (!ws.ink.Chosen) return;
  const std::uint32_t pixel = *ws.ink.Chosen;
  const auto channel = [pixel](int shift) { return static_cast<int>(pixel >> shift & 0xff); };
  const Outcome outcome =
      Do(ws, desktop, InkStep{channel(16), channel(8), channel(0), ToleranceOf(ws.ink)});
  if (!outcome.IsDone()) {
    ws.ink.Hint = outcome.Reason;
    return;
  }
  CloseForm(ws, desktop);
  ws.status.Status = Tr("This ink is black: Image, Show Colours brings the others back");
}

void ShowColoursAgain(Workspace& ws, const Desktop& desktop) {
  Do(ws, desktop, ShowColoursStep{});
  LookAtPicture(ws);
}

}  // namespace graphize
