#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "reading/stroke_samples.h"

namespace graphize {

/// Pixels of a map that were made walls, to be given back.
class MapWalls {
 public:
  void Add(InkMap& map, int x, int y) {
    std::uint8_t& value = map.Cell(x, y);
    covered_.emplace_back(PathPixel{x, y}, value);
    value = InkMap::kWall;
  }
  void TakeOver(MapWalls&& other) {
    covered_.insert(covered_.end(), other.covered_.begin(), other.covered_.end());
    other.covered_.clear();
  }
  void TakeDown(InkMap& map) const {
    for (auto pixel = covered_.rbegin(); pixel != covered_.rend(); ++pixel)
      map.Cell(pixel->first.X, pixel->first.Y) = pixel->second;
  }
  void PutUp(InkMap& map) const {
    for (const auto& [at, value] : covered_) map.Cell(at.X, at.Y) = InkMap::kWall;
  }

 private:
  std::vector<std::pair<PathPixel, std::uint8_t>> covered_;
};

/// A stroke followed to one side.
struct HalfStroke {
  std::vector<PathPixel> Path;
  // First and last pixels of the path, by index, between which it lies upon another stroke of its
  // colour: what is seen there is the middle of both.
  std::vector<std::pair<int, int>> Merged;
};

/// Follows the stroke from `start` to one side (`step` 1 or -1) as FindHalfPath does, and at every
/// place where other ink of the same colour joins looks which arms belong together: those that
/// cubics through both bend least for, of both strokes where four arms are seen (a stroke goes on
/// as smoothly as it came). Strokes that cross at a small angle are one for a while: their arms are
/// taken from before and behind that. The arms that it does not take are walled off in the map,
/// which `walls` can give back. Where two ways are as good, a doubt says so.
HalfStroke FollowThroughCrossings(InkMap& map, PathPixel start, int step, const PathCosts& costs,
                                  std::span<const PathPixel> through, const StrokeKind& kind,
                                  const PictureOperation& operation, MapWalls& walls,
                                  std::vector<std::string>& doubts);

}  // namespace graphize
