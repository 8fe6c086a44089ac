#include "ink_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "commands/do.h"
#include "measure.h"
#include "raster/black_white.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"
#include "tracing/ink_check.h"
#include "workspace/workspace.h"

namespace graphize::accuracy {

namespace {

using test::PlotDrawing;
using test::Stroke;
using Function = std::function<double(double)>;

constexpr unsigned kSeeds = 150;
constexpr int kWidth = 660, kHeight = 480;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double From(double least, double most) {
    return least + (most - least) * static_cast<double>(engine_()) / std::mt19937::max();
  }
  bool Chance(double part) { return From(0, 1) < part; }

 private:
  std::mt19937 engine_;
};

/// A smooth curve within `least` to `most` of the plot's height.
Function Wandering(Random& random, double least, double most) {
  const double slope = random.From(-1, 1), waves = random.From(0.3, 2.2);
  const double phase = random.From(0, 6.28), height = random.From(0.2, 1);
  const double second = random.From(0, 0.5), phase2 = random.From(0, 6.28);
  return [=](double u) {
    const double y = slope * (u - 0.5) + height * std::sin(6.28 * waves * u + phase) +
                     second * std::sin(15 * u + phase2);
    return least + (most - least) * (0.5 + 0.5 * std::tanh(y));
  };
}

struct InkPlot {
  explicit InkPlot(unsigned seed)
      : Chosen(seed), Drawing(kWidth, kHeight, 60, 40, 620, 430, Chosen.From(-1, 1)) {}

  Random Chosen;
  PlotDrawing Drawing;
  std::vector<PixelPosition> Course;
  bool Grey = false;
  const char* XIncrement = "2";

