#include "plot_style.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace graphize::axes {

namespace {

class Drawing {
 public:
  Drawing(const PlotStyle& style, Plot& plot) : style_(style), plot_(plot) {
    plot.Picture = QImage(style.Width, style.Height, QImage::Format_RGB32);
    plot.Picture.fill(style.Paper);
    painter_.begin(&plot.Picture);
    painter_.setRenderHint(QPainter::Antialiasing, style.SmoothLines);
    painter_.setRenderHint(QPainter::TextAntialiasing, style.SmoothText);
    font_ = QFont(style.Font);
    font_.setPixelSize(style.FontSize);
    font_.setStyleStrategy(style.SmoothText ? QFont::PreferAntialias : QFont::NoAntialias);
    font_.setHintingPreference(style.Hinting ? QFont::PreferFullHinting : QFont::PreferNoHinting);
    raised_ = font_;
    raised_.setPixelSize(std::max(style.FontSize * 7 / 10, 6));
  }

  void Draw(Random& random, const std::function<void(QPainter&, const Plot&)>& besides) {
    if (style_.Panel.isValid())
      painter_.fillRect(QRectF(plot_.X0, plot_.Y1, plot_.X1 - plot_.X0, plot_.Y0 - plot_.Y1),
                        style_.Panel);
    DrawGrid();
    DrawCurves(random);
    DrawLines();
    DrawTicks();
    DrawLabels();
    DrawTitles();
    if (besides) besides(painter_, plot_);
    painter_.end();
  }

 private:
  double XOf(double value) const {
    return plot_.X0 + plot_.X.PlaceOf(value) * (plot_.X1 - plot_.X0);
  }
  double YOf(double value) const {
    return plot_.Y0 + plot_.Y.PlaceOf(value) * (plot_.Y1 - plot_.Y0);
  }

  /// A line as a box; without smoothing on whole pixels, as such programs round.
  void Line(double x0, double y0, double x1, double y1, QColor ink, double width) {
    QRectF box(std::min(x0, x1), std::min(y0, y1), std::fabs(x1 - x0), std::fabs(y1 - y0));
    if (box.width() < box.height())
      box.adjust(-width / 2, 0, width / 2, 0);
    else
      box.adjust(0, -width / 2, 0, width / 2);
    if (!style_.SmoothLines) {
      const double left = std::round(box.left()), top = std::round(box.top());
      box = QRectF(left, top, std::max(std::round(box.width()), 1.0),
                   std::max(std::round(box.height()), 1.0));
    }
    painter_.fillRect(box, ink);
  }

  void DrawGrid() {
    if (!style_.Grid.isValid()) return;
    for (const double value : plot_.X.Ticks)
      Line(XOf(value), plot_.Y1, XOf(value), plot_.Y0, style_.Grid, style_.LineWidth);
    for (const double value : plot_.Y.Ticks)
      Line(plot_.X0, YOf(value), plot_.X1, YOf(value), style_.Grid, style_.LineWidth);
  }

  void DrawCurves(Random& random) {
    static const QColor kInks[] = {QColor(31, 119, 180), QColor(214, 39, 40), QColor(44, 160, 44),
                                   QColor(0, 0, 0)};
    painter_.save();
    painter_.setClipRect(QRectF(plot_.X0, plot_.Y1, plot_.X1 - plot_.X0, plot_.Y0 - plot_.Y1));
    for (int i = 0; i < style_.Curves; ++i) {
      const double waves = random.Between(0.5, 3), phase = random.Between(0, 6);
      const double middle = random.Between(0.3, 0.7);
      double high = random.Between(0.1, 0.45);
      if (style_.CurvesStay) high = std::min(high, 0.45 - std::fabs(middle - 0.5));
      QPainterPath path;
      for (int j = 0; j <= 200; ++j) {
        const double u = j / 200.0;
        const double v = middle + high * std::sin(6.28 * waves * u + phase);
        const QPointF at(plot_.X0 + u * (plot_.X1 - plot_.X0),
                         plot_.Y0 + v * (plot_.Y1 - plot_.Y0));
        j == 0 ? path.moveTo(at) : path.lineTo(at);
      }
      QColor ink = style_.Ink == Qt::black ? kInks[i % 4] : style_.Ink;
      painter_.setPen(QPen(ink, std::max(1.0, style_.LineWidth * random.Between(1, 2))));
      painter_.drawPath(path);
    }
    painter_.restore();
  }

