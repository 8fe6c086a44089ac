// read_pictures FOLDER SHEET.png
// Reads every curve of the pictures in FOLDER with one click and draws what was read over them, as
// the window shows it, on one sheet. What was refused or is doubtful is said on the standard
// output.

#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/run_time_error.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/overlay.h"
#include "commands/preview_commands.h"
#include "commands/shown_picture.h"
#include "contact_sheet.h"
#include "raster/plot_view.h"
#include "support/quiet_desktop.h"
#include "widgets/paint_preview.h"

namespace graphize {
namespace {

struct Click {
  int X, Y;
};
/// The frame's lower left corner or another known origin, a point on each axis, all pixels with
/// rows downward; one click on each curve, and one on each kind of symbol.
struct Example {
  const char* File;
  Click Origin, XAxis, YAxis;
  std::vector<Click> Curves;
};

const std::vector<Example> kExamples = {
    {"gnuplot_three_functions.png",
     {52, 440},
     {617, 440},
     {52, 16},
     {{165, 185}, {460, 38}, {100, 211}}},
    {"gnuplot_normal_cdf.png", {52, 440}, {617, 440}, {52, 60}, {{335, 250}}},
    {"gnuplot_inverf.png", {52, 440}, {617, 440}, {52, 60}, {{335, 250}}},
    {"gnuplot_sinc_sideways.png", {37, 400}, {617, 400}, {37, 17}, {{391, 145}}},
    {"gnuplot_transistor.png", {80, 408}, {540, 408}, {80, 69}, {{118, 270}, {200, 190}}},
    {"gonum_functions.png", {63, 217}, {260, 217}, {63, 25}, {{230, 79}, {181, 94}, {97, 102}}},
    {"gonum_inverted_log.png", {82, 328}, {376, 328}, {82, 18}, {{230, 173}}},
    {"gr_sine_cosine.png", {40, 273}, {488, 273}, {40, 12}, {{62, 58}, {79, 194}}},
    {"inspectdr_lissajous.png", {84, 261}, {451, 261}, {84, 24}, {{221, 85}}},
    {"mpl_cross_axes.png", {295, 180}, {498, 180}, {295, 49}, {{376, 140}, {230, 290}}},
    {"mpl_sine_cosine.png", {71, 388}, {517, 388}, {71, 43}, {{361, 153}, {238, 360}}},
    {"pgfplotsx_markers.png", {41, 366}, {656, 366}, {41, 21}, {}},
    {"plotters_parabola.png", {34, 445}, {635, 445}, {34, 54}, {{154, 280}}},
    {"plotters_twoscale.png", {45, 728}, {979, 728}, {45, 56}, {{185, 344}, {500, 537}}},
};

void DefineAxes(Workspace& ws, const Desktop& desktop, const Example& example) {
  Do(ws, desktop, ModeStep{Mode::AxisDef});
  const Click points[] = {example.Origin, example.XAxis, example.YAxis};
  for (int row = 0; row < 3; ++row)
    Do(ws, desktop,
       AxisStep{row, static_cast<float>(points[row].X), static_cast<float>(points[row].Y),
                std::to_string(points[row].X), std::to_string(-points[row].Y)});
  if (!ws.calibration.IsComplete()) throw RunTimeError("the axes were refused");
}

void Say(const Example& example, const Click& click, std::string text) {
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;)
    text.replace(at, 1, "; ");
  std::printf("%s %d,%d: %s\n", example.File, click.X, click.Y, text.c_str());
}

QImage Draw(const std::filesystem::path& folder, const Example& example) {
  const Desktop desktop = test::QuietDesktop();
  Workspace ws;
  LoadImage(ws, desktop, std::move(LoadPicture(folder / example.File)->Picture), example.File);
  DefineAxes(ws, desktop, example);
  QImage tile = AsImage(ws.plot.Pixels).copy();
  QPainter painter(&tile);
  Do(ws, desktop, ModeStep{Mode::ReadCurve});
  for (const Click& click : example.Curves) {
    DropReading(ws);
    ClickCurve(ws, desktop, click.X, click.Y);
    Say(example, click, ws.reading.Reading);
    const PlotOverlay overlay = Plot_Paint(ws, {0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1});
    for (const PlotOverlay::Preview& preview : overlay.Previews)
      PaintPreview(painter, preview, tile.rect());
  }
  painter.end();
  return tile;
}

std::vector<QImage> Tiles(const std::filesystem::path& folder) {
  std::vector<QImage> tiles;
  for (const Example& example : kExamples) tiles.push_back(Draw(folder, example));
  return tiles;
}

}  // namespace
}  // namespace graphize

int main(int argc, char** argv) {
  return graphize::MakeSheet(argc, argv, graphize::Tiles);
}
