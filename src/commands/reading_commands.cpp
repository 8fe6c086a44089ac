#include "commands/reading_commands.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/curve_surroundings.h"
#include "commands/extraction_commands.h"
#include "commands/picture_reading.h"
#include "commands/preview_commands.h"
#include "finding_axes/find_surroundings.h"

namespace graphize {

namespace {

std::string Hundredths(double pixels) {
  const long hundredths = std::lround(100 * pixels);
  return std::to_string(hundredths / 100) + (hundredths % 100 < 10 ? ".0" : ".") +
         std::to_string(hundredths % 100);
}

}  // namespace

Certainty CertaintyOf(const CurvePoint& point) {
  return {static_cast<float>(point.Sigma * point.AcrossX),
          static_cast<float>(point.Sigma * point.AcrossY), point.IsBridged ? 1u : 0u};
}

std::string HowSure(const CurveReading& reading) {
  std::vector<double> sigmas;
  for (const CurvePoint& point : reading.Points) sigmas.push_back(point.Sigma);
  const auto middle = sigmas.begin() + static_cast<std::ptrdiff_t>(sigmas.size() / 2);
  std::nth_element(sigmas.begin(), middle, sigmas.end());
  const double median = *middle;
  std::string text = Tr("uncertain by %1 pixels, at most by %2", Hundredths(median),
                        Hundredths(*std::max_element(sigmas.begin(), sigmas.end())));
  const auto bridged = std::count_if(reading.Points.begin(), reading.Points.end(),
                                     [](const CurvePoint& point) { return point.IsBridged; });
  if (bridged > 0)
    text +=
        "; " + TrCount("%1 point where the curve is not seen",
                       "%1 points where the curve is not seen", static_cast<long long>(bridged));
  constexpr std::size_t kTold = 2;
  const std::size_t doubts = reading.Doubts.size();
  for (std::size_t i = 0; i < std::min(doubts, kTold); ++i) text += "; " + reading.Doubts[i];
  if (doubts > kTold)
    text += "; " + TrCount("and %1 doubt more", "and %1 doubts more",
                           static_cast<long long>(doubts - kTold));
  return text;
}

std::string NoPointAt(const std::vector<float>& xs) {
  constexpr std::size_t kNamed = 6;
  if (xs.empty()) return {};
  std::string names;
  for (std::size_t i = 0; i < std::min(xs.size(), kNamed); ++i)
    names += (i > 0 ? ", " : "") + ShortestText(xs[i]);
  if (xs.size() > kNamed) names += ", ...";
  return Tr("the curve has no point at X = %1", names);
}

std::vector<ReadPlace> PlacesOf(const std::vector<CurvePoint>& points) {
  std::vector<ReadPlace> places;
  for (const CurvePoint& point : points) places.push_back({point.X, point.Y, CertaintyOf(point)});
  return places;
}

namespace {

/// The reading that is shown, where it is the step's.
std::optional<CurveReading> ShownReading(Workspace& ws, const ReadStep& step) {
  if (!ws.reading.Curve) return std::nullopt;
  const CurvePreview& shown = *ws.reading.Curve;
  const PlotPixel& first = shown.Clicks.front();
  const auto isSame = [](const PlotPixel& a, const PlotPixel& b) {
    return a.X == b.X && a.Y == b.Y;
  };
  const bool isIt =
      static_cast<float>(first.X) == step.X && static_cast<float>(first.Y) == step.Y &&
      std::equal(shown.Clicks.begin() + 1, shown.Clicks.end(), step.Through.begin(),
                 step.Through.end(), isSame) &&
      static_cast<float>(shown.Tolerance) / ReadingControl::kAsFound == step.Tolerance &&
      shown.From == ReadFromNow(ws);
  return isIt ? std::optional(shown.Reading) : std::nullopt;
}

CurveReading ReadOffPicture(Workspace& ws, const Desktop& desktop, const ReadStep& step) {
  ReadingRequest request{.X = step.X, .Y = step.Y, .Tolerance = step.Tolerance};
  for (const PlotPixel& at : step.Through) request.Through.push_back({at.X, at.Y});
  request.Walls = WallsOf(ws.blockers);
  PlotSurroundings around;
  CurveReading reading =
      ReadBeside(ws, desktop, Marked("Reading the curve..."), [&](PictureOperation& operation) {
        operation.To = 0.2;
        around = FindSurroundings(ws.plot.Pixels, operation);
        operation.From = operation.To;
        const AxesFrame frame =
            ReadingFrame(ws.calibration, ws.plot.Pixels, around, step.X, step.Y);
        return ReadCurve(ws.plot.Pixels, frame, around, request, operation);
      });
  // What is read there would be the frame, a number of the axis or a title.
  if (!reading.Points.empty() && IsBeyondFrame(ws.plot, ws.calibration, around, step.X, step.Y)) {
    reading.Points.clear();
    reading.Refusal = Tr("%1,%2 lies outside the axes", ShortestText(step.X), ShortestText(step.Y));
  }
  return reading;
}

/// Leaves the points of the step's density.
CurveReading ThinnedTo(const ReadStep& step, const Workspace& ws, CurveReading reading) {
  std::vector<float> without;
  reading.Points =
      Thinned(std::move(reading.Points), step.Density, ws.calibration, ws.plot.Height(), &without);
  // Before the others: of many doubts only the first ones are told.
  if (!without.empty()) reading.Doubts.insert(reading.Doubts.begin(), NoPointAt(without));
  if (!reading.IsStopped && reading.Refusal.empty() && reading.Points.empty())
    reading.Refusal = Tr("the curve has no point there");
  return reading;
}

}  // namespace

CurveReading ReadAt(Workspace& ws, const Desktop& desktop, const ReadStep& step) {
  return ThinnedTo(step, ws, ReadOffPicture(ws, desktop, step));
}

std::optional<Outcome> ReadingRefused(const Workspace& ws, const ReadStep& step) {
  if (auto refused = ReadingRefused(ws)) return refused;
  if (auto outside = RefusedAt(ws, step.X, step.Y)) return outside;
  for (const PlotPixel& at : step.Through)
    if (auto outside = RefusedAt(ws, static_cast<float>(at.X), static_cast<float>(at.Y)))
      return outside;
  if (!(step.Tolerance >= kLeastTolerance && step.Tolerance <= kMostTolerance))
    return Refused("the tolerance of a reading is a number from 0.5 to 2");
  return std::nullopt;
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ReadStep& step) {
  if (auto refused = ReadingRefused(ws, step)) return *refused;
  std::optional<CurveReading> shown = ShownReading(ws, step);
  const CurveReading reading =
      shown ? ThinnedTo(step, ws, std::move(*shown)) : ReadAt(ws, desktop, step);
  if (reading.IsStopped) {
    ws.status.Status = Tr("Stopped: nothing was read");
    return Nothing("it was stopped");
  }
  if (!reading.Refusal.empty()) {
    ws.status.Status = Tr("No curve: %1", reading.Refusal);
    return Refused(reading.Refusal);
  }
  if (auto refused = RoomRefused(ws.store, reading.Points.size())) return *refused;
  CaptureRead(ws, desktop, PlacesOf(reading.Points));
  const std::string sure = HowSure(reading);
  const auto count = static_cast<int>(reading.Points.size());
  ws.status.Status = TrCount("Read %1 point, %2", "Read %1 points, %2", count, sure);
  return {.Points = count, .Remark = sure};
}

}  // namespace graphize
