#include "widgets/plot_cursor.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPixmap>

#include "base/translation.h"

namespace graphize {

namespace {

constexpr int kSize = 33;         // logical pixels, with one in the middle
constexpr double kMiddle = 16.5;  // the centre of the pixel that is read

enum class Shape { ThinCross, ThickCross, CrossWithGap, Circle, Dot };
constexpr int kShapes = 5;
enum class Ink { Black, Red, OnAll };
static_assert(kPlotCursors == 3 * kShapes);

/// One row of the chooser per ink.
Shape ShapeOf(int index) {
  return static_cast<Shape>(index % kShapes);
}
Ink InkOf(int index) {
  return static_cast<Ink>(index / kShapes);
}

void DrawCross(QPainter& painter, double gap) {
  for (const double side : {-1.0, 1.0}) {
    painter.drawLine(QPointF(kMiddle + side * gap, kMiddle), QPointF(kMiddle + side * 13, kMiddle));
    painter.drawLine(QPointF(kMiddle, kMiddle + side * gap), QPointF(kMiddle, kMiddle + side * 13));
  }
}

/// `edge` is how much wider than the shape itself.
void Draw(QPainter& painter, Shape shape, const QColor& colour, double edge) {
  const double thickness = (shape == Shape::ThickCross ? 3 : 1) + edge;
  painter.setPen(QPen(colour, thickness, Qt::SolidLine, Qt::SquareCap));
  painter.setRenderHint(QPainter::Antialiasing, shape == Shape::Circle || shape == Shape::Dot);
  switch (shape) {
    case Shape::ThinCross:
    case Shape::ThickCross:
      return DrawCross(painter, 0);
    case Shape::CrossWithGap:
      return DrawCross(painter, 5);
    case Shape::Circle:
      // A point marks what is read; the ring leaves the curve around it in sight.
      painter.drawEllipse(QPointF(kMiddle, kMiddle), 9, 9);
      painter.drawPoint(QPointF(kMiddle, kMiddle));
      return;
    case Shape::Dot:
      painter.setBrush(colour);
      painter.drawEllipse(QPointF(kMiddle, kMiddle), 2, 2);
      return;
  }
}

}  // namespace

QPixmap PlotCursorPicture(int index, double ratio) {
  QPixmap picture(QSize(kSize, kSize) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  if (InkOf(index) == Ink::OnAll) Draw(painter, ShapeOf(index), Qt::black, 2);
  const QColor inks[] = {Qt::black, QColor(220, 0, 0), Qt::white};
  Draw(painter, ShapeOf(index), inks[static_cast<int>(InkOf(index))], 0);
  return picture;
}

QString PlotCursorName(int index) {
  static constexpr const char* kShapeNames[] = {Marked("Thin cross"), Marked("Thick cross"),
                                                Marked("Cross with a gap"), Marked("Circle"),
                                                Marked("Dot")};
  static constexpr const char* kInkNames[] = {Marked("black"), Marked("red"),
                                              Marked("light on dark")};
  return QStringLiteral("%1, %2").arg(
      QCoreApplication::translate("PlotCursor", kShapeNames[static_cast<int>(ShapeOf(index))]),
      QCoreApplication::translate("PlotCursor", kInkNames[static_cast<int>(InkOf(index))]));
}

QCursor PlotCursor(int CursorType, double ratio) {
  if (CursorType < 1 || CursorType > kPlotCursors) return QCursor(Qt::CrossCursor);
  return QCursor(PlotCursorPicture(CursorType - 1, ratio), kSize / 2, kSize / 2);
}

}  // namespace graphize
