#include "widgets/paint_sketch.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "widgets/show.h"

namespace graphize {

namespace {

constexpr double kGap = 5;         // logical pixels between a place and its words
constexpr double kCrossReach = 5;  // of a cross from its middle
constexpr int kMostMoves = 4;      // of words that would cover others

QRectF BoxOf(const QPointF& at, const QSizeF& size, PlotOverlay::Sketch::Side side) {
  using Side = PlotOverlay::Sketch::Side;
  QRectF box({0, 0}, size);
  box.moveCenter(at);
  if (side == Side::Right) box.moveLeft(at.x() + kGap);
  if (side == Side::Left) box.moveRight(at.x() - kGap);
  if (side == Side::Above) box.moveBottom(at.y() - kGap);
  if (side == Side::Below) box.moveTop(at.y() + kGap);
  return box;
}

void PaintWords(QPainter& painter, const PlotOverlay::Sketch& sketch, double zoom,
                const QColor& colour) {
  using Side = PlotOverlay::Sketch::Side;
  const QFontMetricsF metrics(painter.font());
  QList<QRectF> taken;
  for (const auto& words : sketch.Texts) {
    const QString text = ToQString(words.Text);
    const QSizeF size(metrics.horizontalAdvance(text) + 4, metrics.height());
    QRectF box = BoxOf({(words.At.X + 0.5) * zoom, (words.At.Y + 0.5) * zoom}, size, words.Beside);
    const auto covers = [&] {
      return std::any_of(taken.begin(), taken.end(),
                         [&](const QRectF& other) { return other.intersects(box); });
    };
    const bool sideways = words.Beside == Side::Right || words.Beside == Side::Left;
    for (int moves = 0; moves < kMostMoves && covers(); ++moves)
      if (sideways)
        box.translate(words.Beside == Side::Right ? size.width() : -size.width(), 0);
      else
        box.translate(0, words.Beside == Side::Below ? size.height() : -size.height());
    taken << box;
    painter.fillRect(box, QColor(255, 255, 255, 215));
    painter.setPen(colour);
    painter.drawText(box, Qt::AlignCenter, text);
  }
}

}  // namespace

void PaintSketch(QPainter& painter, const PlotOverlay::Sketch& sketch, double zoom) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colour = QColor::fromRgb(PixelOfColour(sketch.MarkColour));
  const auto at = [zoom](const PlotOverlay::Position& place) {
    return QPointF((place.X + 0.5) * zoom, (place.Y + 0.5) * zoom);
  };
  QList<QLineF> lines, crosses;
  for (const auto& [from, to] : sketch.Lines) lines << QLineF(at(from), at(to));
  for (const PlotOverlay::Position& place : sketch.Crosses) {
    const QPointF middle = at(place);
    crosses << QLineF(middle - QPointF(kCrossReach, 0), middle + QPointF(kCrossReach, 0))
            << QLineF(middle - QPointF(0, kCrossReach), middle + QPointF(0, kCrossReach));
  }
  for (const auto& [width, pen] : {std::pair(3.0, QColor(255, 255, 255, 170)), {1.0, colour}}) {
    painter.setPen(QPen(pen, width, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(lines);
    painter.drawLines(crosses);
  }
  PaintWords(painter, sketch, zoom, colour);
  painter.restore();
}

}  // namespace graphize
