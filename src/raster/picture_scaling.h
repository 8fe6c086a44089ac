#pragma once

#include "base/raster.h"
#include "raster/pyramid.h"

namespace graphize {

/// How a screen's pixels lie on a picture.
struct PictureScaling {
  double Scale = 1;          // screen pixels per picture pixel
  double Left = 0, Top = 0;  // the picture's upper left corner in screen pixels
};

/// The first screen pixel that shows picture pixel `pixel`: the first that begins within it.
int FirstScreenPixel(double start, double scale, int pixel);
/// The level of a pyramid whose pixels a scale shows one or two by two.
int LevelFor(double scale);
/// The picture pixel in which a screen pixel begins: the one that a pointer there reads.
int PictureColumn(const PictureScaling& scaling, int screenX);
int PictureRow(const PictureScaling& scaling, int screenY);

/// Paints the part of the screen whose first pixel is (left, top). At least as large as on the
/// picture, each screen pixel shows the picture pixel in which it begins; smaller, all those that
/// begin within it as a pyramid's level takes them together. Beyond the edges the pixels there are
/// repeated.
void PaintScaled(Raster& part, int left, int top, const Raster& picture, Pyramid& pyramid,
                 const PictureScaling& scaling);

}  // namespace graphize