  void DrawLines() {
    const double w = style_.LineWidth;
    if (style_.AxisLines || style_.Frame) {
      Line(plot_.X0, plot_.Y0, plot_.X1, plot_.Y0, style_.Ink, w);
      Line(plot_.X0, plot_.Y1, plot_.X0, plot_.Y0, style_.Ink, w);
    }
    if (style_.Frame || style_.LabelsAbove)
      Line(plot_.X0, plot_.Y1, plot_.X1, plot_.Y1, style_.Ink, w);
    if (style_.Frame) Line(plot_.X1, plot_.Y1, plot_.X1, plot_.Y0, style_.Ink, w);
  }

  void DrawTicks() {
    if (style_.Ticks == TickStyle::None) return;
    const double out = style_.Ticks == TickStyle::In ? 0 : style_.TickLength;
    const double in = style_.Ticks == TickStyle::Out ? 0 : style_.TickLength;
    const double base = style_.LabelsAbove ? plot_.Y1 : plot_.Y0;
    const double down = style_.LabelsAbove ? -1 : 1;
    const auto ticks = [&](const PrintedAxis& axis, bool level, const std::vector<double>& values,
                           double part) {
      for (const double value : values) {
        const double place = axis.PlaceOf(value);
        if (place < -1e-6 || place > 1 + 1e-6) continue;
        if (level)
          Line(XOf(value), base - down * in * part, XOf(value), base + down * out * part,
               style_.Ink, style_.LineWidth);
        else
          Line(plot_.X0 - out * part, YOf(value), plot_.X0 + in * part, YOf(value), style_.Ink,
               style_.LineWidth);
      }
    };
    ticks(plot_.X, true, plot_.X.MinorTicks, 0.5);
    ticks(plot_.Y, false, plot_.Y.MinorTicks, 0.5);
    ticks(plot_.X, true, plot_.X.Ticks, 1);
    ticks(plot_.Y, false, plot_.Y.Ticks, 1);
  }

  double WidthOf(const LabelText& label) const {
    return QFontMetricsF(font_).horizontalAdvance(label.Text) +
           (label.Exponent.isEmpty() ? 0
                                     : QFontMetricsF(raised_).horizontalAdvance(label.Exponent));
  }
  /// With its left end on the base line there.
  void Print(const LabelText& label, double x, double y) {
    painter_.setPen(style_.TextInk);
    painter_.setFont(font_);
    if (style_.Hinting) {
      x = std::round(x);
      y = std::round(y);
    }
    painter_.drawText(QPointF(x, y), label.Text);
    if (label.Exponent.isEmpty()) return;
    const double past = QFontMetricsF(font_).horizontalAdvance(label.Text);
    painter_.setFont(raised_);
    painter_.drawText(QPointF(x + past, y - 0.42 * style_.FontSize), label.Exponent);
  }

  void DrawLabels() {
    const double digit = QFontMetricsF(font_).tightBoundingRect("0").height();
    const double gap = (style_.Ticks == TickStyle::In ? 0 : style_.TickLength) + 0.4 * digit + 1;
    for (std::size_t i = 0; i < plot_.X.Ticks.size(); ++i) {
      const LabelText& label = plot_.X.Labels[i];
      const double x = XOf(plot_.X.Ticks[i]) - WidthOf(label) / 2;
      Print(label, x, style_.LabelsAbove ? plot_.Y1 - gap : plot_.Y0 + gap + digit);
    }
    for (std::size_t i = 0; i < plot_.Y.Ticks.size(); ++i) {
      const LabelText& label = plot_.Y.Labels[i];
      const double y = YOf(plot_.Y.Ticks[i]);
      if (style_.LabelsUpward) {
        painter_.save();
        painter_.translate(plot_.X0 - gap, y + WidthOf(label) / 2);
        painter_.rotate(-90);
        Print(label, 0, 0);
        painter_.restore();
      } else {
        Print(label, plot_.X0 - gap - WidthOf(label), y + digit / 2);
      }
    }
    if (!plot_.X.Factor.isEmpty())
      Print({plot_.X.Factor, {}}, plot_.X1 - QFontMetricsF(font_).horizontalAdvance(plot_.X.Factor),
            plot_.Y0 + gap + 2.6 * digit);
    if (!plot_.Y.Factor.isEmpty()) Print({plot_.Y.Factor, {}}, plot_.X0, plot_.Y1 - 0.6 * digit);
  }

