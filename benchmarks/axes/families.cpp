#include "families.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace graphize::axes {

namespace {

const QString& AnyFont(Random& random) {
  static const QString kFonts[] = {"DejaVu Sans",
                                   "DejaVu Serif",
                                   "Liberation Sans",
                                   "Liberation Serif",
                                   "Nimbus Roman",
                                   "Nimbus Sans",
                                   "FreeSans",
                                   "FreeSerif",
                                   "FreeMono",
                                   "Open Sans",
                                   "Cantarell",
                                   "Lato",
                                   "Roboto",
                                   "Latin Modern Roman",
                                   "Latin Modern Sans",
                                   "DejaVu Sans Mono",
                                   "C059",
                                   "P052",
                                   "URW Gothic"};
  return kFonts[random.Below(static_cast<int>(std::size(kFonts)))];
}

PlotStyle CleanStyle(Random& random) {
  PlotStyle style;
  static constexpr int kWidths[] = {480, 560, 640, 800, 1000, 1280, 1600};
  style.Width = kWidths[random.Below(7)];
  style.Height = static_cast<int>(style.Width * random.Between(0.55, 0.85));
  style.FontSize = std::clamp(static_cast<int>(style.Width * random.Between(0.013, 0.026)), 11, 40);
  style.Left = style.FontSize * random.Between(5.5, 7) + 10;
  style.Bottom = style.FontSize * random.Between(3.5, 4.5) + 10;
  style.Top = style.FontSize * random.Between(2.2, 3) + 8;
  style.Right = style.FontSize * random.Between(2.5, 4);
  style.Font = AnyFont(random);
  style.Hinting = random.Chance(0.5);
  style.SmoothLines = random.Chance(0.6);
  style.LineWidth =
      style.SmoothLines ? random.Between(0.8, 2.2) * style.Width / 900 + 0.3 : 1 + random.Below(2);
  style.Frame = random.Chance(0.6);
  style.Ticks = static_cast<TickStyle>(random.Below(3));
  style.TickLength = std::max(4.0, style.FontSize * random.Between(0.3, 0.6));
  style.RealMinus = random.Chance(0.6);
  style.Curves = random.Below(4);
  if (random.Chance(0.2)) {
    style.Ink = QColor(60, 60, 60);
    style.TextInk = QColor(70, 70, 70);
  }
  if (random.Chance(0.5)) style.Title = random.Chance(0.5) ? "Measured response" : "Run 7, 20 C";
  return style;
}

PrintedAxis AnyAxis(Random& random, const PlotStyle& style, double logs = 0) {
  PrintedAxis axis =
      random.Chance(logs) ? LogAxis(random, style.RealMinus) : LinearAxis(random, style.RealMinus);
  static const char* kTitles[] = {"Time (s)", "Voltage / V", "Temperature", "", "Frequency [Hz]"};
  axis.Title = kTitles[random.Below(5)];
  return axis;
}

Plot Draw(PlotStyle style, Random& random, double logs = 0) {
  const PrintedAxis x = AnyAxis(random, style, logs);
  const PrintedAxis y = AnyAxis(random, style, logs);
  return DrawPlot(style, x, y, random);
}

void AddGrid(PlotStyle& style, Random& random) {
  const int grey = 170 + random.Below(60);
  style.Grid = QColor(grey, grey, grey);
  if (!random.Chance(0.35)) return;
  // Tiles of grey with white lines, and no axis lines.
  style.Panel = QColor(235, 235, 235);
  style.Grid = Qt::white;
  style.Frame = style.AxisLines = false;
  style.Ticks = TickStyle::Out;
  style.TextInk = QColor(77, 77, 77);
}

void AddScan(PlotStyle& style, Random& random) {
  style.Softness = random.Between(0.3, 0.9);
  style.Grain = random.Between(2, 8);
  style.Shade = random.Between(0, 0.25);
  style.Turn = random.Between(-2.5, 2.5);
  if (random.Chance(0.6)) style.JpegQuality = 60 + random.Below(35);
  style.TextInk = style.Ink = QColor(30, 30, 30);
}

/// Linear axes of which one has been spoiled.
template <class Spoil>
Plot Trap(Random& random, const Spoil& spoil) {
  const PlotStyle style = CleanStyle(random);
  PrintedAxis x = AnyAxis(random, style), y = AnyAxis(random, style);
  PrintedAxis& axis = random.Chance(0.5) ? x : y;
  axis.IsTrap = true;
  spoil(axis, style);
  return DrawPlot(style, x, y, random);
}

template <class LabelOf>
void Relabel(PrintedAxis& axis, double first, double step, int count, const LabelOf& labelOf) {
  axis.Ticks.clear();
  axis.Labels.clear();
  axis.MinorTicks.clear();
  for (int i = 0; i < count; ++i) {
    axis.Ticks.push_back(first + i * step);
    axis.Labels.push_back(labelOf(i, first + i * step));
  }
  axis.First = axis.Ticks.front();
  axis.Last = axis.Ticks.back();
}

/// Places that are neither even nor logarithmic.
void Uneven(PrintedAxis& axis, const std::vector<double>& values, const std::vector<double>& places,
            int decimals) {
  axis.Ticks = values;
  axis.MinorTicks.clear();
  axis.Labels.clear();
  for (const double value : values)
    axis.Labels.push_back({QString::number(value, 'f', decimals), {}});
  axis.Place = [values, places](double value) {
    const auto at = std::find(values.begin(), values.end(), value) - values.begin();
    return at < static_cast<std::ptrdiff_t>(places.size()) ? places[at] : 2.0;
  };
}

std::vector<Family> Traps() {
  std::vector<Family> traps;
  const auto add = [&](const char* name, const auto& spoil) {
    traps.push_back({std::string("trap: ") + name, 2, [spoil](Random& random) {
                       return Trap(random, [&](PrintedAxis& axis, const PlotStyle& style) {
                         spoil(axis, style, random);
                       });
                     }});
  };
  using A = PrintedAxis;
  using S = PlotStyle;
  using R = Random;
  add("a factor at the end", [](A& axis, const S&, R& random) {
    static const char* kFactors[] = {"1e6", "x10", "1e-3", "×1000", "10e3", "+1e5", "x 100"};
    axis.Factor = QString::fromUtf8(kFactors[random.Below(7)]);
  });
  add("thousands or thousandths", [](A& axis, const S&, R& random) {
    const double step = random.Chance(0.5) ? 1 : 2;
    Relabel(axis, step, step, 5, [&](int, double value) {
      return LabelText{QString::number(value, 'f', 3).replace('.', ','), {}};
    });
  });
  add("flat powers of ten", [](A& axis, const S&, R& random) {
    const int first = random.Below(3);
    Relabel(axis, first, 1, 5, [&](int, double value) {
      return LabelText{QString("10") + QString::number(value), {}};
    });
  });
  add("letters behind numbers", [](A& axis, const S&, R& random) {
    static const char* kSigns[] = {"k", "%", "°", "M", "π", "m", "°C", "K", "h"};
    const QString sign = QString::fromUtf8(kSigns[random.Below(9)]);
    Relabel(axis, 10, 10, 5, [&](int, double value) {
      return LabelText{QString::number(value) + sign, {}};
    });
  });
  add("times and dates", [](A& axis, const S&, R& random) {
    const int way = random.Below(4);
    Relabel(axis, 8, 2, 5, [&](int i, double value) {
      switch (way) {
        case 0:
          return LabelText{QString::number(value) + ":00", {}};
        case 1:
          return LabelText{"'" + QString::number(90 + 2 * i), {}};
        case 2:
          return LabelText{QString::number(value) + "/" + QString::number(11 + i), {}};
        default:
          return LabelText{QString("2019-0") + QString::number(i + 1), {}};
      }
    });
  });
  add("a broken axis", [](A& axis, const S&, R& random) {
    const double jump = random.Chance(0.5) ? 100 : 50;
    Uneven(axis, {0, 10, 20, 30, jump + 10, jump + 20, jump + 30},
           {0, 0.15, 0.3, 0.45, 0.65, 0.8, 0.95}, 0);
  });
  add("a probability scale", [](A& axis, const S&, R&) {
    Uneven(axis, {1, 5, 10, 30, 50, 70, 90, 95, 99},
           {0.0, 0.146, 0.224, 0.387, 0.5, 0.613, 0.776, 0.854, 1.0}, 0);
  });
  add("a root scale", [](A& axis, const S&, R&) {
    Uneven(axis, {0, 1, 4, 9, 16, 25}, {0, 0.2, 0.4, 0.6, 0.8, 1.0}, 0);
  });
  add("a wrong label", [](A& axis, const S&, R& random) {
    Relabel(axis, 0, 10, 6, [&](int i, double value) {
      return LabelText{QString::number(i == 3 ? value + 5 : value), {}};
    });
    (void)random;
  });
  add("pale points", [](A& axis, const S& style, R&) {
    // The point is printed as a blank of its width: lost, as in a coarse scan.
    Relabel(axis, 0.5, 0.5, 6, [&](int, double value) {
      return LabelText{QString::number(value, 'f', 1).replace('.', QChar(0x2008)), {}};
    });
    (void)style;
  });
  add("a reciprocal scale", [](A& axis, const S&, R&) {
    Uneven(axis, {1, 2, 4, 8}, {0, 0.5714, 0.8571, 1.0}, 0);
  });
  traps.push_back(
      {"trap: a second scale", 4, [](Random& random) {
         PlotStyle style = CleanStyle(random);
         style.Frame = true;
         style.Right = style.Left;
         PrintedAxis x = AnyAxis(random, style), y = AnyAxis(random, style);
         const PrintedAxis other = AnyAxis(random, style);
         y.IsTrap = true;
         return DrawPlot(style, x, y, random, [&](QPainter& painter, const Plot& plot) {
           for (std::size_t i = 0; i < other.Ticks.size(); ++i) {
             const double v = plot.Y0 + other.PlaceOf(other.Ticks[i]) * (plot.Y1 - plot.Y0);
             painter.fillRect(QRectF(plot.X1, v - 0.5, style.TickLength, 1), style.Ink);
             painter.drawText(QPointF(plot.X1 + style.TickLength + 6, v + 0.36 * style.FontSize),
                              other.Labels[i].Text);
           }
         });
       }});
  traps.push_back({"trap: two plots side by side", 4, [](Random& random) {
                     PlotStyle style = CleanStyle(random);
                     style.LabelsUpward = false;
                     PrintedAxis x = AnyAxis(random, style), y = AnyAxis(random, style);
                     PrintedAxis x2 = AnyAxis(random, style), y2 = AnyAxis(random, style);
                     Plot first = DrawPlot(style, x, y, random);
                     const Plot second = DrawPlot(style, x2, y2, random);
                     QImage both(2 * style.Width, style.Height, QImage::Format_RGB32);
                     QPainter painter(&both);
                     painter.drawImage(0, 0, first.Picture);
                     painter.drawImage(style.Width, 0, second.Picture);
                     painter.end();
                     first.Picture = both;
                     first.X.IsTrap = first.Y.IsTrap = true;
                     return first;
                   }});
  traps.push_back({"trap: cut at the edge", 2, [](Random& random) {
                     PlotStyle style = CleanStyle(random);
                     PrintedAxis x = AnyAxis(random, style), y = AnyAxis(random, style);
                     Relabel(y, 100, 100, 6, [&](int, double value) {
                       return LabelText{QString::number(value), {}};
                     });
                     y.Title.clear();
                     y.IsTrap = true;
                     Plot plot = DrawPlot(style, x, y, random);
                     const double digit = 0.56 * style.FontSize;
                     const double gap = (style.Ticks == TickStyle::In ? 0 : style.TickLength) +
                                        0.3 * style.FontSize;
                     const int cut =
                         static_cast<int>(plot.X0 - gap - digit * random.Between(1.6, 2.4));
                     plot.Picture = plot.Picture.copy(cut, 0, style.Width - cut, style.Height);
                     plot.ToPicture = QTransform::fromTranslate(-cut, 0);
                     return plot;
                   }});
  return traps;
}

}  // namespace

