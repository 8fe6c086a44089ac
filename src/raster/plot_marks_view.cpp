#include "raster/plot_marks_view.h"

#include <QPainter>

#include "raster/contrast.h"

namespace graphize {

namespace {

QColor ToQColor(Colour colour) {
  return QColor::fromRgb(PixelOfColour(colour));
}

/// One pixel wide; both ends belong to it.
QRect Stroke(int left, int top, int right, int bottom) {
  return {QPoint(left, top), QPoint(right, bottom)};
}

/// First all edges, then the strokes: no edge covers a neighbour.
void PaintStrokes(QPainter& painter, const QList<QRect>& strokes, Colour colour) {
  const QColor inside = ToQColor(colour), edge = ToQColor(EdgeColour(colour));
  for (const QRect& stroke : strokes)
    painter.fillRect(stroke.adjusted(-kMarkEdge, -kMarkEdge, kMarkEdge, kMarkEdge), edge);
  for (const QRect& stroke : strokes) painter.fillRect(stroke, inside);
}

/// A mark's middle, and how far its picture pixel reaches from there.
struct Middle {
  int X, Y, Pixel;

  Middle(const PlotOverlay::Point& at, double zoom)
      : X(PlaceOfMark(zoom, at.X)), Y(PlaceOfMark(zoom, at.Y)), Pixel(static_cast<int>(zoom / 2)) {}
};

/// Small crosses.
void PaintDots(QPainter& painter, const std::vector<PlotOverlay::Point>& points, Colour colour,
               double zoom) {
  if (points.empty()) return;
  QList<QRect> strokes;
  strokes.reserve(static_cast<qsizetype>(2 * points.size()));
  for (const PlotOverlay::Point& point : points) {
    const Middle at(point, zoom);
    strokes << Stroke(at.X - kDataPointReach, at.Y, at.X + kDataPointReach, at.Y)
            << Stroke(at.X, at.Y - kDataPointReach, at.X, at.Y + kDataPointReach);
  }
  PaintStrokes(painter, strokes, colour);
}

/// A cross that leaves its pixel and the ink around it free.
void PaintCross(QPainter& painter, const PlotOverlay::Point& point, int reach, Colour colour,
                double zoom) {
  const Middle at(point, zoom);
  const int gap = 2 + kMarkEdge + at.Pixel;
  reach += at.Pixel;
  const int x = at.X, y = at.Y;
  PaintStrokes(painter,
               {Stroke(x - reach, y, x - gap, y), Stroke(x + gap, y, x + reach, y),
                Stroke(x, y - reach, x, y - gap), Stroke(x, y + gap, x, y + reach)},
               colour);
}

/// A frame around a point, or its corners alone.
void AddFrame(QList<QRect>& strokes, const PlotOverlay::Point& point, int reach, int corner,
              double zoom) {
  const Middle at(point, zoom);
  reach += at.Pixel;
  corner += at.Pixel;
  for (const int side : {-reach, reach})
    for (const auto& [from, to] : {std::pair(-reach, -reach + corner), {reach - corner, reach}})
      strokes << Stroke(at.X + side, at.Y + from, at.X + side, at.Y + to)
              << Stroke(at.X + from, at.Y + side, at.X + to, at.Y + side);
}

/// The points of the list: where they are, which are selected, and which lies under the pointer.
void PaintEditedPoints(QPainter& painter, const PlotOverlay& overlay, double zoom) {
  constexpr int kSelectedReach = 4;
  PaintDots(painter, overlay.EditPoints, overlay.EditColour, zoom);
  QList<QRect> frames;
  for (const PlotOverlay::Point& point : overlay.Selected)
    AddFrame(frames, point, kSelectedReach, kSelectedReach, zoom);
  if (overlay.Near) AddFrame(frames, *overlay.Near, kEditMarkReach, 2, zoom);
  PaintStrokes(painter, frames, overlay.SelectedColour);
}

}  // namespace

void PaintOverlay(QPainter& painter, const PlotOverlay& overlay, double zoom) {
  PaintDots(painter, overlay.DataPoints, overlay.DataColour, zoom);
  PaintEditedPoints(painter, overlay, zoom);
  if (overlay.LastPoint)
    PaintCross(painter, *overlay.LastPoint, kLastPointReach, overlay.LastColour, zoom);
  for (const PlotOverlay::Point& point : overlay.AxisPoints)
    PaintCross(painter, point, kAxisPointReach, overlay.AxisColour, zoom);
}

QRegion OutlineOf(const PlotOverlay::Rectangle& band, double zoom) {
  const QRect outer(QPoint(FirstPlaceOf(zoom, band.Left), FirstPlaceOf(zoom, band.Top)),
                    QPoint(LastPlaceOf(zoom, band.Right), LastPlaceOf(zoom, band.Bottom)));
  return QRegion(outer).subtracted(outer.adjusted(1, 1, -1, -1));
}

void PaintRubberBand(QPainter& painter, const QRegion& visible, const PlotOverlay::Rectangle& band,
                     double zoom) {
  for (const QRect& side : OutlineOf(band, zoom) & visible) {
    painter.fillRect(side, Qt::white);
    painter.fillRect(side, QBrush(Qt::black, Qt::Dense4Pattern));
  }
}

}  // namespace graphize
