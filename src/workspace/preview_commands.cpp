#include "workspace/preview_commands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/tokens.h"
#include "base/translation.h"
#include "data/x_grid.h"
#include "raster/paper.h"
#include "tracing/extraction_context.h"
#include "workspace/do.h"
#include "workspace/extraction_commands.h"
#include "workspace/reading_commands.h"

namespace graphize {

namespace {

ReadFrom ReadFromNow(Workspace& ws) {
  return {PictureNumber(ws.plot), ws.calibration, ws.blockers};
}

/// The density that the boxes ask for; `fault` says what is wrong with what was typed.
ReadingDensity DensityOf(const Workspace& ws, std::string& fault) {
  using Kind = ReadingDensity::Kind;
  const ReadingControl& control = ws.reading;
  ReadingDensity density{.Is = control.Density};
  if (density.Is == Kind::Every) {
    constexpr int kMost = 32767;
    const auto pixels = IntegerText(control.Pixels, 1, kMost);
    if (pixels)
      density.Pixels = *pixels;
    else
      fault = Tr("\"%1\" is no whole number from 1 to %2", control.Pixels, kMost);
  } else if (density.Is == Kind::AtX) {
    const XGrid grid = ReadXGrid(control.Xs);
    for (const double x : grid.Values) density.Xs.push_back(static_cast<float>(x));
    if (!ws.calibration.IsComplete())
      fault = Tr("X values mean something when the axes are defined");
    else if (!grid.Fault.empty())
      fault = grid.Fault;
    else if (density.Xs.empty())
      fault = Tr("Type the X values, such as 0, 2.5, 7 or 0:0.5:10");
  }
  return density;
}

ReadStep StepOfReading(const Workspace& ws, const std::vector<PlotPixel>& clicks, int tolerance) {
  std::string fault;
  return {.X = static_cast<float>(clicks.front().X),
          .Y = static_cast<float>(clicks.front().Y),
          .Density = DensityOf(ws, fault),
          .Tolerance = static_cast<float>(tolerance) / ReadingControl::kAsFound,
          .Through = {clicks.begin() + 1, clicks.end()}};
}

/// The pixels of which a good part is the ink.
BitMap InkOf(const InkMap& map) {
  constexpr std::uint8_t kGoodPart = InkMap::kFull / 3;
  BitMap ink(map.Width, map.Height);
  for (int y = 0; y < map.Height; ++y)
    for (int x = 0; x < map.Width; ++x)
      if (const std::uint8_t share = map.At(x, y); share >= kGoodPart && share <= InkMap::kFull)
        ink.Set(x, y);
  return ink;
}

/// Of some colours that are far from each other and from paper, the one farthest from the ink's.
Colour ColourBeside(const Raster& picture, const BitMap& ink) {
  static constexpr std::array<Colour, 4> kColours = {MakeColour(220, 0, 170),
                                                     MakeColour(0, 150, 60), MakeColour(0, 90, 255),
                                                     MakeColour(255, 120, 0)};
  Rgb sum;
  float count = 0;
  for (int y = 0; y < ink.Height(); ++y)
    for (int x = 0; x < ink.Width(); ++x)
      if (ink.Get(x, y)) {
        sum = sum + RgbOf(picture.Row(y)[x]);
        ++count;
      }
  const Rgb mean = 1 / std::max(count, 1.0f) * sum;
  const auto distance = [&](Colour colour) { return Length(RgbOf(PixelOfColour(colour)) - mean); };
  return *std::max_element(kColours.begin(), kColours.end(),
                           [&](Colour a, Colour b) { return distance(a) < distance(b); });
}

void Say(Workspace& ws, const std::string& text) {
  ws.reading.Reading = text;
  ws.status.Status = text.substr(0, text.find('\n'));
}

/// The points that the boxes ask for, and how sure they are.
void ShowReading(Workspace& ws) {
  CurvePreview& shown = *ws.reading.Curve;
  std::string fault;
  const ReadingDensity density = DensityOf(ws, fault);
  shown.Points.clear();
  if (fault.empty()) {
    shown.Points = Thinned(shown.Reading.Points, density, ws.calibration, ws.plot.Height());
    if (shown.Points.empty()) fault = Tr("The curve has no point there");
  }
  if (!fault.empty()) return Say(ws, fault);
  std::string text =
      PointCount(static_cast<long long>(shown.Points.size())) + ", " +
      HowSure({.Points = shown.Points, .Kind = {}, .Refusal = {}, .Doubts = {}, .Map = {}});
  for (const std::string& doubt : shown.Reading.Doubts) text += "\n" + doubt;
  if (!CanRead(ws)) text += "\n" + Tr("Define the axes to take it over");
  Say(ws, text);
}

/// Reads the curve that was clicked at these places. False when nothing was read: what was shown
/// stays, and the label says why.
bool Read(Workspace& ws, const Desktop& desktop, std::vector<PlotPixel> clicks) {
  ws.reading.Reading = Tr("Reading the curve...");
  ReadFrom from = ReadFromNow(ws);
  const int tolerance = ws.reading.Tolerance;
  ReadStep step = StepOfReading(ws, clicks, tolerance);
  step.Density = {};  // which is another question
  CurveReading reading = ReadAt(ws, desktop, step);
  if (reading.IsStopped || !reading.Refusal.empty()) {
    const std::string why =
        reading.IsStopped ? Tr("Stopped: nothing was read") : Tr("No curve: %1", reading.Refusal);
    if (ws.reading.Curve) ShowReading(ws);
    Say(ws, why + (ws.reading.Curve ? "\n" + ws.reading.Reading : ""));
    return false;
  }
  CurvePreview shown{.Clicks = std::move(clicks), .Tolerance = tolerance, .From = std::move(from)};
  shown.Ink = InkOf(std::exchange(reading.Map, {}));
  shown.Reading = std::move(reading);
  shown.MarkColour = ColourBeside(ws.plot.Pixels, shown.Ink);
  ws.reading.Curve = std::move(shown);
  ShowReading(ws);
  return true;
}

}  // namespace

void ClickCurve(Workspace& ws, const Desktop& desktop, int x, int y) {
  constexpr int kSamePlace = 2;  // pixels: the second press of a double click
  std::vector<PlotPixel> clicks;
  if (ws.reading.Curve) clicks = ws.reading.Curve->Clicks;
  const auto isHere = [&](const PlotPixel& click) {
    return std::abs(click.X - x) <= kSamePlace && std::abs(click.Y - y) <= kSamePlace;
  };
  if (std::any_of(clicks.begin(), clicks.end(), isHere)) return;
  clicks.push_back({x, y});
  Read(ws, desktop, std::move(clicks));
}

void BlockReading(Workspace& ws, const Desktop& desktop, float x, float y) {
  Do(ws, desktop, BlockStep{x, y, ws.blockSize});
  ReadAgain(ws, desktop);
}

void SetTolerance(Workspace& ws, int percent) {
  ws.reading.Tolerance = std::clamp(percent, ReadingControl::kNarrowest, ReadingControl::kWidest);
}

void ReadAgain(Workspace& ws, const Desktop& desktop) {
  if (ws.reading.Curve) Read(ws, desktop, ws.reading.Curve->Clicks);
}

void SetDensity(Workspace& ws, ReadingDensity::Kind density) {
  ws.reading.Density = density;
  if (ws.reading.Curve) ShowReading(ws);
}

void TypeDensity(Workspace& ws, const std::string& text) {
  ReadingControl& control = ws.reading;
  (control.Density == ReadingDensity::Kind::AtX ? control.Xs : control.Pixels) = text;
  if (control.Curve) ShowReading(ws);
}

void TakeReading(Workspace& ws, const Desktop& desktop) {
  if (!CanTakeReading(ws)) return;
  const CurvePreview& shown = *ws.reading.Curve;
  const Outcome outcome = Do(ws, desktop, StepOfReading(ws, shown.Clicks, shown.Tolerance));
  if (outcome.IsDone()) ws.reading.Curve.reset();
  Say(ws, ws.status.Status);
}

bool CanTakeReading(const Workspace& ws) {
  return HasReading(ws) && !ws.reading.Curve->Points.empty() && CanRead(ws);
}

void DropReading(Workspace& ws) {
  ws.reading.Curve.reset();
  ws.reading.Reading.clear();
}

bool HasReading(const Workspace& ws) {
  return ws.mode == Mode::ReadCurve && ws.reading.Curve.has_value();
}

void DropStaleReading(Workspace& ws) {
  if (!IsReading(ws.mode)) return DropReading(ws);
  if (ws.reading.Curve && ws.reading.Curve->From != ReadFromNow(ws)) DropReading(ws);
}

}  // namespace graphize
