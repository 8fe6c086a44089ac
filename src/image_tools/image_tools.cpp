#include "image_tools/image_tools.h"

#include <algorithm>

#include "base/translation.h"

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
      return {Marked("Amount"), 0, 10, false};
    case PictureTool::EdgeDetect:
    case PictureTool::Sharpen:
    case PictureTool::Soften:
      return {Marked("Amount"), 0, 10, true};
    case PictureTool::Resize:
    case PictureTool::Stretch:
      return {Marked("Amount (%)"), 0, 300, true};
    case PictureTool::Rotate:
      return {Marked("Amount (Deg)"), -180, 180, true};
  }
  return {};
}

}  // namespace

const ToolTexts& TextsOf(PictureTool tool) {
  static constexpr ToolTexts kTexts[kPictureTools] = {
      {"blur", Marked("Blure"), Marked("Bluring image..."), Marked("Bluring completed"),
       Marked("Evens out grain and dots: each pixel becomes the mean of 5 x 5.")},
      {"edge-detect", Marked("Edge Detect"), Marked("Detecting Edges..."),
       Marked("Detect Edges completed"),
       Marked("Shows outlines bright on black. Negate makes them dark on white.")},
      {"negate", Marked("Negate"), Marked("Negating..."), Marked("Negate completed"),
       Marked("Exchanges light and dark. Only black is followed by tracers: use it for white "
              "curves.")},
      {"sharpen", Marked("Sharpen"), Marked("Sharpening Image..."), Marked("Sharpening completed"),
       Marked("Makes soft edges steeper. 0 changes nothing.")},
      {"soften", Marked("Soften"), Marked("Softening Image..."), Marked("Softening completed"),
       Marked("A gentle blur: each pixel moves towards the mean of 3 x 3. 0 changes nothing.")},
      {"resize", Marked("Resize"), Marked("Resizing Image..."), Marked("Resize completed"),
       Marked("Scales the picture smoothly. 100 keeps its size. Define the axes afterwards.")},
      {"stretch", Marked("Stretch"), Marked("Stretching Image..."), "",
       Marked(
           "Scales the picture by repeating or leaving out pixels. Define the axes afterwards.")},
      {"rotate", Marked("Rotate"), Marked("Rotating Image..."), Marked("Rotate completed"),
       Marked("Turns the picture clockwise, on white. Steps of 90 are exact. Define the axes "
              "afterwards.")},
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
