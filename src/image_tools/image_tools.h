#pragma once

#include <memory>
#include <string>

#include "base/raster.h"
#include "image_tools/picture_tools.h"

namespace graphize {

/// The window FRM_ImageTools.
struct ImageToolsForm {
  PictureTool Tool = PictureTool::Blur;  // the pressed ToolOption
  std::string AmountCaption = "Amount";  // FRM_Amount, in English
  int Minimum = 0, Maximum = 10;         // LBL_Min, LBL_Max
  int Amount = 5;                        // ToolAmount, LBL_Amount
  bool AmountEnabled = false;
  int KeptRotation = 90;                        // degrees, of the last rotation
  std::shared_ptr<Raster> UndoCopy;             // the picture as it was before the last processing
  int WidthAtOpening = 0, HeightAtOpening = 0;  // pixels
  bool Busy = false;                            // a tool runs
};

/// What a tool is called, and what is said while it runs and afterwards: texts to be translated
/// where they are shown.
struct ToolTexts {
  const char* Name;  // in recipes
  const char* Caption;
  const char* Progress;
  const char* Completion;  // empty: the progress text stays
  const char* Hint;        // what it does, for the user
};
const ToolTexts& TextsOf(PictureTool tool);

/// The window as it opens over a picture of this size; the kept rotation stays.
void OpenImageTools(ImageToolsForm& form, int width, int height);

/// Caption, range and amount follow the tool. Amounts of one kind stay as they are, as far as they
/// are in the range.
void ChooseTool(ImageToolsForm& form, PictureTool tool);

/// Held within the range.
void SetAmount(ImageToolsForm& form, int amount);

}  // namespace graphize