std::vector<Family> Families() {
  std::vector<Family> families = {
      {"clean, linear", 14, [](Random& random) { return Draw(CleanStyle(random), random); }},
      {"clean, logarithmic", 8,
       [](Random& random) { return Draw(CleanStyle(random), random, 0.8); }},
      {"grid", 12,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         AddGrid(style, random);
         return Draw(style, random, 0.15);
       }},
      {"reversed", 5,
       [](Random& random) {
         const PlotStyle style = CleanStyle(random);
         PrintedAxis x = AnyAxis(random, style, 0.2), y = AnyAxis(random, style, 0.2);
         std::swap(x.First, x.Last);
         if (random.Chance(0.5)) std::swap(y.First, y.Last);
         return DrawPlot(style, x, y, random);
       }},
      {"light on dark, colours", 6,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         const bool dark = random.Chance(0.5);
         style.Paper = dark ? QColor(20, 24, 40) : QColor(255, 250, 225);
         style.Ink = dark ? QColor(230, 230, 230) : QColor(20, 40, 120);
         style.TextInk = dark ? QColor(240, 240, 200) : QColor(140, 20, 30);
         return Draw(style, random, 0.1);
       }},
      {"labels upward or above", 5,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         style.LabelsUpward = random.Chance(0.7);
         style.LabelsAbove = !style.LabelsUpward;
         if (style.LabelsAbove) std::swap(style.Top, style.Bottom);
         return Draw(style, random, 0.1);
       }},
      {"turned", 8,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         style.SmoothLines = true;
         style.Turn = random.Between(-6, 6);
         return Draw(style, random, 0.1);
       }},
      {"scanned", 10,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         AddScan(style, random);
         return Draw(style, random, 0.15);
       }},
      {"small letters", 6,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         style.Width = 320 + random.Below(200);
         style.Height = style.Width * 3 / 4;
         style.FontSize = 8 + random.Below(4);
         style.SmoothText = random.Chance(0.6);
         style.Left = 60;
         style.Bottom = 42;
         style.Top = 26;
         style.Right = 24;
         style.LineWidth = 1;
         style.TickLength = 4;
         return Draw(style, random, 0.1);
       }},
      {"compressed", 6,
       [](Random& random) {
         PlotStyle style = CleanStyle(random);
         style.JpegQuality = 30 + random.Below(60);
         return Draw(style, random, 0.15);
       }},
  };
  for (Family& trap : Traps()) families.push_back(std::move(trap));
  return families;
}

void LoadFonts() {
  for (const char* face : {"lmroman10-regular", "lmsans10-regular"})
    QFontDatabase::addApplicationFont(
        QString("/usr/share/texmf/fonts/opentype/public/lm/%1.otf").arg(face));
}

}  // namespace graphize::axes