  void DrawTitles() {
    painter_.setFont(font_);
    painter_.setPen(style_.TextInk);
    const QFontMetricsF metrics(font_);
    const double middle = 0.5 * (plot_.X0 + plot_.X1);
    if (!plot_.X.Title.isEmpty() && !style_.LabelsAbove)
      painter_.drawText(QPointF(middle - metrics.horizontalAdvance(plot_.X.Title) / 2,
                                style_.Height - 0.6 * style_.FontSize),
                        plot_.X.Title);
    if (!style_.Title.isEmpty() && !style_.LabelsAbove)
      painter_.drawText(
          QPointF(middle - metrics.horizontalAdvance(style_.Title) / 2, plot_.Y1 - 12),
          style_.Title);
    if (plot_.Y.Title.isEmpty()) return;
    painter_.save();
    painter_.translate(1.1 * style_.FontSize,
                       0.5 * (plot_.Y0 + plot_.Y1) + metrics.horizontalAdvance(plot_.Y.Title) / 2);
    painter_.rotate(-90);
    painter_.drawText(QPointF(0, 0), plot_.Y.Title);
    painter_.restore();
  }

  const PlotStyle& style_;
  Plot& plot_;
  QPainter painter_;
  QFont font_, raised_;
};

void Turn(Plot& plot, const PlotStyle& style) {
  QTransform turn;
  turn.translate(style.Width / 2.0, style.Height / 2.0);
  turn.rotate(style.Turn);
  turn.translate(-style.Width / 2.0, -style.Height / 2.0);
  QImage turned(style.Width, style.Height, QImage::Format_RGB32);
  turned.fill(style.Paper);
  QPainter painter(&turned);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setTransform(turn);
  painter.drawImage(0, 0, plot.Picture);
  painter.end();
  plot.Picture = turned;
  plot.ToPicture = turn;
}

/// A soft spot, uneven light, grain.
void Scan(QImage& picture, const PlotStyle& style, Random& random) {
  const int width = picture.width(), height = picture.height();
  std::vector<double> grey(static_cast<std::size_t>(width) * height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      grey[static_cast<std::size_t>(y) * width + x] = qGray(picture.pixel(x, y));
  if (style.Softness > 0) {
    const double side = std::exp(-0.5 / (style.Softness * style.Softness));
    const double norm = 1 / (1 + 2 * side);
    for (const int stride : {1, width}) {
      const std::vector<double> from = grey;
      for (std::size_t i = width; i + width < grey.size(); ++i)
        grey[i] = norm * (from[i] + side * (from[i - stride] + from[i + stride]));
    }
  }
  const double lean = random.Between(-1, 1);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const double light = 1 - style.Shade * (0.5 + 0.5 * lean * (x - width / 2.0) / width +
                                              0.5 * (1 - lean) * y / height);
      const double noise = style.Grain * 2 * (random.Part() + random.Part() + random.Part() - 1.5);
      const int value = static_cast<int>(
          std::clamp(grey[static_cast<std::size_t>(y) * width + x] * light + noise, 0.0, 255.0));
      picture.setPixel(x, y, qRgb(value, value, value));
    }
}

}  // namespace

double PrintedAxis::PlaceOf(double value) const {
  if (Place) return Place(value);
  if (Log) return std::log(value / First) / std::log(Last / First);
  return (value - First) / (Last - First);
}

