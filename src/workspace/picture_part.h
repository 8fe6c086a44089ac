#pragma once

#include <string>

#include "base/raster.h"
#include "desktop/desktop.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Whether a side is too long for the 16-bit positions of pixels.
bool IsTooLong(int width, int height);

/// What is taken of a picture that is too long, as a person says it: "half" or "quarter" of its
/// width and height, or the part "LEFT,TOP,WIDTH,HEIGHT" in its pixels. Empty after Cancel.
std::string AskForPart(const Desktop& desktop, const std::string& name, int width, int height);

/// Whether it says a part at all, of whatever picture.
bool IsPartText(const std::string& part);

/// Why this is no part that a picture of this size can be opened as, a sentence in plain words;
/// empty when it is.
std::string PartFault(const std::string& part, int width, int height);

/// The picture becomes the part, for which there is no fault. False when `progress` stopped it.
bool TakePart(Raster& picture, const std::string& part, const PictureProgress& progress);

}  // namespace graphize
