#include "support/curve_plot.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace graphize::test {

void CurvePlot::Harden() {
  for (std::size_t i = 0; i < Picture.PixelCount(); ++i) {
    std::uint32_t& pixel = Picture.Pixels()[i];
    pixel = (pixel >> 16 & 0xff) < 140 ? kBlue : kWhitePixel;
  }
}

CurveReading CurvePlot::Read(PixelPosition at, ReadingRequest request) const {
  PictureOperation operation;
  request.X = std::round(at.X);
  request.Y = std::round(at.Y);
  return ReadCurve(Picture, FrameOf(Layer().Calibration(), Picture.Width(), Picture.Height()), {},
                   request, operation);
}

double Distance(const CurvePoint& point, const std::vector<PixelPosition>& course) {
  double nearest = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < course.size(); ++i) {
    const PixelPosition a = course[i - 1], b = course[i];
    const double dx = b.X - a.X, dy = b.Y - a.Y;
    const double along = ((point.X - a.X) * dx + (point.Y - a.Y) * dy) / (dx * dx + dy * dy);
    const double t = std::clamp(along, 0.0, 1.0);
    nearest = std::min(nearest, std::hypot(point.X - a.X - t * dx, point.Y - a.Y - t * dy));
  }
  return nearest;
}

}  // namespace graphize::test
