#include "commands/preview_commands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/tokens.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/reading_commands.h"
#include "commands/symbol_preview.h"
#include "data/x_grid.h"
#include "raster/paper.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

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

/// The mean colour of these pixels.
Rgb MeanOf(const Raster& picture, const BitMap& ink) {
  Rgb sum;
  float count = 0;
  for (int y = 0; y < ink.Height(); ++y)
    for (int x = 0; x < ink.Width(); ++x)
      if (ink.Get(x, y)) {
        sum = sum + RgbOf(picture.Row(y)[x]);
        ++count;
      }
  return 1 / std::max(count, 1.0f) * sum;
}

/// The points that the boxes ask for, and how sure they are.
void ShowReading(Workspace& ws) {
  CurvePreview& shown = *ws.reading.Curve;
  std::string fault;
  const ReadingDensity density = DensityOf(ws, fault);
  std::vector<float> without;
  shown.Points.clear();
  if (fault.empty()) {
    shown.Points =
        Thinned(shown.Reading.Points, density, ws.calibration, ws.plot.Height(), &without);
    if (shown.Points.empty()) fault = Tr("The curve has no point there");
  }
  if (!fault.empty()) return SayReading(ws, fault);
  CurveReading parts;
  parts.Points = shown.Points;
  std::string text =
      PointCount(static_cast<long long>(shown.Points.size())) + ", " + HowSure(parts);
  if (!without.empty()) text += "\n" + NoPointAt(without);
  for (const std::string& doubt : shown.Reading.Doubts) text += "\n" + doubt;
  SayReading(ws, text + NoteOnAxes(ws));
}

/// Why nothing was read; for a further place that is not the curve's, too.
std::string WhyNotRead(const CurveReading& reading, bool isFurther, PlotPixel last) {
  if (reading.IsStopped) return Tr("Stopped: nothing was read");
  if (!reading.Refusal.empty()) return Tr("No curve: %1", reading.Refusal);
  const auto isLast = [&](const PathPixel& at) { return at.X == last.X && at.Y == last.Y; };
  if (isFurther && std::any_of(reading.Missed.begin(), reading.Missed.end(), isLast))
    return Tr("The curve was not found to go through %1,%2: that click is left out", last.X,
              last.Y);
  return {};
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
  const bool isFurther = ws.reading.Curve && clicks.size() > ws.reading.Curve->Clicks.size();
  if (const std::string why = WhyNotRead(reading, isFurther, clicks.back()); !why.empty()) {
    if (ws.reading.Curve) ShowReading(ws);
    SayReading(ws, why + (ws.reading.Curve ? "\n" + ws.reading.Reading : ""));
    return false;
  }
  CurvePreview shown{.Clicks = std::move(clicks), .Tolerance = tolerance, .From = std::move(from)};
  shown.Ink = InkOf(std::exchange(reading.Map, {}));
  shown.Reading = std::move(reading);
  shown.MarkColour = ColourBeside(MeanOf(ws.plot.Pixels, shown.Ink), shown.Reading.Inks);
  ws.reading.Curve = std::move(shown);
  ShowReading(ws);
  return true;
}

/// The hint of the mode, in the place of the other one: clicks mean something else while a reading
/// is shown.
void HintOnReading(Workspace& ws) {
  if (ws.mode != Mode::ReadCurve && ws.mode != Mode::FindSymbols) return;
  const std::string idle = Tr(ModeHint(ws.mode)), shown = Tr(ReadingShownHint(ws.mode));
  if (ws.status.Hint == idle || ws.status.Hint == shown)
    ws.status.Hint = HasReading(ws) ? shown : idle;
}

}  // namespace

ReadFrom ReadFromNow(Workspace& ws) {
  return {PictureNumber(ws.plot), ws.calibration, ws.blockers};
}

