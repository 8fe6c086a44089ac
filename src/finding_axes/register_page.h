#pragma once

#include <string>
#include <vector>

#include "base/affine_map.h"
#include "base/raster.h"
#include "finding_axes/page_labels.h"
#include "finding_axes/page_lines.h"
#include "finding_axes/page_match.h"
#include "raster/picture_operation.h"

namespace graphize {

/// What of a calibrated page others of the same layout are held against. Several threads may use
/// one at a time.
struct PageReference {
  std::string Refusal;  // why nothing can be held against it, in words; empty: it can
  UprightPage Page;
  HeldLines Lines;
  PageLabels Labels;
  double MiddleX = 0, MiddleY = 0;  // of its lines, on the picture
};

PageReference PageReferenceOf(const Raster& picture, PictureOperation& operation);

/// How a page lies to the calibrated one.
struct PageRegistration {
  std::string Refusal;  // why it does not fit, in words; empty: it fits
  bool IsStopped = false;
  std::string Doubt;  // of one that fits: what the labels do not settle
  // From places on the calibrated picture to those on the page, middles of pixels being whole.
  AffineMap ToPage;
  double Worst = 0;  // 90 % of the lines' points that are found lie nearer, picture pixels
  double Rms = 0;    // of those that lie within a pixel
  double ShiftX = 0, ShiftY = 0;  // of the middle of the lines, pixels, downward
  double Turn = 0;                // degrees, clockwise
  double Scale = 1;               // mean of both sides'

  bool Fits() const { return Refusal.empty() && !IsStopped; }
};

/// Registers a page to the calibrated one by its frame and grid: refused unless at least half of
/// the lines' points lie within a pixel and 30 % of each outermost line's, with a root mean square
/// of at most 0.6 pixels, a stretch of at most 1 %, a skew of at most 0.4 degrees, a scale from
/// 0.95 to 1.05, and at most 34 % of the labels of one axis other than those of the calibrated
/// page. Pixels are those of the image that the lines were found on.
PageRegistration RegisterPage(const PageReference& reference, const Raster& page,
                              PictureOperation& operation);

}  // namespace graphize