  Stroke Line() { return {.Thickness = Chosen.From(1, 3.5)}; }
  void Curve(const Function& v, const Stroke& stroke, double first = 0.02, double last = 0.98) {
    Course = Drawing.Curve(v, stroke, first, last);
  }
  void Frame() { Drawing.Frame({.Thickness = Chosen.From(1, 3)}, 10, Chosen.Chance(0.5) ? 6 : -6); }
};

using Draw = void (*)(InkPlot&);

void Clean(InkPlot& plot) {
  plot.Curve(Wandering(plot.Chosen, 0.1, 0.9), plot.Line());
  plot.Frame();
}

void Crossings(InkPlot& plot) {
  for (int others = plot.Chosen.Chance(0.5) ? 2 : 1; others > 0; --others)
    plot.Drawing.Curve(Wandering(plot.Chosen, 0.05, 0.95), plot.Line(), 0.02, 0.98);
  Clean(plot);
}

/// Up to the frame, and along it.
void AtTheFrame(InkPlot& plot) {
  const double level = plot.Chosen.From(0.3, 1.5), bend = plot.Chosen.From(2, 6);
  const bool falls = plot.Chosen.Chance(0.5);
  const Function inside = Wandering(plot.Chosen, 0.08, 0.92);
  const bool leaves = plot.Chosen.Chance(0.5);
  plot.Curve(
      [=](double u) {
        if (!leaves) return inside(u);
        const double rise = std::min(level * std::tanh(bend * u * u), 1.0);
        return falls ? 1 - rise : rise;
      },
      plot.Line(), 0, leaves ? 0.9 : 1);
  plot.Frame();
}

/// Waves whose crests lie on the frame's line, or are cut off by it.
void CrestsAtTheFrame(InkPlot& plot) {
  const double waves = plot.Chosen.From(0.7, 3), phase = plot.Chosen.From(0, 6.28);
  const double height = plot.Chosen.Chance(0.5) ? 0.5 + plot.Chosen.From(-0.002, 0.002)
                                                : 0.5 + plot.Chosen.From(0.02, 0.15);
  const Function v = [=](double u) { return 0.5 + height * std::sin(6.28 * waves * u + phase); };
  const Stroke stroke = plot.Line();
  constexpr double kPlot = 390, kStep = 1.0 / 2000;  // the plot's height in pixels
  const auto isInside = [&](double u) { return std::abs(v(u) - 0.5) <= 0.5 + 1 / kPlot; };
  std::vector<PixelPosition> course;
  for (double first = 0.02, last = first; first < 0.98; first = last + kStep) {
    for (last = first; last < 0.98 && isInside(last); last += kStep) {
    }
    if (last <= first) continue;
    plot.Curve(v, stroke, first, last);
    course.insert(course.end(), plot.Course.begin(), plot.Course.end());
  }
  plot.Course = std::move(course);
  plot.Frame();
}

void Labels(InkPlot& plot) {
  const Function v = Wandering(plot.Chosen, 0.15, 0.85);
  plot.Curve(v, plot.Line());
  for (int labels = 3; labels > 0; --labels) {
    const double u = plot.Chosen.From(0.15, 0.85);
    const PixelPosition at = plot.Drawing.Place(u, v(u));
    plot.Drawing.Digits({at.X, at.Y + plot.Chosen.From(-14, 8)}, "12.5", plot.Chosen.From(1, 2));
  }
  plot.Frame();
}

void LightColours(InkPlot& plot) {
  const Function v = Wandering(plot.Chosen, 0.1, 0.9);
  plot.Drawing.LinesAtV(test::Linear(5), {.Darkness = plot.Chosen.From(0.1, 0.6)});
  plot.Drawing.Curve(Wandering(plot.Chosen, 0.05, 0.95),
                     {.Thickness = 2, .Darkness = plot.Chosen.From(0.2, 0.7)}, 0.02, 0.98);
  plot.Curve(v, {.Thickness = plot.Chosen.From(1.5, 3), .Darkness = plot.Chosen.From(0.55, 0.9)});
  plot.Frame();
  plot.Grey = true;
}

void Dashes(InkPlot& plot) {
  const auto dashed = [&] {
    return Stroke{plot.Chosen.From(1.5, 3), 1, plot.Chosen.From(6, 12), plot.Chosen.From(3, 6)};
  };
  plot.Drawing.Curve(Wandering(plot.Chosen, 0.05, 0.95),
                     plot.Chosen.Chance(0.5) ? dashed() : plot.Line(), 0.02, 0.98);
  plot.Curve(Wandering(plot.Chosen, 0.1, 0.9), dashed());
  plot.Frame();
  plot.XIncrement = "8";
}

void GridLeft(InkPlot& plot) {
  plot.Drawing.LinesAtU(test::Linear(6), {});
  plot.Drawing.LinesAtV(test::Linear(5), {});
  plot.Curve(Wandering(plot.Chosen, 0.1, 0.9), plot.Line(), 0, 1);
  plot.Frame();
}

void Symbols(InkPlot& plot) {
  const Function v = Wandering(plot.Chosen, 0.1, 0.9);
  plot.Curve(v, plot.Line());
  const double size = plot.Chosen.From(6, 11);
  const bool hollow = plot.Chosen.Chance(0.4);
  for (double u = 0.1; u < 0.95; u += 0.1)
    if (hollow)
      plot.Drawing.Box(plot.Drawing.Place(u, v(u)), size, {});
    else
      plot.Drawing.Disc(plot.Drawing.Place(u, v(u)), size);
  plot.Frame();
}

struct Family {
  const char* Name;
  Draw Plot;
  bool IsJudged = true;  // else shown alone: docs/accuracy.md says why
};
constexpr Family kFamilies[] = {{"curve alone", Clean},
                                {"crossing curves", Crossings},
                                {"frame", AtTheFrame},
                                {"crests at the frame", CrestsAtTheFrame},
                                {"labels on the curve", Labels},
                                {"light colours", LightColours},
                                {"dashes", Dashes},
                                {"grid left in", GridLeft, false},
                                {"symbols on the curve", Symbols, false}};

enum class Way { Edges, Smooth, Read };

struct Figures {
  struct Traces {
    int All = 0, Flagged = 0, Told = 0;  // told: flagged, or doubted by the reading itself
  };
  Traces Wrong, Good;

