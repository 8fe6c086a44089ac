#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/bit_map.h"
#include "base/palette.h"

namespace graphize {

/// What is painted above the raster and is never in it.
struct PlotOverlay {
  /// A position on the picture, row downward; whole numbers are the pixels' centres.
  struct Point {
    float X = 0, Y = 0;
  };
  /// Pixels, all included.
  struct Rectangle {
    int Left = 0, Top = 0, Right = 0, Bottom = 0;

    bool operator==(const Rectangle&) const = default;
  };
  /// The points of a curve.
  struct Marks {
    Colour MarkColour = kBlack;
    std::vector<Point> Points;
  };
  std::vector<Marks> Curves;  // a later one's lie above
  std::vector<Point> DataPoints;
  Colour DataColour = kBlack;
  std::optional<Point> LastPoint;
  Colour LastColour = kBlack;
  // While points are edited: all of them. Those that are selected always, the one under the
  // pointer.
  std::vector<Point> EditPoints, Selected;
  std::optional<Point> Near;
  Colour EditColour = kBlack, SelectedColour = kBlack;
  std::vector<Point> AxisPoints;
  Colour AxisColour = kBlack;

  /// A position between pixels; a pixel's centre has whole numbers.
  struct Position {
    double X = 0, Y = 0;
  };
  /// What was read off the picture and is not taken over yet.
  struct Preview {
    struct Course {
      std::vector<Position> Way;
      bool IsDoubtful = false;
    };
    const BitMap* Ink = nullptr;  // pixels that count as the curve's; a record's, not owned
    std::vector<Course> Courses;
    std::vector<Position> Points;  // that would be captured
    std::vector<Position> Clicks;
    /// Around a symbol.
    struct Ring {
      Position At;
      double Width = 0, Height = 0;  // of the symbol, pixels
      bool IsDoubtful = false, IsLeftOut = false, IsCurrent = false;
    };
    std::vector<Ring> Rings;
    bool IsCurrent = false;  // of several, the one that is looked at
    Colour MarkColour = kBlack;
  };
  std::vector<Preview> Previews;

  /// Thin lines and words over the picture, which are seen on any ground.
  struct Sketch {
    enum class Side { Right, Left, Above, Below };
    struct Line {
      Position From, To;
    };
    struct Words {
      Position At;
      std::string Text;
      Side Beside = Side::Right;  // of the place
    };
    Colour MarkColour = kBlack;
    std::vector<Line> Lines;
    std::vector<Words> Texts;
    std::vector<Position> Crosses;  // to a part of a pixel
  };
  std::vector<Sketch> Sketches;
};

inline bool Contains(const PlotOverlay::Rectangle& area, const PlotOverlay::Point& point) {
  return point.X >= static_cast<float>(area.Left) && point.X <= static_cast<float>(area.Right) &&
         point.Y >= static_cast<float>(area.Top) && point.Y <= static_cast<float>(area.Bottom);
}

/// Lengths of marks are logical pixels, the same at every zoom. They have an edge of this width
/// around them, which makes them stand out from any ground.
inline constexpr int kMarkEdge = 1;
/// How far, without its edge, the marks of a curve's point, a data point, the last point and an
/// axis point reach from their pixel.
inline constexpr int kCurvePointReach = 1;
inline constexpr int kDataPointReach = 2;
inline constexpr int kLastPointReach = 8;
inline constexpr int kAxisPointReach = 9;
/// And the frame around a selected point.
inline constexpr int kEditMarkReach = 6;
/// The largest of them all, with its edge.
inline constexpr int kLargestReach = kAxisPointReach + kMarkEdge;

}  // namespace graphize
