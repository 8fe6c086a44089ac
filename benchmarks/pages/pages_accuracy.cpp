// How well pages of the same layout are registered to a calibrated one: docs/pages.md, whole, on
// standard output.
//   pages_accuracy [COUNT [SEED]]         layouts, 40 and 1 unless given
//   pages_accuracy COUNT SEED FOLDER      writes so many pages of one layout instead, and says how
//                                         "graphize digitize" takes the calibrated one's axes and
//                                         reads its curve
// With PAGES_KEEP=FOLDER in the environment the pictures of wrong answers stay there. The status is
// 1 when a page was accepted wrongly.

#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "../axes/families.h"
#include "../axes/report.h"
#include "base/affine_map.h"
#include "finding_axes/register_page.h"

namespace graphize::axes {
namespace {

/// What happens to a page on its way into the computer.
struct Way {
  double ShiftX = 0, ShiftY = 0, Turn = 0, ScaleX = 1, ScaleY = 1, Shear = 0;
  double Soft = 0, Grain = 0;
  int Specks = 0, JpegQuality = 0;
  bool Grey = false;
};

QTransform MapOf(const Way& way, QSize size) {
  QTransform map;
  map.translate(size.width() / 2.0 + way.ShiftX, size.height() / 2.0 + way.ShiftY);
  map.rotate(way.Turn);
  map.shear(way.Shear, 0);
  map.scale(way.ScaleX, way.ScaleY);
  map.translate(-size.width() / 2.0, -size.height() / 2.0);
  return map;
}

QImage Sent(const QImage& page, const Way& way, Random& random) {
  QImage sent(page.size(), QImage::Format_RGB32);
  sent.fill(page.pixel(1, 1));
  {
    QPainter painter(&sent);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setTransform(MapOf(way, page.size()));
    painter.drawImage(0, 0, page);
  }
  for (int y = 0; y < sent.height(); ++y)
    for (int x = 0; x < sent.width(); ++x) {
      const QRgb pixel = sent.pixel(x, y);
      const double noise = way.Grain * 2 * (random.Part() + random.Part() + random.Part() - 1.5);
      const auto level = [&](int value) {
        return static_cast<int>(std::clamp(value + noise, 0.0, 255.0));
      };
      const int grey = level(qGray(pixel));
      sent.setPixel(x, y,
                    way.Grey ? qRgb(grey, grey, grey)
                             : qRgb(level(qRed(pixel)), level(qGreen(pixel)), level(qBlue(pixel))));
    }
  for (int i = 0; i < way.Specks; ++i) {
    const int x = random.Below(sent.width() - 2), y = random.Below(sent.height() - 2);
    const int size = 1 + random.Below(2), dark = random.Below(120);
    for (int j = 0; j < size * size; ++j)
      sent.setPixel(x + j % size, y + j / size, qRgb(dark, dark, dark));
  }
  if (way.JpegQuality > 0) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    sent.save(&buffer, "JPEG", way.JpegQuality);
    sent = QImage::fromData(bytes).convertToFormat(QImage::Format_RGB32);
  }
  return sent;
}

/// A page that a recorder prints: a frame, often a grid, numbers at the ticks.
struct Layout {
  PlotStyle Style;
  PrintedAxis X, Y;
};

Layout AnyLayout(Random& random) {
  Layout layout;
  PlotStyle& style = layout.Style;
  static constexpr int kSizes[][2] = {{640, 480}, {800, 600}, {1000, 700}, {1240, 1754}};
  const auto& size = kSizes[random.Below(4)];
  style.Width = size[0];
  style.Height = size[1];
  style.Left = random.Between(110, 150);
  style.Right = random.Between(90, 120);
  style.Top = random.Between(90, 120);
  style.Bottom = random.Between(110, 150);
  static constexpr const char* kFonts[] = {"DejaVu Sans", "Liberation Sans", "Liberation Serif"};
  style.Font = kFonts[random.Below(3)];
  style.FontSize = 12 + random.Below(8);
  style.LineWidth = random.Between(1, 2.5);
  style.SmoothLines = random.Chance(0.7);
  if (random.Chance(0.6)) style.Grid = random.Chance(0.5) ? QColor(190, 190, 190) : Qt::black;
  if (random.Chance(0.15)) style.Grid = QColor(120, 160, 220);
  style.Ticks = static_cast<TickStyle>(random.Below(4));
  style.Curves = 1 + random.Below(3);
  if (random.Chance(0.5)) style.Title = "Chart record";
  layout.X = random.Chance(0.2) ? LogAxis(random, false) : LinearAxis(random, false);
  layout.Y = random.Chance(0.2) ? LogAxis(random, false) : LinearAxis(random, false);
  return layout;
}

/// Other values at the same ticks: `scale` times as large, a decade on a logarithmic axis, or
/// `cells` steps further.
PrintedAxis Relabelled(const PrintedAxis& axis, double scale, int cells) {
  PrintedAxis other = axis;
  for (std::size_t i = 0; i < axis.Ticks.size(); ++i) {
    const double value = axis.Log
                             ? axis.Ticks[i] * std::pow(10, scale == 1 ? cells : 1)
                             : scale * (axis.Ticks[i] + cells * (axis.Ticks[1] - axis.Ticks[0]));
    other.Labels[i] = axis.Log ? LabelText{"10", QString::number(std::lround(std::log10(value)))}
                               : LabelText{QString::number(value, 'g', 6), {}};
  }
  return other;
}

/// The same labels with more before them, right-aligned as they are.
PrintedAxis Prefixed(const PrintedAxis& axis, const QString& sign) {
  PrintedAxis other = axis;
  for (LabelText& label : other.Labels) label.Text = sign + label.Text;
  return other;
}

struct Page {
  QImage Picture;
  Way Sent;
};

struct Kind {
  std::string Name;
  bool IsWrong;
  std::function<Page(const Layout&, Random&)> Make;
};

Way AnyWay(Random& random, double shift, double turn, double scale) {
  Way way{.ShiftX = random.Between(-shift, shift),
          .ShiftY = random.Between(-shift, shift),
          .Turn = random.Between(-turn, turn)};
  way.ScaleX = way.ScaleY = 1 + random.Between(-scale, scale);
  return way;
}

std::vector<Kind> Kinds() {
  const auto sent = [](auto change) {
    return [change](const Layout& layout, Random& random) {
      Way way = AnyWay(random, 40, 1, 0.015);
      Layout drawn = layout;
      change(drawn, way, random);
      const QImage page = DrawPlot(drawn.Style, drawn.X, drawn.Y, random).Picture;
      return Page{Sent(page, way, random), way};
    };
  };
  return {
      {"moved up to 80 pixels", false, sent([](Layout&, Way& way, Random& random) {
         way = AnyWay(random, 80, 0, 0);
         // Qt moves a picture that is moved alone by whole pixels.
         way.ShiftX = std::round(way.ShiftX);
         way.ShiftY = std::round(way.ShiftY);
       })},
      {"turned up to 2 degrees, too", false,
       sent([](Layout&, Way& way, Random& random) { way = AnyWay(random, 80, 2, 0); })},
      {"scaled up to 1.5 %, too", false,
       sent([](Layout&, Way& way, Random& random) { way = AnyWay(random, 80, 2, 0.015); })},
      {"and kept as JPEG", false, sent([](Layout&, Way& way, Random& random) {
         way = AnyWay(random, 80, 2, 0.015);
         way.JpegQuality = 40 + random.Below(50);
       })},
      {"and with specks and grain", false, sent([](Layout&, Way& way, Random& random) {
         way = AnyWay(random, 80, 2, 0.015);
         way.Specks = 100 + random.Below(1500);
         way.Grain = random.Between(2, 14);
         way.Grey = true;
         way.JpegQuality = 50 + random.Below(40);
       })},
      {"wrong: another Y scale", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y = Relabelled(layout.Y, 2, 0); })},
      {"wrong: another X scale", true,
       sent([](Layout& layout, Way&, Random&) { layout.X = Relabelled(layout.X, 5, 0); })},
      {"wrong: an X scale that begins a cell later", true,
       sent([](Layout& layout, Way&, Random&) { layout.X = Relabelled(layout.X, 1, 1); })},
      {"wrong: a Y scale that begins two cells earlier", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y = Relabelled(layout.Y, 1, -2); })},
      {"wrong: a sign before the Y labels", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y = Prefixed(layout.Y, "-"); })},
      {"wrong: a digit more before the Y labels", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y = Prefixed(layout.Y, "1"); })},
      {"wrong: a point before the Y labels", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y = Prefixed(layout.Y, "0."); })},
      {"wrong: a factor at the end of the Y axis", true,
       sent([](Layout& layout, Way&, Random&) { layout.Y.Factor = "x1000"; })},
      {"wrong: a plot two cells wider", true, sent([](Layout& layout, Way& way, Random&) {
         way.ScaleX = way.ScaleY = 1;
         const double cell = (layout.Style.Width - layout.Style.Left - layout.Style.Right) /
                             static_cast<double>(layout.X.Ticks.size() - 1);
         layout.Style.Right -= std::min(cell, 80.0);
       })},
      {"wrong: no frame, no axes, no grid", true, sent([](Layout& layout, Way&, Random&) {
         layout.Style.Frame = layout.Style.AxisLines = false;
         layout.Style.Grid = QColor();
       })},
      {"wrong: mirrored", true,
       [](const Layout& layout, Random& random) {
         const Way way = AnyWay(random, 20, 0.5, 0.01);
         const QImage page = DrawPlot(layout.Style, layout.X, layout.Y, random).Picture;
         return Page{Sent(page.mirrored(true, false), way, random), way};
       }},
      {"wrong: upside down", true,
       [](const Layout& layout, Random& random) {
         const Way way = AnyWay(random, 20, 0.5, 0.01);
         const QImage page = DrawPlot(layout.Style, layout.X, layout.Y, random).Picture;
         return Page{Sent(page.mirrored(true, true), way, random), way};
       }},
      {"wrong: squeezed by 2 to 4 %", true, sent([](Layout&, Way& way, Random& random) {
         way.ScaleY = way.ScaleX * (1 - random.Between(0.02, 0.04));
       })},
      {"wrong: skewed by 0.7 to 1.5 degrees", true, sent([](Layout&, Way& way, Random& random) {
         way.Shear = std::tan(0.01745 * random.Between(0.7, 1.5));
       })},
      {"wrong: an eighth larger", true,
       sent([](Layout&, Way& way, Random&) { way.ScaleX = way.ScaleY = 1.125; })},
      {"wrong: blank", true,
       [](const Layout& layout, Random& random) {
         QImage page(layout.Style.Width, layout.Style.Height, QImage::Format_RGB32);
         page.fill(Qt::white);
         return Page{Sent(page, {.Grain = 5, .Specks = 500}, random), {}};
       }},
      {"wrong: another layout", true,
       [](const Layout& layout, Random& random) {
         Layout other = AnyLayout(random);
         other.Style.Width = layout.Style.Width;
         other.Style.Height = layout.Style.Height;
         return Page{DrawPlot(other.Style, other.X, other.Y, random).Picture, {}};
       }},
  };
}