  void Add(const Figures& other) {
    for (const auto part : {&Figures::Wrong, &Figures::Good}) {
      (this->*part).All += (other.*part).All;
      (this->*part).Flagged += (other.*part).Flagged;
      (this->*part).Told += (other.*part).Told;
    }
  }
  /// Traces the plot, or reads it in its greys, and holds its points against the picture.
  void Take(const char* family, InkPlot& plot, unsigned seed, Way way) {
    const Desktop desktop = test::QuietDesktop();
    Workspace ws;
    Raster picture = plot.Grey ? plot.Drawing.GreyPicture() : plot.Drawing.Picture();
    ReduceToBlackAndWhite(picture);
    const auto start = std::find_if(plot.Course.begin(), plot.Course.end(), [&](PixelPosition at) {
      const std::uint32_t* row = picture.Row(static_cast<int>(std::lround(at.Y)));
      return at.X > plot.Course.front().X + 5 && IsBlackPixel(row[std::lround(at.X)]);
    });
    if (start == plot.Course.end()) return;
    SetPicture(ws.plot, way == Way::Read ? plot.Drawing.GreyPicture() : std::move(picture));
    ws.calibration = plot.Drawing.Calibration();
    ws.mode = Mode::Graphize;
    ws.settings.Trace = static_cast<std::int16_t>(way == Way::Smooth ? 1 : 0);
    ws.tracer.Xrange = plot.XIncrement;
    const auto x = static_cast<float>(start->X), y = static_cast<float>(start->Y);
    const Outcome outcome = way == Way::Read
                                ? Do(ws, desktop, ReadStep{std::round(x), std::round(y), {}})
                                : Do(ws, desktop, TraceStep{x, y, {}});
    // A reading tells of itself where it is not safe.
    const bool isDoubted = outcome.Remark.find("may be off by") != std::string::npos ||
                           outcome.Remark.find("either may go on") != std::string::npos;
    std::vector<PlotPosition> points;
    int wrong = 0, firstWrong = 0;
    for (int i = 1; i <= ws.store.ListCount; ++i) {
      const Place& place = ws.store.Places[ws.store.ListId[i]];
      points.push_back({place.Column, place.Row});
      if (DistanceTo({place.Column, place.Row}, plot.Course) <= kNear) continue;
      if (wrong++ == 0) firstWrong = i;
    }
    // A click where the curve was not alone is none that a user would make.
    constexpr int kClearStart = 20;
    if (points.empty() || (wrong > 0 && firstWrong < kClearStart)) return;
    const BasePictureShown base(ws.plot);
    const auto verdicts = CheckInk(ws.plot.Pixels, ws.calibration, points);
    const bool isFlagged = std::any_of(verdicts.begin(), verdicts.end(),
                                       [](InkVerdict v) { return v != InkVerdict::OnInk; });
    const bool isWrong = wrong > 0.01 * static_cast<double>(points.size());
    if (!isWrong && wrong > 0) return;  // neither the one nor the other
    Traces& traces = isWrong ? Wrong : Good;
    ++traces.All;
    traces.Flagged += isFlagged ? 1 : 0;
    traces.Told += isFlagged || isDoubted ? 1 : 0;
    if (std::getenv("INK_DETAILS") != nullptr && isWrong != isFlagged)
      std::printf("%s %u %d: %d of %zu wrong; %s\n", family, seed, static_cast<int>(way), wrong,
                  points.size(), InkCheckText(verdicts).c_str());
  }
};

double Percent(int part, int all) {
  return all == 0 ? 0 : 100.0 * part / all;
}

/// The number of missed targets.
int PrintTable(const char* title, std::initializer_list<Way> ways, unsigned firstSeed) {
  std::printf(
      "| %s | wrong | of them flagged | flagged or told | good | of them flagged | flagged or told "
      "|\n|---|---:|---:|---:|---:|---:|---:|\n",
      title);
  Figures all;
  const auto print = [](const char* name, const Figures& figures) {
    const auto [wrong, good] = figures;
    std::printf("| %s | %d | %.1f %% | %.1f %% | %d | %.1f %% | %.1f %% |\n", name, wrong.All,
                Percent(wrong.Flagged, wrong.All), Percent(wrong.Told, wrong.All), good.All,
                Percent(good.Flagged, good.All), Percent(good.Told, good.All));
  };
  for (const auto& [name, draw, isJudged] : kFamilies) {
    Figures figures;
    for (unsigned seed = firstSeed; seed < firstSeed + kSeeds; ++seed) {
      for (const Way way : ways) {
        InkPlot plot(seed);
        draw(plot);
        figures.Take(name, plot, seed, way);
      }
    }
    print(name, figures);
    if (isJudged) all.Add(figures);
  }
  print("all that are judged", all);
  const bool hits = Percent(all.Wrong.Flagged, all.Wrong.All) >= 95;
  const bool quiet = Percent(all.Good.Flagged, all.Good.All) <= 2;
  std::printf(
      "\nTargets: of the wrong ones at least 95 %% (%s), of the good ones at most 2 %% (%s).\n\n",
      hits ? "met" : "**missed**", quiet ? "met" : "**missed**");
  return (hits ? 0 : 1) + (quiet ? 0 : 1);
}

}  // namespace

int PrintInkTables(unsigned seed) {
  std::puts("<!-- check -->");
  return PrintTable("plots, traced by edges and by the middle", {Way::Edges, Way::Smooth}, seed) +
         PrintTable("the same plots, read in their greys", {Way::Read}, seed);
}

}  // namespace graphize::accuracy
