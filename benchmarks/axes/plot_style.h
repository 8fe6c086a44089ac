#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QTransform>
#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace graphize::axes {

/// The same numbers on every machine.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  double Part() { return static_cast<double>(engine_()) / 4294967296.0; }
  double Between(double a, double b) { return a + (b - a) * Part(); }
  int Below(int n) { return static_cast<int>(Part() * n); }
  bool Chance(double p) { return Part() < p; }

 private:
  std::mt19937 engine_;
};

struct LabelText {
  QString Text, Exponent;  // the latter raised and smaller
};

/// One axis as it is printed: values from end to end, and the ticks with what stands at them.
struct PrintedAxis {
  bool Log = false;
  double First = 0, Last = 1;
  std::vector<double> Ticks, MinorTicks;
  std::vector<LabelText> Labels;  // of Ticks; an empty text prints none
  QString Title, Factor;          // what stands at its end
  /// Where on the axis (0..1) a value stands, for scales that are neither linear nor logarithmic.
  std::function<double(double)> Place;
  /// No answer may be called sure: the scale is none that the program knows, or is not what the
  /// labels alone say.
  bool IsTrap = false;

  double PlaceOf(double value) const;
};

enum class TickStyle { Out, In, Both, None };

/// How a plotting program draws.
struct PlotStyle {
  int Width = 800, Height = 600;
  double Left = 90, Top = 40, Right = 30, Bottom = 70;  // margins
  QString Font;
  int FontSize = 14;  // pixels
  bool SmoothText = true, SmoothLines = true, Hinting = true;
  QColor Paper = Qt::white, Panel = QColor(), Ink = Qt::black, TextInk = Qt::black, Grid = QColor();
  double LineWidth = 1;
  bool Frame = true, AxisLines = true;
  TickStyle Ticks = TickStyle::Out;
  double TickLength = 6;
  bool LabelsUpward = false;  // those of the Y axis
  bool LabelsAbove = false;   // those of the X axis
  bool RealMinus = true;
  int Curves = 2;
  bool CurvesStay = false;  // within the plot
  QString Title;
  // What a scanner does.
  double Turn = 0;  // degrees, clockwise
  double Softness = 0, Grain = 0, Shade = 0;
  int JpegQuality = 0;  // 0: none
};

/// A picture of a plot, and where its values lie.
struct Plot {
  QImage Picture;
  PrintedAxis X, Y;
  QTransform ToPicture;  // from the drawing to the picture, corners of pixels being whole
  double X0 = 0, X1 = 0, Y0 = 0, Y1 = 0;  // the plot's box in the drawing; Y0 is its lower side
};

Plot DrawPlot(const PlotStyle& style, const PrintedAxis& x, const PrintedAxis& y, Random& random,
              const std::function<void(QPainter&, const Plot&)>& besides = nullptr);

/// An axis with round values as programs choose them.
PrintedAxis LinearAxis(Random& random, bool realMinus);
PrintedAxis LogAxis(Random& random, bool realMinus);
/// "-2.5" as it is printed.
QString Number(double value, int decimals, bool realMinus);

}  // namespace graphize::axes