Colour ColourBeside(Rgb ink, const std::vector<Rgb>& others) {
  // Far from each other and from paper.
  static constexpr std::array<Colour, 4> kColours = {MakeColour(220, 0, 170),
                                                     MakeColour(0, 150, 60), MakeColour(0, 90, 255),
                                                     MakeColour(255, 120, 0)};
  return *std::ranges::max_element(kColours, {}, [&](Colour colour) {
    const Rgb mark = RgbOf(PixelOfColour(colour));
    float least = Length(mark - ink);
    for (const Rgb& other : others) least = std::min(least, Length(mark - other));
    return least;
  });
}

Rgb InkNear(const Raster& picture, int x, int y) {
  constexpr int kReach = 2, kAround = 7;  // pixels
  const auto visit = [&](int reach, const auto& use) {
    for (int row = std::max(y - reach, 0); row <= std::min(y + reach, picture.Height() - 1); ++row)
      for (int column = std::max(x - reach, 0); column <= std::min(x + reach, picture.Width() - 1);
           ++column)
        use(RgbOf(picture.Row(row)[column]));
  };
  Rgb sum;
  float count = 0;
  visit(kAround, [&](Rgb colour) {
    sum = sum + colour;
    ++count;
  });
  const Rgb mean = 1 / std::max(count, 1.0f) * sum;
  Rgb best = mean;
  visit(kReach, [&](Rgb colour) {
    if (Length(colour - mean) > Length(best - mean)) best = colour;
  });
  return best;
}

void SayReading(Workspace& ws, const std::string& text) {
  ws.reading.Reading = text;
  ws.reading.SaidIn = ws.mode;
  ws.reading.SaidPoints = ws.store.CaptureCount;
  ws.status.Status = text.substr(0, text.find('\n'));
}

std::string NoteOnAxes(const Workspace& ws) {
  if (ws.calibration.IsComplete()) return {};
  return "\n" + Tr("No axes yet: places are kept, values come when the axes are defined");
}

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

bool TakeBackClick(Workspace& ws, const Desktop& desktop) {
  if (!HasReading(ws) || !ws.reading.Curve || ws.reading.Curve->Clicks.size() < 2) return false;
  std::vector<PlotPixel> clicks = ws.reading.Curve->Clicks;
  clicks.pop_back();
  return Read(ws, desktop, std::move(clicks));
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
  FindAgain(ws, desktop);
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
  const auto& curve = ws.reading.Curve;
  const Step step =
      curve ? Step(StepOfReading(ws, curve->Clicks, curve->Tolerance)) : Step(StepOfSymbols(ws));
  const Outcome outcome = Do(ws, desktop, step);
  if (outcome.IsDone()) DropReading(ws);
  // A refusal is its reason; a run-time error was told in a box.
  SayReading(ws, outcome.Is == Outcome::How::Refused ? outcome.Reason : ws.status.Status);
}

bool CanTakeReading(const Workspace& ws) {
  if (!HasReading(ws)) return false;
  return ws.reading.Curve ? !ws.reading.Curve->Points.empty() : CanTakeSymbols(ws);
}

void DropReading(Workspace& ws) {
  ws.reading.Curve.reset();
  ws.reading.Symbols.reset();
  ws.reading.Reading.clear();
}

bool HasReading(const Workspace& ws) {
  return (ws.mode == Mode::ReadCurve && ws.reading.Curve) ||
         (ws.mode == Mode::FindSymbols && ws.reading.Symbols);
}

void DropStaleReading(Workspace& ws) {
  const ReadingControl& control = ws.reading;
  if (control.Curve || control.Symbols) {
    const ReadFrom& from = control.Curve ? control.Curve->From : control.Symbols->From;
    if (!HasReading(ws) || from != ReadFromNow(ws)) DropReading(ws);
  }
  const bool isShown = control.Curve || control.Symbols;
  if (control.SaidIn != ws.mode || (!isShown && control.SaidPoints != ws.store.CaptureCount))
    ws.reading.Reading.clear();
  HintOnReading(ws);
  // That window stands beside the commands of others.
  if (ws.form == Form::Ink && ws.ink.Picture != PictureNumber(ws.plot)) ws.form = Form::None;
  if (ws.form != Form::Ink) ws.ink = {};
}

}  // namespace graphize
