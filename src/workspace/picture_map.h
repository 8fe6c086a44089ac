#pragma once

#include <array>
#include <vector>

#include "base/affine_map.h"
#include "capture/point_store.h"
#include "tracing/blockers.h"

namespace graphize {

struct Workspace;

/// How the image tools have moved what the picture shows, in picture pixels, row downward: from the
/// picture as it was opened to the one that is shown.
struct PictureMap {
  AffineMap Shown;
  std::array<AffineMap, 3> OfAxisPoints;  // as it was when each of them was defined

  bool operator==(const PictureMap&) const = default;
};

/// What lay on the picture before the last image tool.
struct BeforeImageTool {
  AffineMap Map;    // of the tool
  AffineMap Shown;  // PictureMap
  struct Points {
    std::vector<RealPlace> Places;
    std::vector<Certainty> Certainties;
  };
  std::vector<Points> Curves;
  BlockerList Blockers;
};

/// Whether the axes were defined on the picture as it is shown.
bool AxesFitPicture(const Workspace& ws);

/// Before a picture of this height takes the place of the one that is shown: the places of points
/// and the blockers go where an image tool moves them. The axes stay: their three points are whole
/// pixels, and the X axis may not be upright.
void CarryAlong(Workspace& ws, const AffineMap& map, int height);
/// Before the picture from before the tool is shown again: back, to the last bit.
void CarryBack(Workspace& ws, int height);
/// Before the picture, of this height, is shown as it was opened.
void CarryToOpened(Workspace& ws, int height);
/// Another picture is shown: the places of points are lost, axes and blockers are taken to fit it.
void LosePlaces(Workspace& ws);
/// Ids are given anew: there are no points.
void ForgetPlaces(Workspace& ws);

}  // namespace graphize
