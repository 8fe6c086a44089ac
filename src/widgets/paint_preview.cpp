#include "widgets/paint_preview.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <bit>
#include <cmath>

namespace graphize {

namespace {

constexpr int kInkAlpha = 110;                // of 255
constexpr double kMostInkPixels = 4'000'000;  // painted at once; a larger part is coarser

QPointF Centre(const PlotOverlay::Position& at) {
  return {at.X + 0.5, at.Y + 0.5};
}

/// Calls visit(column) for every bit of the row from `first` to `last`.
template <class Visit>
void ForEachBit(const BitMap& map, int y, int first, int last, const Visit& visit) {
  const std::uint64_t* words = map.Row(y);
  for (int word = first >> 6; word <= last >> 6; ++word) {
    std::uint64_t bits = words[word];
    while (bits != 0) {
      const int x = 64 * word + std::countr_zero(bits);
      bits &= bits - 1;
      if (x >= first && x <= last) visit(x);
    }
  }
}

void PaintInk(QPainter& painter, const BitMap& ink, const QRect& whole, const QColor& colour) {
  const QRect area = whole & QRect(0, 0, ink.Width(), ink.Height());
  if (area.isEmpty()) return;
  const double pixels = static_cast<double>(area.width()) * area.height();
  const int step = std::max(1, static_cast<int>(std::ceil(std::sqrt(pixels / kMostInkPixels))));
  QImage tint((area.width() + step - 1) / step, (area.height() + step - 1) / step,
              QImage::Format_ARGB32_Premultiplied);
  tint.fill(Qt::transparent);
  const QRgb tinted = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), kInkAlpha));
  for (int y = area.top(); y <= area.bottom(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(tint.scanLine((y - area.top()) / step));
    ForEachBit(ink, y, area.left(), area.right(),
               [&](int x) { line[(x - area.left()) / step] = tinted; });
  }
  painter.drawImage(QRect(area.topLeft(), tint.size() * step), tint);
}

void PaintCourse(QPainter& painter, const PlotOverlay::Preview::Course& course, const QRectF& area,
                 const QColor& colour, double width) {
  // The ink beside it stays in sight; where there is none, the dots stand out from any ground.
  QPen edge(course.IsDoubtful ? QColor(255, 255, 255, 200) : QColor(Qt::transparent), 4);
  QPen line(colour, course.IsDoubtful ? 2 : width);
  for (QPen* pen : {&edge, &line}) {
    pen->setCosmetic(true);
    pen->setJoinStyle(Qt::RoundJoin);
    pen->setCapStyle(Qt::FlatCap);
  }
  if (course.IsDoubtful) line.setDashPattern({2, 2});
  QPolygonF way;
  const auto draw = [&] {
    if (way.size() > 1)
      for (const QPen* pen : {&edge, &line}) {
        painter.setPen(*pen);
        painter.drawPolyline(way);
      }
    way.clear();
  };
  for (std::size_t i = 0; i + 1 < course.Way.size(); ++i) {
    const QPointF from = Centre(course.Way[i]), to = Centre(course.Way[i + 1]);
    // Only what is seen: dashes of a page's whole curve would take their time.
    if (!QRectF(from, to).normalized().adjusted(-1, -1, 1, 1).intersects(area)) {
      draw();
      continue;
    }
    if (way.isEmpty()) way << from;
    way << to;
  }
  draw();
}

void PaintRings(QPainter& painter, const PlotOverlay::Preview& preview, const QRectF& area,
                const QColor& colour) {
  const double unit = 1 / painter.transform().m11();  // a logical pixel
  painter.setBrush(Qt::NoBrush);
  for (const PlotOverlay::Preview::Ring& ring : preview.Rings) {
    const QPointF centre = Centre(ring.At);
    const double across = ring.Width / 2 + 2.5 * unit, down = ring.Height / 2 + 2.5 * unit;
    const QRectF box(centre.x() - across, centre.y() - down, 2 * across, 2 * down);
    const double beside = 5 * unit;
    const QRectF second = box.adjusted(-beside, -beside, beside, beside);
    if (!second.adjusted(-beside, -beside, beside, beside).intersects(area)) continue;
    QPen edge(QColor(255, 255, 255, 200), 4), line(ring.IsLeftOut ? QColor(Qt::gray) : colour, 2);
    for (QPen* pen : {&edge, &line}) pen->setCosmetic(true);
    if (ring.IsDoubtful) line.setDashPattern({2, 1.5});
    for (const QPen* pen : {&edge, &line}) {
      painter.setPen(*pen);
      painter.drawEllipse(box);
      if (ring.IsCurrent) painter.drawRect(second);
      if (!ring.IsLeftOut) continue;
      painter.drawLine(box.topLeft(), box.bottomRight());
      painter.drawLine(box.bottomLeft(), box.topRight());
    }
  }
}

}  // namespace

void PaintPreview(QPainter& painter, const PlotOverlay::Preview& preview, const QRect& area) {
  const QColor colour = QColor::fromRgb(PixelOfColour(preview.MarkColour));
  painter.save();
  if (preview.Ink != nullptr) PaintInk(painter, *preview.Ink, area, colour);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF seen = QRectF(area).adjusted(-4, -4, 4, 4);
  for (const PlotOverlay::Preview::Course& course : preview.Courses)
    PaintCourse(painter, course, seen, colour, preview.IsCurrent ? 3 : 1);
  PaintRings(painter, preview, seen, colour);
  const auto dots = [&](const std::vector<PlotOverlay::Position>& positions, double width,
                        const QColor& inside) {
    for (const auto& [size, fill] : {std::pair{width + 2, QColor(Qt::white)}, {width, inside}}) {
      QPen pen(fill, size);
      pen.setCosmetic(true);
      pen.setCapStyle(Qt::RoundCap);
      painter.setPen(pen);
      for (const PlotOverlay::Position& at : positions)
        if (seen.contains(Centre(at))) painter.drawPoint(Centre(at));
    }
  };
  dots(preview.Points, 5, colour);
  dots(preview.Clicks, 7, QColor(Qt::black));
  painter.restore();
}

}  // namespace graphize