struct Tally {
  int All = 0, Accepted = 0, FarOff = 0;
  std::vector<double> Corners, Seconds;
};

/// How far the worst corner of the plot lies from where the registration puts it.
double CornersOff(const Layout& layout, const Way& reference, const Way& page,
                  const AffineMap& map) {
  const PlotStyle& style = layout.Style;
  const QSize size(style.Width, style.Height);
  const QTransform first = MapOf(reference, size), second = MapOf(page, size);
  double worst = 0;
  for (const double x : {style.Left, style.Width - style.Right})
    for (const double y : {style.Top, style.Height - style.Bottom}) {
      const QPointF from = first.map(QPointF(x, y)), to = second.map(QPointF(x, y));
      const MappedPlace found = Mapped(map, from.x() - 0.5, from.y() - 0.5);
      worst = std::max(worst, std::hypot(found.X - (to.x() - 0.5), found.Y - (to.y() - 0.5)));
    }
  return worst;
}

constexpr const char* kLead = R"(# How well pages of the same layout are registered

`build/release/benchmarks/pages_accuracy > docs/pages.md` made this page: pages of drawn recorders, each with a frame, most with a grid, with other curves than those of the calibrated page. Half of the calibrated pages are themselves scans that lie askew. Corner: how far the worst corner of the plot is off, in pixels. Accepted is what fits without a doubt. A page is accepted wrongly when it is one of the wrong ones, or when a corner is off by more than a pixel.

