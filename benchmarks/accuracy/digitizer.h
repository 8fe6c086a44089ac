#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axis_calibration.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::PixelPosition;

/// One reference point: where it is and the values that it has.
struct ReferencePoint {
  PixelPosition At;
  std::string X, Y;
};

enum class Tracer { Edges, Smooth };

/// One run of "graphize digitize" on one picture, reduced to black and white: its options are
/// gathered, then it runs.
class Digitizer {
 public:
  explicit Digitizer(const Raster& picture);
  ~Digitizer();
  Digitizer(const Digitizer&) = delete;
  Digitizer& operator=(const Digitizer&) = delete;

  /// Origin, X point and Y point, to whole pixels.
  void Calibrate(const std::array<ReferencePoint, 3>& points, bool xLog = false, bool yLog = false);
  /// All grid lines of both directions, as Shift-clicks there remove them.
  void WipeGrid(PixelPosition click);
  void PaintBlocker(PixelPosition centre, int size);
  /// With "Center".
  void Trace(Tracer tracer, PixelPosition start, const std::string& xIncrement = "2",
             const std::string& yIncrement = "3");
  void Scan(PixelPosition from, PixelPosition to, const std::string& xStep = "1",
            const std::string& yStep = "1");

  /// Runs it: where the captured values lie on the picture by these axes. What goes wrong is a
  /// RunTimeError.
  std::vector<PixelPosition> Points(const AxisCalibration& axes) const;

 private:
  void Add(const std::string& option, const std::string& value);

  std::filesystem::path file_;
  int height_;
  std::vector<std::string> words_;
};

}  // namespace graphize::accuracy
