#include "digitizer.h"

#include <cmath>
#include <random>
#include <sstream>

#include "base/checksum.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "batch/batch.h"
#include "calibration/transform.h"
#include "codecs/picbuf.h"

namespace graphize::accuracy {

namespace {

constexpr int kBmp = 3;

std::string PlaceText(PixelPosition at) {
  return std::to_string(std::lround(at.X)) + "," + std::to_string(std::lround(at.Y));
}

}  // namespace

Digitizer::Digitizer(const Raster& picture)
    : file_(std::filesystem::temp_directory_path() /
            ("graphize-accuracy-" + HexText(std::random_device()()) + ".bmp")),
      height_(picture.Height()) {
  SavePicture(file_, kBmp, 0, picture);
  words_ = {"digitize", file_.string(), "--black-white", "--format", "csv", "-o", "-"};
}

Digitizer::~Digitizer() {
  std::error_code ignored;
  std::filesystem::remove(file_, ignored);
}

void Digitizer::Add(const std::string& option, const std::string& value) {
  words_.push_back("--" + option);
  words_.push_back(value);
}

void Digitizer::Calibrate(const std::array<ReferencePoint, 3>& points, bool xLog, bool yLog) {
  Add("origin", PlaceText(points[0].At) + ":" + points[0].X + "," + points[0].Y);
  Add("x-axis", PlaceText(points[1].At) + ":" + points[1].X);
  Add("y-axis", PlaceText(points[2].At) + ":" + points[2].Y);
  if (xLog) words_.push_back("--x-log");
  if (yLog) words_.push_back("--y-log");
}

void Digitizer::WipeGrid(PixelPosition click) {
  Add("grid", "both:" + PlaceText(click));
}

void Digitizer::PaintBlocker(PixelPosition centre, int size) {
  Add("block", PlaceText(centre) + ":" + std::to_string(size));
}

void Digitizer::Trace(Tracer tracer, PixelPosition start, const std::string& xIncrement,
                      const std::string& yIncrement) {
  Add("algorithm", tracer == Tracer::Smooth ? "smooth" : "peaks");
  Add("x-increment", xIncrement);
  Add("y-increment", yIncrement);
  Add("trace", PlaceText(start));
}

void Digitizer::Scan(PixelPosition from, PixelPosition to, const std::string& xStep,
                     const std::string& yStep) {
  Add("x-increment", xStep);
  Add("y-increment", yStep);
  Add("scan", PlaceText(from) + "," + PlaceText(to));
}

std::vector<PixelPosition> Digitizer::Points(const AxisCalibration& axes) const {
  std::ostringstream err;
  std::stringstream table;
  if (RunBatch(words_, {table, err}) != 0) {
    // A result like others: a trace that started on a lone black pixel.
    if (err.str().find("no points were captured") != std::string::npos) return {};
    throw RunTimeError(err.str());
  }
  std::vector<PixelPosition> points;
  std::string line;
  std::getline(table, line);  // the header
  while (std::getline(table, line)) {
    const float x = ToSingle(LeadingNumber(line));
    const float y = ToSingle(LeadingNumber(line.substr(line.find(',') + 1)));
    const PlotPosition at = PositionOfReal(axes, height_, x, y);
    points.push_back({at.Column, at.Row});
  }
  return points;
}

}  // namespace graphize::accuracy
