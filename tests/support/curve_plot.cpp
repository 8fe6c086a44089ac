#include "support/curve_plot.h"

#include <algorithm>
#include <limits>

namespace graphize::test {

void CurvePlot::Put(const PlotDrawing& layer, std::uint32_t ink) {
  const Raster cover = layer.GreyPicture();
  for (std::size_t i = 0; i < Picture.PixelCount(); ++i) {
    std::uint32_t mixed = 0xff000000u;
    for (const int shift : {0, 8, 16}) {
      const double share = 1 - (cover.Pixels()[i] & 0xff) / 255.0;
      const double from = Picture.Pixels()[i] >> shift & 0xff, to = ink >> shift & 0xff;
      mixed |= static_cast<std::uint32_t>(std::lround(from + share * (to - from))) << shift;
    }
    Picture.Pixels()[i] = mixed;
  }
}

void CurvePlot::Frame(std::uint32_t ink) {
  PlotDrawing layer = Layer();
  layer.Frame({.Thickness = 1.4}, 5, 5);
  layer.Digits(layer.Place(0.4, -0.06), "405");
  Put(layer, ink);
}

void CurvePlot::Grid(std::uint32_t ink) {
  PlotDrawing layer = Layer();
  layer.LinesAtU(Linear(5), {});
  layer.LinesAtV(Linear(4), {});
  Put(layer, ink);
}

std::vector<PixelPosition> CurvePlot::Curve(const std::function<double(double)>& v,
                                            const Stroke& stroke, std::uint32_t ink) {
  PlotDrawing layer = Layer();
  std::vector<PixelPosition> course = layer.Curve(v, stroke, 0.04, 0.96);
  Put(layer, ink);
  return course;
}

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
  return ReadCurve(Picture, FrameOf(Layer().Calibration(), kWidth, kHeight), {}, request,
                   operation);
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
