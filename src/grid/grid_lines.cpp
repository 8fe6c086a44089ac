#include "grid/grid_lines.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/translation.h"
#include "grid/grid_search.h"
#include "grid/line_thickness.h"
#include "grid/stroke_protection.h"

namespace graphize {

namespace {

/// Shows how far the work is and asks whether it may go on; once stopped it stays so.
class Progress {
 public:
  Progress(const Desktop& desktop, StatusBar& status) : desktop_(desktop), status_(status) {
    status_.Status = Tr("Removing grid lines please wait...");
    status_.ProgressVisible = true;
    status_.ProgressValue = 0;
  }
  ~Progress() { status_.ProgressVisible = false; }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void At(double percent) { status_.ProgressValue = static_cast<int>(percent); }
  bool GoOn() {
    stopped_ = stopped_ || desktop_.EscapeHeld();
    desktop_.Pump();
    return !stopped_;
  }
  bool Stopped() const { return stopped_; }

 private:
  const Desktop& desktop_;
  StatusBar& status_;
  bool stopped_ = false;
};

/// The lines may have lost pixels to others since they were found.
void Refresh(const BlackMap& map, GridLine& line) {
  ReadRuns(map.Bits, 0.5 * line.Thickness + 1, line.Thickest + line.Thickness, line);
  ClassifyColumns(line);
}

std::string ResultText(const GridRemoval& removal, GridDirection direction) {
  const bool isX = direction == GridDirection::X;
  std::string lines =
      isX ? TrCount("%1 X grid line removed", "%1 X grid lines removed", removal.Lines)
          : TrCount("%1 Y grid line removed", "%1 Y grid lines removed", removal.Lines);
  if (removal.Stopped) return Tr("Stopped: %1", lines);
  if (removal.Lines > 0) return lines;
  return isX ? Tr("No X grid lines found") : Tr("No Y grid lines found");
}

}  // namespace

GridRemoval RemoveGridLines(PlotImage& image, const AxisCalibration& calibration,
                            const Desktop& desktop, StatusBar& status, GridDirection direction,
                            bool all, int x, int y) {
  GridRemoval removal;
  if (!image.IsPresent()) return removal;
  if (!calibration.IsComplete()) {
    Tell(desktop, "Please define the axes first: grid lines are looked for along them",
         MessageIcon::Exclamation);
    return removal;
  }
  Progress progress(desktop, status);
  const KeepGoing keepGoing = [&] { return progress.GoOn(); };
  BlackMap map = ReadBlackMap(image, calibration, direction, keepGoing);
  progress.At(20);
  std::vector<GridLine> lines;
  if (!progress.Stopped()) {
    const MapPixel click =
        map.OfPicture(std::clamp(x, 0, image.Width() - 1), std::clamp(y, 0, image.Height() - 1));
    std::optional<BlackMap> withFaint;
    if (!image.Pixels.Faint.IsEmpty()) withFaint = WithFaintPixels(map, image);
    const SearchMaps maps{&map, withFaint ? &*withFaint : nullptr};
    const auto found = [&](double part) { progress.At(20 + 40 * part); };
    lines = all ? FindGridLines(maps, calibration, direction, click, keepGoing, found)
                : FindNearestLine(maps, calibration, direction, click, keepGoing);
  }

  for (std::size_t i = 0; i < lines.size(); ++i) {
    progress.At(60 + 40 * static_cast<double>(i) / static_cast<double>(lines.size()));
    if (!progress.GoOn()) break;
    Refresh(map, lines[i]);
    for (const MapPixel& pixel : PixelsOfLineOnly(map, lines[i])) {
      if (removal.Pixels++ == 0) BeginEdit(image);
      map.Bits.Clear(pixel.Column, pixel.Row);
      const MapPixel at = map.InPicture(pixel);
      EditPixel(image, at.Column, at.Row, kWhite);
    }
    ++removal.Lines;
  }
  removal.Stopped = progress.Stopped();
  status.Status = ResultText(removal, direction);
  return removal;
}

}  // namespace graphize
