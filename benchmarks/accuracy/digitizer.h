#pragma once

#include <array>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "support/plot_drawing.h"
#include "workspace/workspace.h"

namespace graphize::accuracy {

using test::PixelPosition;

/// One reference point: where it is clicked and the values that are typed for it.
struct ReferencePoint {
  PixelPosition At;
  std::string X, Y;
};

enum class Tracer { Edges, Smooth };

/// A user at work on one picture: the commands behind the window, without the window. A message
/// that is no question, such as a refusal, is a RunTimeError.
class Digitizer {
 public:
  /// Opens the picture; one in other colours is reduced to black and white.
  explicit Digitizer(Raster picture);
  Digitizer(const Digitizer&) = delete;
  Digitizer& operator=(const Digitizer&) = delete;

  /// Clicks on origin, X point and Y point, to whole pixels.
  void Calibrate(const std::array<ReferencePoint, 3>& points, bool xLog = false, bool yLog = false);
  /// Shift and both buttons: all grid lines of both directions.
  void WipeGrid(PixelPosition click);
  void PaintBlocker(PixelPosition centre, int size);
  /// A right click with "Center" checked.
  void Trace(Tracer tracer, PixelPosition start, const std::string& xIncrement = "2",
             const std::string& yIncrement = "3");
  /// Drags the right button.
  void Scan(PixelPosition from, PixelPosition to, const std::string& xStep = "1",
            const std::string& yStep = "1");

  /// Where the captured values lie on the picture.
  std::vector<PixelPosition> Points() const;
  const Workspace& State() const { return ws_; }

 private:
  void Press(const char* button);

  Desktop desktop_;
  Workspace ws_;
};

}  // namespace graphize::accuracy
