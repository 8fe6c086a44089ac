// propose_pictures FOLDER SHEET.png
// Proposes the axes of the pictures in FOLDER and draws them over these, as the window shows them,
// on one sheet; the verdicts are said on the standard output.

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "codecs/picbuf.h"
#include "commands/overlay.h"
#include "commands/propose_axes_commands.h"
#include "commands/shown_picture.h"
#include "contact_sheet.h"
#include "raster/plot_marks_view.h"
#include "raster/plot_view.h"
#include "support/quiet_desktop.h"
#include "widgets/paint_sketch.h"

namespace graphize {
namespace {

QImage Draw(const std::filesystem::path& file) {
  const Desktop desktop = test::QuietDesktop();
  Workspace ws;
  LoadImage(ws, desktop, std::move(LoadPicture(file)->Picture), file.filename().string());
  ws.view = {.Width = ws.plot.Width(), .Height = ws.plot.Height()};
  ShowProposedAxes(ws, desktop);
  // Where there are several plots, the first.
  if (ws.proposedAxes.Found.Plots.size() > 1) ChooseProposedPlot(ws, desktop, 0);
  std::printf("%s: %s\n\n", file.filename().c_str(), VerdictText(ws.proposedAxes).c_str());
  QImage tile = AsImage(ws.plot.Pixels).copy();
  QPainter painter(&tile);
  const PlotOverlay overlay = Plot_Paint(ws, {0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1});
  for (const PlotOverlay::Sketch& sketch : overlay.Sketches) PaintSketch(painter, sketch, 1);
  PaintOverlay(painter, overlay, 1);
  painter.end();
  return tile;
}

std::vector<QImage> Tiles(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".png") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<QImage> tiles;
  for (const std::filesystem::path& file : files) tiles.push_back(Draw(file));
  return tiles;
}

}  // namespace
}  // namespace graphize

int main(int argc, char** argv) {
  return graphize::MakeSheet(argc, argv, graphize::Tiles);
}