| pages | number | accepted | wrongly | corner, middle | 95 % | worst |
|---|---:|---:|---:|---:|---:|---:|
)";

void PrintRow(const std::string& name, const Tally& tally) {
  std::printf("| %s | %d | %d (%.0f %%) | %d | ", name.c_str(), tally.All, tally.Accepted,
              tally.All == 0 ? 0.0 : 100.0 * tally.Accepted / tally.All, tally.FarOff);
  if (tally.Corners.empty())
    std::puts("- | - | - |");
  else
    std::printf("%.2f | %.2f | %.2f |\n", Quantile(tally.Corners, 0.5),
                Quantile(tally.Corners, 0.95), Quantile(tally.Corners, 1));
}

int Report(int count, int seed) {
  LoadFonts();
  const char* keep = std::getenv("PAGES_KEEP");
  const std::vector<Kind> kinds = Kinds();
  std::vector<Tally> tallies(kinds.size());
  int refusedReferences = 0;
  for (int i = 0; i < count; ++i) {
    Random random(static_cast<std::uint32_t>(seed * 100000 + i) * 2654435761u + 977);
    const Layout layout = AnyLayout(random);
    Way askew;
    if (i % 2 == 1) {
      askew = AnyWay(random, 30, 1, 0);
      askew.JpegQuality = 85;
      askew.Grain = 4;
    }
    const QImage first =
        Sent(DrawPlot(layout.Style, layout.X, layout.Y, random).Picture, askew, random);
    PictureOperation operation;
    const PageReference reference = PageReferenceOf(RasterOf(first), operation);
    if (!reference.Refusal.empty()) {
      ++refusedReferences;
      continue;
    }
    for (std::size_t k = 0; k < kinds.size(); ++k) {
      const Page page = kinds[k].Make(layout, random);
      const Raster raster = RasterOf(page.Picture);
      const std::clock_t start = std::clock();
      const PageRegistration found = RegisterPage(reference, raster, operation);
      const double took = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
      Tally& tally = tallies[k];
      ++tally.All;
      tally.Seconds.push_back(took * 1e6 / static_cast<double>(raster.PixelCount()));
      const double off = CornersOff(layout, askew, page.Sent, found.ToPage);
      const bool accepted = found.Fits() && found.Doubt.empty();
      const bool wrongly = accepted && (kinds[k].IsWrong || off > 1);
      if (accepted) {
        ++tally.Accepted;
        tally.FarOff += wrongly ? 1 : 0;
        if (!kinds[k].IsWrong) tally.Corners.push_back(off);
      }
      if (keep != nullptr && (wrongly || (!kinds[k].IsWrong && (!accepted || off > 0.15)))) {
        const std::string name =
            std::string(keep) + "/" + std::to_string(i) + "_" + std::to_string(k);
        first.save(QString::fromStdString(name + "a.png"));
        page.Picture.save(QString::fromStdString(name + "b.png"));
        std::fprintf(stderr, "%s (%s) off %.2f: %s\n", name.c_str(), kinds[k].Name.c_str(), off,
                     (found.Refusal + found.Doubt).c_str());
      }
    }
  }
  std::fputs(kLead, stdout);
  Tally right, wrong;
  std::vector<double> seconds;
  for (std::size_t k = 0; k < kinds.size(); ++k) {
    PrintRow(kinds[k].Name, tallies[k]);
    Tally& sum = kinds[k].IsWrong ? wrong : right;
    sum.All += tallies[k].All;
    sum.Accepted += tallies[k].Accepted;
    sum.FarOff += tallies[k].FarOff;
    sum.Corners.insert(sum.Corners.end(), tallies[k].Corners.begin(), tallies[k].Corners.end());
    seconds.insert(seconds.end(), tallies[k].Seconds.begin(), tallies[k].Seconds.end());
  }
  PrintRow("**all of the layout**", right);
  PrintRow("**all wrong ones**", wrong);
  std::printf(
      "\n%d of %d calibrated pages were refused. A page took %.2f seconds of processor time per "
      "million pixels in the middle, %.2f at 95 %%.\n",
      refusedReferences, count, Quantile(seconds, 0.5), Quantile(seconds, 0.95));
  return right.FarOff + wrong.FarOff == 0 ? 0 : 1;
}

