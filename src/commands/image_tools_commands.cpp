#include "commands/image_tools_commands.h"

#include <string>
#include <utility>

#include "base/free_beside.h"
#include "base/numbers.h"
#include "base/translation.h"
#include "commands/shown_picture.h"
#include "image_tools/picture_tools.h"
#include "image_tools/scaling.h"
#include "raster/black_white.h"
#include "workspace/picture_map.h"

namespace graphize {

namespace {

void ShowStep(Workspace& ws, const Desktop& desktop, const char* english) {
  ws.status.Status = Tr(english);
  desktop.ShowNow();
}

/// The form is busy and the pointer an hourglass while it lives.
class BusyForm {
 public:
  explicit BusyForm(Workspace& ws) : ws_(ws) { ws_.window.Hourglass = true; }
  ~BusyForm() {
    ws_.imageTools.Busy = false;
    ws_.status.ProgressVisible = false;
    ws_.window.Hourglass = false;
  }
  BusyForm(const BusyForm&) = delete;
  BusyForm& operator=(const BusyForm&) = delete;

 private:
  Workspace& ws_;
};

/// What the chosen tool makes of the picture that is shown; nothing after Escape.
std::optional<Raster> Processed(Workspace& ws, const Desktop& desktop) {
  const Raster& picture = ws.plot.Pixels;
  const PictureTool tool = ws.imageTools.Tool;
  const int amount = ws.imageTools.Amount;
  bool stopped = false;
  const auto progress = [&](int from, int to) -> PictureProgress {
    return [&, show = ShowProgress(ws, desktop, from, to)](int percent) {
      ws.imageTools.Busy = true;  // what is done at once does not make the form blink
      stopped = !show(percent) || stopped;
      return !stopped;
    };
  };

  const auto palette = QueryPalette(picture, progress(0, 10));
  if (stopped) return std::nullopt;
  const bool scales = tool == PictureTool::Resize || tool == PictureTool::Stretch;
  const bool raisesDepth = palette && !scales;
  // A raster is true colour as it is: the palette alone has to be made again afterwards.
  if (raisesDepth) ShowStep(ws, desktop, "Increasing color depth...");
  ShowStep(ws, desktop, TextsOf(tool).Progress);
  std::optional<Raster> result;
  if (IsTooSmall(tool, amount, {picture.Width(), picture.Height()})) {
    desktop.ShowMessage({.Text = Tr("Image too small !"), .Caption = Tr("%1 Error", kTitle)});
    result = picture.Clone();
  } else {
    result = RunTool(tool, amount, picture, palette ? &*palette : nullptr, progress(10, 80));
  }
  if (result && raisesDepth) {
    ShowStep(ws, desktop, "Reducing color depth...");
    if (!ReduceDepth(*result, *palette, progress(80, 100)))
      FreeBeside(std::exchange(result, std::nullopt));
  }
  return result;
}

/// The picture that is shown in black and white; nothing after Escape.
std::optional<Raster> Reduced(Workspace& ws, const Desktop& desktop,
                              const InkThreshold& threshold) {
  const BasePictureShown base(ws.plot);
  const Raster& picture = ws.plot.Pixels;
  return RunBeside(ShowProgress(ws, desktop), [&](PictureOperation& operation) {
    operation.To = 0.3;
    auto copy = CutOut(picture, 0, 0, picture.Width(), picture.Height(), operation);
    operation.From = operation.To;
    operation.To = 1;
    if (copy && !IsBlackAndWhite(*copy) && !Reduce(*copy, threshold, operation))
      FreeBeside(std::exchange(copy, std::nullopt));
    return copy;
  });
}

Outcome Stopped(Workspace& ws) {
  ws.status.Status = Tr("Stopped: the picture is as it was");
  return Nothing(ws.status.Status);
}

/// Puts a picture in the place of the one that is shown, at the same place of the view. Returns the
/// one that was shown, without its marks.
PictureBox Exchange(Workspace& ws, const Desktop& desktop, PictureBox picture) {
  const Viewport view = ws.view;
  PictureBox replaced = LoadImage(ws, desktop, std::move(picture), ws.plot.SourceName);
  ws.view.Zoom = view.Zoom;
  ws.view.Fits = view.Fits;
  ResetScrBars(ws.view, ws.plot.Width(), ws.plot.Height());
  ScrollTo(ws.view, view.X, view.Y);
  return replaced;
}

}  // namespace

bool CanShowImageTools(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void ShowImageTools(Workspace& ws) {
  OpenImageTools(ws.imageTools, ws.plot.Width(), ws.plot.Height());
  ws.form = Form::ImageTools;
}

ImageToolStep StepOfForm(const ImageToolsForm& form) {
  return {.Tool = form.Tool, .Amount = form.Amount};
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ImageToolStep& step) {
  if (!CanShowImageTools(ws)) return Refused("there is no picture");
  ImageToolsForm& form = ws.imageTools;
  const PictureTool tool = step.Tool;
  ChooseTool(form, tool);
  SetAmount(form, step.Amount);
  if (form.Amount != step.Amount) return Refused("the amount is out of its range");
  if (step.Strict && IsTooSmall(tool, step.Amount, {ws.plot.Width(), ws.plot.Height()}))
    return Refused("the picture is too small for that");
  const std::string refusal =
      ResultRefusal(tool, form.Amount, {ws.plot.Width(), ws.plot.Height()}, FreeMemory());
  if (!refusal.empty()) {
    Tell(desktop, refusal, MessageIcon::Exclamation);
    return Refused(refusal);
  }
  {
    const BusyForm busy(ws);
    std::optional<Raster> result;
    {
      const BasePictureShown base(ws.plot);
      result = Processed(ws, desktop);
    }
    if (!result) return Stopped(ws);
    const PictureSize size{ws.plot.Width(), ws.plot.Height()};
    const bool moved = !IsTooSmall(tool, form.Amount, size);
    CarryAlong(ws, moved ? MapOf(tool, form.Amount, size) : AffineMap{}, result->Height());
    // The old picture itself is the undo copy: a page is never there a third time.
    form.UndoCopy = Exchange(ws, desktop, std::make_shared<Raster>(std::move(*result)));
  }
  if (*TextsOf(tool).Completion != '\0') ws.status.Status = Tr(TextsOf(tool).Completion);
  if (tool == PictureTool::Rotate) form.KeptRotation = form.Amount;
  const bool movesPixels = tool == PictureTool::Resize || tool == PictureTool::Rotate;
  if (movesPixels && ws.calibration.AnyDefined())
    Tell(desktop, "Redefine the axis before graphizing", MessageIcon::Exclamation);
  return {};
}

bool CanUndoImageTool(const Workspace& ws) {
  return ws.imageTools.UndoCopy != nullptr;
}

Outcome Run(Workspace& ws, const Desktop& desktop, const UndoImageToolStep&) {
  if (!CanUndoImageTool(ws)) return Refused("there is nothing to undo");
  CarryBack(ws, ws.imageTools.UndoCopy->Height());
  Exchange(ws, desktop, std::exchange(ws.imageTools.UndoCopy, nullptr));
  ws.status.Status = Tr("Undo completed");
  return {};
}

Outcome Run(Workspace& ws, const Desktop& desktop, const BlackWhiteStep& step) {
  if (!CanShowImageTools(ws)) return Refused("there is no picture");
  if (ws.plot.Noted.Kept || ws.plot.Box.use_count() > 1) {
    std::optional<Raster> reduced = Reduced(ws, desktop, step.Threshold);
    ws.status.ProgressVisible = false;
    if (!reduced) return Stopped(ws);
    LoadImage(ws, desktop, std::move(*reduced), ws.plot.SourceName);
    return {};
  }
  // In its place: nobody wants it back.
  Raster picture = std::exchange(*SetPicture(ws.plot, Raster()), Raster());
  if (!IsBlackAndWhite(picture)) Reduce(picture, step.Threshold);
  LoadImage(ws, desktop, std::move(picture), ws.plot.SourceName);
  return {};
}

void LeaveImageTools(Workspace& ws, const Desktop& desktop) {
  ImageToolsForm& form = ws.imageTools;
  form.UndoCopy.reset();
  const bool sizeChanged =
      ws.plot.Width() != form.WidthAtOpening || ws.plot.Height() != form.HeightAtOpening;
  if (sizeChanged && ws.calibration.AnyDefined())
    Tell(desktop, "Image Size Changed, You have to redefine the axis before you graphize ");
  ws.window.Hourglass = false;
}

}  // namespace graphize