Plot DrawPlot(const PlotStyle& style, const PrintedAxis& x, const PrintedAxis& y, Random& random,
              const std::function<void(QPainter&, const Plot&)>& besides) {
  Plot plot;
  plot.X = x;
  plot.Y = y;
  plot.X0 = style.Left;
  plot.X1 = style.Width - style.Right;
  plot.Y0 = style.Height - style.Bottom;
  plot.Y1 = style.Top;
  Drawing(style, plot).Draw(random, besides);
  if (style.Turn != 0) Turn(plot, style);
  if (style.Softness > 0 || style.Grain > 0 || style.Shade > 0) Scan(plot.Picture, style, random);
  if (style.JpegQuality > 0) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    plot.Picture.save(&buffer, "JPEG", style.JpegQuality);
    plot.Picture = QImage::fromData(bytes).convertToFormat(QImage::Format_RGB32);
  }
  return plot;
}

QString Number(double value, int decimals, bool realMinus) {
  QString text = QString::number(std::fabs(value) < 1e-12 ? 0.0 : value, 'f', decimals);
  if (realMinus) text.replace('-', QChar(0x2212));
  return text;
}

PrintedAxis LinearAxis(Random& random, bool realMinus) {
  PrintedAxis axis;
  static constexpr double kSteps[] = {1, 2, 2.5, 5};
  const double lead = kSteps[random.Below(4)];
  const int power = random.Below(6) - 3;
  const double step = lead * std::pow(10.0, power);
  const int count = 4 + random.Below(6);
  const int first = random.Chance(0.35)  ? 0
                    : random.Chance(0.4) ? -random.Below(count + 2)
                                         : random.Below(60) - 20;
  int decimals = std::max(0, -power) + (lead == 2.5 ? 1 : 0);
  if (power >= 1 || (power == 0 && lead != 2.5)) decimals = random.Chance(0.15) ? 1 : 0;
  if (lead == 2.5 && power >= 1) decimals = 0;
  for (int i = 0; i < count; ++i) {
    axis.Ticks.push_back((first + i) * step);
    axis.Labels.push_back({Number((first + i) * step, decimals, realMinus), {}});
    if (i + 1 < count)
      for (int j = 1; j < 5; ++j) axis.MinorTicks.push_back((first + i + j * 0.2) * step);
  }
  if (random.Chance(0.5)) axis.MinorTicks.clear();
  axis.First = axis.Ticks.front();
  axis.Last = axis.Ticks.back();
  if (random.Chance(0.5)) {
    axis.First -= random.Between(0, 0.7) * step;
    axis.Last += random.Between(0, 0.7) * step;
  }
  return axis;
}

PrintedAxis LogAxis(Random& random, bool realMinus) {
  PrintedAxis axis;
  axis.Log = true;
  const int decades = 2 + random.Below(5), first = random.Below(8) - 4;
  const int way = random.Below(3);
  for (int i = 0; i <= decades; ++i) {
    const int power = first + i;
    axis.Ticks.push_back(std::pow(10.0, power));
    QString sign = QString::number(power);
    if (realMinus) sign.replace('-', QChar(0x2212));
    if (way == 0 || std::abs(power) > 4)
      axis.Labels.push_back({"10", sign});
    else if (way == 1)
      axis.Labels.push_back({QString("1e") + QString::number(power), {}});
    else
      axis.Labels.push_back({Number(std::pow(10.0, power), std::max(0, -power), realMinus), {}});
    if (i < decades)
      for (int j = 2; j < 10; ++j) axis.MinorTicks.push_back(j * std::pow(10.0, power));
  }
  // One way of writing for all.
  if (way != 0)
    for (const LabelText& label : axis.Labels)
      if (!label.Exponent.isEmpty()) {
        for (int i = 0; i <= decades; ++i) {
          QString sign = QString::number(first + i);
          if (realMinus) sign.replace('-', QChar(0x2212));
          axis.Labels[i] = {"10", sign};
        }
        break;
      }
  axis.First = axis.Ticks.front();
  axis.Last = axis.Ticks.back();
  if (random.Chance(0.3)) {
    axis.First *= random.Between(0.4, 1);
    axis.Last *= random.Between(1, 2.5);
  }
  return axis;
}

}  // namespace graphize::axes