/// Where the curve, which alone is coloured, crosses a column.
QPoint OnCurve(const QImage& page, int column) {
  const auto colour = [&](int row) {
    const QRgb pixel = page.pixel(column, row);
    return std::abs(qBlue(pixel) - qRed(pixel));
  };
  int best = 0;
  for (int row = 1; row < page.height(); ++row)
    if (colour(row) > colour(best)) best = row;
  return {column, best};
}

/// Pages of one layout as a scanner sends them, the calibrated one as it was printed.
int Write(int count, int seed, const std::string& folder) {
  LoadFonts();
  Random random(static_cast<std::uint32_t>(seed) * 2654435761u + 977);
  Layout layout = AnyLayout(random);
  layout.Style.Grid = QColor(190, 190, 190);
  layout.Style.Curves = 1;
  layout.Style.CurvesStay = true;
  const auto draw = [&] { return DrawPlot(layout.Style, layout.X, layout.Y, random); };
  const Plot first = draw();
  const auto file = [&](int number) {
    return QString::fromStdString(folder + "/page" + std::to_string(number) + ".png");
  };
  bool written = first.Picture.save(file(0));
  for (int i = 1; i <= count; ++i) {
    Way way = AnyWay(random, 60, 1.5, 0.012);
    way.Grain = 3;
    way.Specks = 100;
    written = Sent(draw().Picture, way, random).save(file(i)) && written;
  }
  const auto at = [&](double x, double y) {
    return std::to_string(std::lround(x - 0.5)) + "," + std::to_string(std::lround(y - 0.5));
  };
  const PrintedAxis &x = layout.X, &y = layout.Y;
  const QPoint start = OnCurve(first.Picture, static_cast<int>(0.7 * first.X0 + 0.3 * first.X1));
  std::printf("--origin=%s:%g,%g --x-axis=%s:%g --y-axis=%s:%g%s%s --read=%d,%d\n",
              at(first.X0, first.Y0).c_str(), x.First, y.First, at(first.X1, first.Y0).c_str(),
              x.Last, at(first.X0, first.Y1).c_str(), y.Last, x.Log ? " --x-log" : "",
              y.Log ? " --y-log" : "", start.x(), start.y());
  return written ? 0 : 1;
}

}  // namespace
}  // namespace graphize::axes

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  if (argc > 3) return graphize::axes::Write(std::atoi(argv[1]), std::atoi(argv[2]), argv[3]);
  return graphize::axes::Report(argc > 1 ? std::atoi(argv[1]) : 40,
                                argc > 2 ? std::atoi(argv[2]) : 1);
}
