#include "tracing/traced_stroke.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "base/raster.h"

namespace graphize {
namespace {

/// The place by walking from point to point.
Vector Walked(const TracedStroke& stroke, double length) {
  for (std::size_t i = 1; i < stroke.Size(); ++i) {
    const double before = stroke.LengthAt(i - 1), behind = stroke.LengthAt(i);
    if (length < behind && before < behind)
      return stroke.At(i - 1) +
             std::max(length - before, 0.0) / (behind - before) * (stroke.At(i) - stroke.At(i - 1));
  }
  return stroke.At(stroke.Size() - 1);
}

TEST(TracedStroke, PlacesAlongItAreFoundHoweverUnevenlyItsPointsLie) {
  const Raster paper = Raster::Filled(9, 9, kWhitePixel);
  InkSight sight(paper);
  std::mt19937 random(GTEST_FLAG_GET(random_seed) + 5u);
  const auto upTo = [&random](double most) {
    return std::uniform_real_distribution(0.0, most)(random);
  };
  for (int kind = 0; kind < 60; ++kind) {
    std::vector<Vector> places{{upTo(9), upTo(9)}};
    const int count = kind < 20 ? kind : 200;
    for (int i = 0; i < count; ++i) {
      const double steps[] = {0, 0.3, 1, upTo(4), kind % 3 == 0 && random() % 50 == 0 ? 9e4 : 1};
      places.push_back(places.back() + Vector{steps[random() % 5], steps[random() % 5]});
    }
    const TracedStroke stroke(sight, places, {});
    std::vector<double> lengths{-1, 0, stroke.Length(), stroke.Length() + 1};
    for (std::size_t i = 0; i < stroke.Size(); ++i)
      for (const double length : {stroke.LengthAt(i), std::nextafter(stroke.LengthAt(i), 0.0)})
        lengths.push_back(length);
    for (int i = 0; i < 300; ++i) lengths.push_back(upTo(stroke.Length()));
    for (const double length : lengths) {
      const Vector found = stroke.AtLength(length), walked = Walked(stroke, length);
      ASSERT_NEAR(found.X, walked.X, 1e-9) << kind << ' ' << length;
      ASSERT_NEAR(found.Y, walked.Y, 1e-9) << kind << ' ' << length;
    }
  }
}

}  // namespace
}  // namespace graphize
