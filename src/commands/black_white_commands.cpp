#include "commands/black_white_commands.h"

#include <algorithm>
#include <cmath>

#include "base/translation.h"
#include "commands/do.h"
#include "commands/forms.h"
#include "commands/image_tools_commands.h"
#include "raster/luminance.h"
#include "reading/ink_threshold.h"

namespace graphize {

namespace {

InkThreshold ChosenThreshold(const BlackWhiteForm& form) {
  return {.Is = form.Local ? InkThreshold::Kind::Local : InkThreshold::Kind::Fixed,
          .Level = static_cast<float>(ThresholdOf(form.Threshold))};
}

/// Of a million pixels at most. A level counts what a threshold above it makes black.
std::array<int, 256> HistogramOf(const Raster& picture) {
  std::array<int, 256> histogram{};
  const auto step =
      static_cast<int>(std::max(std::sqrt(static_cast<double>(picture.PixelCount()) / 1e6), 1.0));
  for (int y = step / 2; y < picture.Height(); y += step)
    for (int x = step / 2; x < picture.Width(); x += step)
      ++histogram[static_cast<std::size_t>((LuminanceOf(picture.Row(y)[x]) + 500) / 1000)];
  return histogram;
}

void ShowPreview(Workspace& ws) {
  BlackWhiteForm& form = ws.blackWhite;
  const int width = std::min(BlackWhiteForm::kPartWidth, ws.plot.Width());
  const int height = std::min(BlackWhiteForm::kPartHeight, ws.plot.Height());
  form.Left = std::clamp(form.Left, 0, ws.plot.Width() - width);
  form.Top = std::clamp(form.Top, 0, ws.plot.Height() - height);
  form.Preview = Raster(width, height);
  {
    const BasePictureShown base(ws.plot);
    for (int y = 0; y < height; ++y) {
      const std::uint32_t* from = ws.plot.Pixels.Row(form.Top + y) + form.Left;
      std::copy(from, from + width, form.Preview.Row(y));
    }
  }
  if (form.CanReduce) Reduce(form.Preview, ChosenThreshold(form));
  ++form.Changes;
}

}  // namespace

void ShowBlackWhite(Workspace& ws) {
  BlackWhiteForm& form = ws.blackWhite;
  form.Local = false;
  form.Threshold = ws.settings.Threshold;
  {
    const BasePictureShown base(ws.plot);
    form.CanReduce = !IsBlackAndWhite(ws.plot.Pixels);
    form.Histogram = HistogramOf(ws.plot.Pixels);
  }
  // The middle of what is seen.
  const Viewport& view = ws.view;
  const auto middle = [&](int start, int opening, int pixels) {
    return PixelAt(view.Zoom, start + std::min(opening, ZoomedLength(view.Zoom, pixels)) / 2.0);
  };
  form.Left = middle(view.X, view.Width, ws.plot.Width()) - BlackWhiteForm::kPartWidth / 2;
  form.Top = middle(view.Y, view.Height, ws.plot.Height()) - BlackWhiteForm::kPartHeight / 2;
  ShowPreview(ws);
  ws.form = Form::BlackWhite;
}

void ChooseLocalThreshold(Workspace& ws, bool local) {
  ws.blackWhite.Local = local;
  ShowPreview(ws);
}

void MoveThreshold(Workspace& ws, int level) {
  ws.blackWhite.Threshold = std::clamp(level, 1, 255);
  ShowPreview(ws);
}

void MovePreview(Workspace& ws, int columns, int rows) {
  ws.blackWhite.Left += columns;
  ws.blackWhite.Top += rows;
  ShowPreview(ws);
}

void ReduceAsPreviewed(Workspace& ws, const Desktop& desktop) {
  const BlackWhiteForm& form = ws.blackWhite;
  if (!form.CanReduce) return;
  if (!form.Local) ws.settings.Threshold = static_cast<std::int16_t>(form.Threshold);
  ws.window.Hourglass = true;
  ws.status.Status = Tr("Reducing color depth...");
  desktop.ShowNow();
  const Outcome outcome = Do(ws, desktop, BlackWhiteStep{ChosenThreshold(form)});
  ws.window.Hourglass = false;
  ws.status.Status = outcome.IsDone() ? Tr("The picture is black and white") : outcome.Reason;
  CloseForm(ws, desktop);
}

}  // namespace graphize
