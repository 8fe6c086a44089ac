#include "commands/ink_commands.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/translation.h"
#include "commands/picture_commands.h"
#include "commands/shown_picture.h"
#include "raster/black_white.h"
#include "reading/ink_mask.h"

namespace graphize {

const Raster& ColouredPicture(const Workspace& ws) {
  return ws.colours != nullptr ? *ws.colours : ws.plot.Pixels;
}

std::vector<PictureInk> InksIn(const Workspace& ws, const PictureOperation& operation) {
  const Raster& picture = ColouredPicture(ws);
  if (picture.IsEmpty()) return {};
  std::vector<PictureInk> inks = InksOf(picture, PaperOf(picture), &operation);
  // A pale grid has more pixels than the curves.
  std::ranges::stable_sort(inks, std::greater(),
                           [](const PictureInk& ink) { return ink.Share * ink.Of.Strength; });
  return inks;
}

bool CanTakeInk(const Workspace& ws) {
  return ws.plot.IsPresent();
}

namespace {

std::string NoPixelHas(std::uint32_t colour, const std::vector<PictureInk>& inks) {
  const auto nearest =
      std::min_element(inks.begin(), inks.end(), [&](const PictureInk& a, const PictureInk& b) {
        return Length(a.Colour - RgbOf(colour)) < Length(b.Colour - RgbOf(colour));
      });
  if (nearest == inks.end()) return Tr("no pixel has this ink");
  const std::uint32_t pixel = PixelOf(nearest->Colour);
  return Tr("no pixel has this ink; the nearest is %1,%2,%3", pixel >> 16 & 0xff, pixel >> 8 & 0xff,
            pixel & 0xff);
}

}  // namespace

std::optional<Outcome> InkRefused(Workspace& ws) {
  if (!CanTakeInk(ws)) return Refused("there is no picture");
  if (ws.colours != nullptr) return std::nullopt;
  const BasePictureShown base(ws.plot);
  if (!IsBlackAndWhite(ws.plot.Pixels)) return std::nullopt;
  return Refused("the picture is black and white: there are no colours to take an ink from");
}

Outcome Run(Workspace& ws, const Desktop& desktop, const InkStep& step) {
  if (auto refused = InkRefused(ws)) return *refused;
  if (!(step.Tolerance >= kLeastTolerance && step.Tolerance <= kMostTolerance))
    return Refused("the tolerance of an ink is a number from 0.5 to 2");
  const auto channel = [](int level) { return static_cast<std::uint32_t>(level) & 0xff; };
  const std::uint32_t colour =
      0xff000000u | channel(step.Red) << 16 | channel(step.Green) << 8 | channel(step.Blue);
  std::optional<Raster> alone;
  bool hasInk = false;
  std::vector<PictureInk> inks;  // where no pixel has this one
  ws.window.Hourglass = true;
  ws.status.Status = Tr("Taking the ink...");
  {
    const BasePictureShown base(ws.plot);
    alone = RunBeside(ShowProgress(ws, desktop), [&](PictureOperation& operation) {
      auto mask = InkAlone(ColouredPicture(ws), colour, step.Tolerance, operation);
      hasInk = mask && std::find(mask->Pixels(), mask->Pixels() + mask->PixelCount(),
                                 kBlackPixel) != mask->Pixels() + mask->PixelCount();
      if (mask && !mask->IsEmpty() && !hasInk) inks = InksIn(ws, operation);
      return mask;
    });
  }
  ws.window.Hourglass = false;
  ws.status.ProgressVisible = false;
  ws.status.Status = " ";
  if (!alone) return Refused("this is the colour of the paper");
  if (alone->IsEmpty()) {
    ws.status.Status = Tr("Stopped: the picture is as it was");
    return Nothing(ws.status.Status);
  }
  if (!hasInk) return Refused(NoPixelHas(colour, inks));
  PictureBox colours = ws.colours;
  PictureBox replaced = LoadImage(ws, desktop, std::move(*alone), ws.plot.SourceName);
  ws.colours = colours != nullptr ? std::move(colours) : std::move(replaced);
  return {};
}

bool CanShowColours(const Workspace& ws) {
  return ws.colours != nullptr;
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ShowColoursStep&) {
  if (!CanShowColours(ws)) return Refused("the colours are shown");
  LoadImage(ws, desktop, std::exchange(ws.colours, nullptr), ws.plot.SourceName);
  return {};
}

}  // namespace graphize
