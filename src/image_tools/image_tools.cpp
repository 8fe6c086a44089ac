#include "image_tools/image_tools.h"

#include <algorithm>

namespace graphize {

namespace {

struct AmountKind {
  const char* Caption;
  int Minimum, Maximum;
  bool Enabled;
};

AmountKind AmountOf(PictureTool tool) {
  switch (tool) {
    case PictureTool::Blur:
    case PictureTool::Negate:
      return {"Amount", 0, 10, false};
    case PictureTool::EdgeDetect:
    case PictureTool::Sharpen:
    case PictureTool::Soften:
      return {"Amount", 0, 10, true};
    case PictureTool::Resize:
    case PictureTool::Stretch:
      return {"Amount (%)", 0, 300, true};
    case PictureTool::Rotate:
      return {"Amount (Deg)", -180, 180, true};
  }
  return {};
}

}  // namespace

const ToolTexts& TextsOf(PictureTool tool) {
  static constexpr ToolTexts kTexts[kPictureTools] = {
      {"blur", "Blure", "Bluring image...", "Bluring completed",
       "Evens out grain and dots: each pixel becomes the mean of 5 x 5."},
      {"edge-detect", "Edge Detect", "Detecting Edges...", "Detect Edges completed",
       "Shows outlines bright on black. Negate makes them dark on white."},
      {"negate", "Negate", "Negating...", "Negate completed",
       "Exchanges light and dark. Only black is followed by tracers: use it for white curves."},
      {"sharpen", "Sharpen", "Sharpening Image...", "Sharpening completed",
       "Makes soft edges steeper. 0 changes nothing."},
      {"soften", "Soften", "Softening Image...", "Softening completed",
       "A gentle blur: each pixel moves towards the mean of 3 x 3. 0 changes nothing."},
      {"resize", "Resize", "Resizing Image...", "Resize completed",
       "Scales the picture smoothly. 100 keeps its size. Define the axes afterwards."},
      {"stretch", "Stretch", "Stretching Image...", "",
       "Scales the picture by repeating or leaving out pixels. Define the axes afterwards."},
      {"rotate", "Rotate", "Rotating Image...", "Rotate completed",
       "Turns the picture clockwise, on white. Steps of 90 are exact. Define the axes afterwards."},
  };
  return kTexts[static_cast<int>(tool)];
}

void OpenImageTools(ImageToolsForm& form, int width, int height) {
  form = {.KeptRotation = form.KeptRotation, .WidthAtOpening = width, .HeightAtOpening = height};
}

void ChooseTool(ImageToolsForm& form, PictureTool tool) {
  const AmountKind kind = AmountOf(tool);
  form.Tool = tool;
  form.AmountCaption = kind.Caption;
  form.Minimum = kind.Minimum;
  form.Maximum = kind.Maximum;
  form.AmountEnabled = kind.Enabled;
  if (tool == PictureTool::Resize || tool == PictureTool::Stretch) form.Amount = 150;
  if (tool == PictureTool::Rotate) form.Amount = form.KeptRotation;
  SetAmount(form, form.Amount);
}

void SetAmount(ImageToolsForm& form, int amount) {
  form.Amount = std::clamp(amount, form.Minimum, form.Maximum);
}

}  // namespace graphize
