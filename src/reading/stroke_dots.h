#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_path.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// A dot of a dotted stroke.
struct StrokeDot {
  double X = 0, Y = 0;  // its centre of mass
  double Width = 0;     // the side of a square of its area, pixels
};

/// The dots that a path goes over, in its order, which are about as long as wide and have paper
/// between them; none where the path is no row of such.
std::vector<StrokeDot> DotsOn(const InkMap& map, const std::vector<PathPixel>& path);

/// Of dots, of which there are some.
double WidthOf(const std::vector<StrokeDot>& dots);

/// The dots' centres, along the way from dot to dot, are what is seen of the stroke: a cut beside
/// the middle of a round dot tells nothing of the way through it.
void TakeCentres(std::vector<StrokeSample>& samples, const std::vector<StrokeDot>& dots,
                 double width);

}  // namespace graphize
