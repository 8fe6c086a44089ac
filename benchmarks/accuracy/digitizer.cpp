#include "digitizer.h"

#include <cmath>
#include <utility>

#include "base/run_time_error.h"
#include "calibration/transform.h"
#include "support/quiet_desktop.h"
#include "workspace/extraction_commands.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/toolbar.h"

namespace graphize::accuracy {

namespace {

float Whole(double position) {
  return static_cast<float>(std::lround(position));
}

}  // namespace

Digitizer::Digitizer(Raster picture) : desktop_(test::QuietDesktop()) {
  desktop_.ShowMessage = [](const Message& message) {
    if (message.Buttons != MessageButtons::YesNo) throw RunTimeError(message.Text);
    return Answer::Yes;
  };
  InitAxisDefFrame(ws_.calibration, ws_.axisPanel);
  ws_.settings.RefreshList = 0;
  OfferBlackAndWhite(ws_, desktop_, picture);
  LoadImage(ws_, desktop_, std::move(picture), "plot");
  ws_.view.Width = ws_.plot.Width();
  ws_.view.Height = ws_.plot.Height();
}

void Digitizer::Press(const char* button) {
  if (!IsPressed(ws_, button)) Toolbar_ButtonClick(ws_, desktop_, button);
}

void Digitizer::Calibrate(const std::array<ReferencePoint, 3>& points, bool xLog, bool yLog) {
  Press("axisdef");
  ws_.calibration.XLog = xLog;
  ws_.calibration.YLog = yLog;
  for (std::size_t i = 0; i < points.size(); ++i) {
    ws_.axisPanel.Rows[i].XText = points[i].X;
    ws_.axisPanel.Rows[i].YText = points[i].Y;
    const float x = Whole(points[i].At.X), y = Whole(points[i].At.Y);
    Plot_MouseMove(ws_, desktop_, 0, 0, x, y);
    Plot_MouseDown(ws_, desktop_, kLeftButton, 0, x, y);
    Plot_MouseUp(ws_, desktop_, kLeftButton, 0, x, y);
    Plot_Click(ws_, desktop_);
  }
  if (!ws_.calibration.IsComplete()) throw RunTimeError("the reference points were refused");
}

void Digitizer::WipeGrid(PixelPosition click) {
  Press("gridbuster");
  for (const int button : {kLeftButton, kRightButton})
    Plot_MouseDown(ws_, desktop_, button, kShiftKey, Whole(click.X), Whole(click.Y));
}

void Digitizer::PaintBlocker(PixelPosition centre, int size) {
  Press("blocktest");
  ws_.blockSize = size;
  const float x = Whole(centre.X), y = Whole(centre.Y);
  Plot_MouseMove(ws_, desktop_, 0, 0, x, y);
  Plot_MouseDown(ws_, desktop_, kLeftButton, 0, x, y);
  Plot_MouseUp(ws_, desktop_, kLeftButton, 0, x, y);
  Plot_Click(ws_, desktop_);
}

void Digitizer::Trace(Tracer tracer, PixelPosition start, const std::string& xIncrement,
                      const std::string& yIncrement) {
  Press("graphize");
  ws_.settings.Trace = tracer == Tracer::Smooth ? 1 : 0;
  SetTraceType(ws_.tracer, ws_.settings.Trace);
  ws_.tracer.Center.Checked = true;
  ws_.tracer.Xrange = xIncrement;
  ws_.tracer.Yrange = yIncrement;
  Plot_MouseDown(ws_, desktop_, kRightButton, 0, Whole(start.X), Whole(start.Y));
}

void Digitizer::Scan(PixelPosition from, PixelPosition to, const std::string& xStep,
                     const std::string& yStep) {
  Press("graphize");
  ws_.settings.Trace = 2;
  SetTraceType(ws_.tracer, ws_.settings.Trace);
  ws_.tracer.Xrange = xStep;
  ws_.tracer.Yrange = yStep;
  const float x = Whole(to.X), y = Whole(to.Y);
  Plot_MouseDown(ws_, desktop_, kRightButton, 0, Whole(from.X), Whole(from.Y));
  Plot_MouseMove(ws_, desktop_, kRightButton, 0, x, y);
  Plot_MouseUp(ws_, desktop_, kRightButton, 0, x, y);
}

std::vector<PixelPosition> Digitizer::Points() const {
  std::vector<PixelPosition> points;
  for (int i = 1; i <= ws_.store.CaptureCount; ++i) {
    const PlotPosition at = PositionOfReal(ws_.calibration, ws_.plot.Height(),
                                           ws_.store.CaptureX[i], ws_.store.CaptureY[i]);
    points.push_back({at.Column, at.Row});
  }
  return points;
}

}  // namespace graphize::accuracy
