#include "app/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace graphize {

namespace {

/// What an icon is drawn with, on a grid of 24 by 24: ink is the text colour, accents are the few
/// colours that tell the icons apart.
struct Pen {
  QPainter& p;
  QColor ink;

  void Stroke(const QColor& colour, qreal width = 1.6) const {
    p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
  }
  void Fill(const QColor& colour) const {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
  }
  void Lines(std::initializer_list<QLineF> lines) const {
    for (const QLineF& line : lines) p.drawLine(line);
  }
};

const QColor kBlue(0x2f, 0x6f, 0xc9), kRed(0xd0, 0x3b, 0x2f), kGreen(0x2f, 0x9e, 0x4f),
    kAmber(0xe0, 0xa0, 0x20), kGrey(0x90, 0x90, 0x90);

QPainterPath Curve() {
  QPainterPath path(QPointF(5, 17));
  path.cubicTo(9, 4, 13, 20, 20, 6);
  return path;
}

void Axes(const Pen& d) {
  d.Stroke(d.ink);
  d.Lines({{4, 3, 4, 20}, {4, 20, 21, 20}});
}

void Open(const Pen& d) {
  d.Stroke(d.ink);
  d.p.setBrush(kAmber);
  d.p.drawPolygon(QPolygonF({{3, 19}, {3, 6}, {9, 6}, {11, 8}, {19, 8}, {19, 11}}));
  d.p.drawPolygon(QPolygonF({{3, 19}, {7, 11}, {22, 11}, {18, 19}}));
}

void Aquire(const Pen& d) {
  d.Stroke(d.ink);
  d.p.drawPolygon(QPolygonF({{3, 14}, {21, 14}, {21, 20}, {3, 20}}));
  d.Lines({{4, 11, 20, 4}, {6, 17, 10, 17}});
  d.Stroke(kGreen, 2);
  d.Lines({{5, 14, 19, 14}});
}

void Save(const Pen& d) {
  d.Stroke(d.ink);
  d.p.setBrush(kBlue);
  d.p.drawPolygon(QPolygonF({{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}}));
  d.Fill(Qt::white);
  d.p.drawRect(QRectF(7, 12.5, 10, 7));
  d.p.drawRect(QRectF(8, 4.8, 7, 4.4));
}

void Copy(const Pen& d) {
  d.Stroke(d.ink);
  d.p.drawPolygon(QPolygonF({{4, 3}, {14, 3}, {14, 16}, {4, 16}}));
  d.p.setBrush(QGuiApplication::palette().color(QPalette::Base));
  d.p.drawPolygon(QPolygonF({{9, 8}, {20, 8}, {20, 21}, {9, 21}}));
  d.Stroke(kBlue, 1.4);
  d.Lines({{11.5, 12, 17.5, 12}, {11.5, 15, 17.5, 15}, {11.5, 18, 15.5, 18}});
}

void Paste(const Pen& d) {
  d.Stroke(d.ink);
  d.p.setBrush(kAmber);
  d.p.drawPolygon(QPolygonF({{4, 5}, {18, 5}, {18, 21}, {4, 21}}));
  d.p.setBrush(kGrey);
  d.p.drawRect(QRectF(8, 3, 6, 4));
  d.p.setBrush(Qt::white);
  d.p.drawRect(QRectF(8, 10, 13, 10));
  d.Stroke(kRed, 1.4);
  d.p.drawPolyline(QPolygonF({{10, 18}, {13, 13}, {16, 16}, {19, 12}}));
}

void Setup(const Pen& d) {
  d.Stroke(d.ink);
  d.Lines({{4, 7, 20, 7}, {4, 12.5, 20, 12.5}, {4, 18, 20, 18}});
  d.p.setBrush(kBlue);
  for (const QPointF& knob : {QPointF(8, 7), QPointF(16, 12.5), QPointF(11, 18)})
    d.p.drawEllipse(knob, 2.4, 2.4);
}

void Refresh(const Pen& d) {
  d.Stroke(kGreen, 2.2);
  d.p.drawArc(QRectF(5, 5, 14, 14), 50 * 16, 260 * 16);
  d.Fill(kGreen);
  d.p.drawPolygon(QPolygonF({{13, 3.2}, {20.5, 4.2}, {15.8, 10}}));
}

void Undo(const Pen& d) {
  d.Fill(kRed);
  d.p.drawEllipse(QPointF(15.5, 16), 4.5, 4.5);
  d.Stroke(d.ink, 2);
  QPainterPath path(QPointF(5, 8));
  path.cubicTo(12, 4, 19, 6, 20, 12);
  d.p.drawPath(path);
  d.Fill(d.ink);
  d.p.drawPolygon(QPolygonF({{2.5, 9.5}, {8.5, 4}, {9.5, 10.5}}));
}

void Delete(const Pen& d) {
  d.Stroke(d.ink);
  d.p.drawPolygon(QPolygonF({{6, 8}, {18, 8}, {17, 21}, {7, 21}}));
  d.Lines({{4, 6, 20, 6}, {10, 3.5, 14, 3.5}});
  d.Stroke(kRed, 1.8);
  d.Lines({{10, 11, 10, 18}, {14, 11, 14, 18}});
}

void AxisDef(const Pen& d) {
  Axes(d);
  d.Fill(kRed);
  for (const QPointF& point : {QPointF(4, 20), QPointF(19, 20), QPointF(4, 5)})
    d.p.drawEllipse(point, 2.6, 2.6);
}

void Graphize(const Pen& d) {
  Axes(d);
  d.Stroke(kBlue, 1.4);
  d.p.drawPath(Curve());
  d.Fill(kRed);
  for (const qreal t : {0.05, 0.35, 0.65, 0.95}) d.p.drawEllipse(Curve().pointAtPercent(t), 2, 2);
}

void BlockTest(const Pen& d) {
  Axes(d);
  d.Stroke(kBlue, 1.4);
  d.p.drawPath(Curve());
  d.Fill(kRed);
  d.p.drawRect(QRectF(13, 3, 3.5, 16));
}

void DrawErase(const Pen& d) {
  d.Fill(kAmber);
  d.p.drawPolygon(QPolygonF({{8, 12}, {17, 3}, {21, 7}, {12, 16}}));
  d.Fill(QColor(0xf0, 0xa0, 0xa8));
  d.p.drawPolygon(QPolygonF({{8, 12}, {12, 16}, {9, 19}, {6.5, 19}, {4.5, 17}, {4.5, 15.5}}));
  d.Stroke(d.ink);
  d.Lines({{8, 12, 17, 3}, {17, 3, 21, 7}, {21, 7, 12, 16}, {8, 12, 12, 16}});
  d.Lines({{8, 12, 4.5, 15.5}, {4.5, 15.5, 4.5, 17}, {4.5, 17, 6.5, 19}});
  d.Lines({{6.5, 19, 9, 19}, {9, 19, 12, 16}});
  d.Stroke(kGrey);
  d.Lines({{3, 21.5, 20, 21.5}});
}

void GridBuster(const Pen& d) {
  d.Stroke(kGrey, 1.2);
  for (const qreal at : {5.0, 10.0, 15.0, 20.0}) d.Lines({{at, 4, at, 21}, {3, at, 21, at}});
  d.Stroke(kRed, 2.4);
  d.Lines({{5, 19, 19, 5}, {5, 5, 19, 19}});
}

void ReadCurve(const Pen& d) {
  d.Stroke(kBlue, 4.5);
  d.p.drawPath(Curve());
  d.Stroke(Qt::white, 1.4);
  d.p.drawPath(Curve());
}

void FindSymbols(const Pen& d) {
  d.Stroke(kBlue, 1.8);
  d.p.drawEllipse(QPointF(7, 16), 3.2, 3.2);
  d.p.drawEllipse(QPointF(17, 7), 3.2, 3.2);
  d.Fill(kRed);
  d.p.drawEllipse(QPointF(7, 16), 1.2, 1.2);
  d.p.drawEllipse(QPointF(17, 7), 1.2, 1.2);
}

void CurveNew(const Pen& d) {
  d.Stroke(kGreen, 3);
  d.Lines({{12, 4, 12, 20}, {4, 12, 20, 12}});
}

void CurveRename(const Pen& d) {
  d.Stroke(d.ink);
  d.p.setBrush(kAmber);
  d.p.drawPolygon(QPolygonF({{5, 15}, {16, 4}, {20, 8}, {9, 19}, {4, 20}}));
}

void More(const Pen& d) {
  d.Stroke(d.ink, 2.4);
  for (const qreal x : {5, 12}) d.p.drawPolyline(QPolygonF({{x, 5}, {x + 7, 12}, {x, 19}}));
}

void CurveDelete(const Pen& d) {
  d.Stroke(kRed, 3);
  d.Lines({{5, 5, 19, 19}, {19, 5, 5, 19}});
}

/// The same as packaging/graphize.svg.
void Program(const Pen& d) {
  d.Stroke(QColor(0xc0, 0xc0, 0xc0), 0.6);
  d.p.setBrush(Qt::white);
  d.p.drawRoundedRect(QRectF(1, 1, 22, 22), 3, 3);
  Graphize({d.p, QColor(0x30, 0x30, 0x30)});
}

using DrawIcon = void (*)(const Pen&);

DrawIcon DrawingOf(std::string_view key) {
  static constexpr std::pair<std::string_view, DrawIcon> kDrawings[] = {
      {"open", Open},
      {"aquire", Aquire},
      {"save", Save},
      {"copy", Copy},
      {"paste", Paste},
      {"setup", Setup},
      {"refresh", Refresh},
      {"undo", Undo},
      {"delete", Delete},
      {"axisdef", AxisDef},
      {"graphize", Graphize},
      {"blocktest", BlockTest},
      {"drawerase", DrawErase},
      {"gridbuster", GridBuster},
      {"readcurve", ReadCurve},
      {"findsymbols", FindSymbols},
      {"newcurve", CurveNew},
      {"renamecurve", CurveRename},
      {"deletecurve", CurveDelete},
      {"more", More},
  };
  for (const auto& [name, draw] : kDrawings)
    if (name == key) return draw;
  return Program;
}

/// Draws when asked: nothing is rendered at start-up for sizes that nobody shows.
class DrawnIcon : public QIconEngine {
 public:
  explicit DrawnIcon(DrawIcon draw) : draw_(draw) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / 24.0, rect.height() / 24.0);
    if (mode == QIcon::Disabled) painter->setOpacity(0.35);
    draw_({*painter, QGuiApplication::palette().color(QPalette::ButtonText)});
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new DrawnIcon(*this); }

 private:
  DrawIcon draw_;
};

}  // namespace

QIcon ToolIcon(std::string_view key) {
  return QIcon(new DrawnIcon(DrawingOf(key)));
}

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 32, 64}) icon.addPixmap(ToolIcon("").pixmap(size, size));
  return icon;
}

}  // namespace graphize
