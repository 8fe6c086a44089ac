// What the program makes of the axes of drawn plots whose scales are known: docs/axes.md, whole, on
// standard output.
//   axes_accuracy [COUNT [SEED [FAMILY]]]    pictures, 600 and 1 unless given; one family alone
// With AXES_KEEP=FOLDER in the environment the pictures of wrong and missing answers stay there.
// The status is 1 when an answer was sure and wrong.

#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "families.h"
#include "finding_axes/axis_law.h"
#include "finding_axes/propose_axes.h"
#include "report.h"

namespace graphize::axes {
namespace {

struct Tally {
  int SureRight = 0, SureWrong = 0, Right = 0, Wrong = 0, None = 0;
  std::vector<double> Ends;  // pixels off, of sure axes
  std::vector<double> Seconds;

  int All() const { return SureRight + SureWrong + Right + Wrong + None; }
  void Add(const Tally& other) {
    SureRight += other.SureRight;
    SureWrong += other.SureWrong;
    Right += other.Right;
    Wrong += other.Wrong;
    None += other.None;
    Ends.insert(Ends.end(), other.Ends.begin(), other.Ends.end());
    Seconds.insert(Seconds.end(), other.Seconds.begin(), other.Seconds.end());
  }
};

/// How far, in pixels, the ends of the printed axis lie from where the labels that were read put
/// them; infinite for another kind of scale.
double EndsOff(const Plot& plot, const ProposedAxis& found, bool level) {
  const PrintedAxis& axis = level ? plot.X : plot.Y;
  if (found.Log != axis.Log || axis.Place) return INFINITY;
  const QTransform back = plot.ToPicture.inverted();
  std::vector<double> positions, values;
  for (const ProposedLabel& label : found.Labels) {
    const QPointF at = back.map(QPointF(label.Column + 0.5, label.Row + 0.5));
    positions.push_back(level ? at.x() : at.y());
    values.push_back(label.Value);
  }
  const AxisLaw law = FitLaw(found.Log, positions, values);
  const double first = level ? plot.X0 : plot.Y0, last = level ? plot.X1 : plot.Y1;
  return std::max(std::fabs(law.PositionOf(axis.First) - first),
                  std::fabs(law.PositionOf(axis.Last) - last));
}

constexpr double kRight = 3;  // pixels

void Judge(const Plot& plot, const ProposedAxis& found, bool level, Tally& tally) {
  const PrintedAxis& axis = level ? plot.X : plot.Y;
  if (found.Verdict == AxesVerdict::None) {
    ++tally.None;
    return;
  }
  const double off = EndsOff(plot, found, level);
  const bool right = !axis.IsTrap && off <= kRight;
  if (found.Verdict == AxesVerdict::Sure) {
    ++(right ? tally.SureRight : tally.SureWrong);
    if (right) tally.Ends.push_back(off);
  } else {
    ++(right ? tally.Right : tally.Wrong);
  }
}

/// The three rows lie where the values do.
bool RowsAreRight(const Plot& plot, const AxesProposal& proposal) {
  for (const ProposedRow& row : proposal.Rows) {
    const QPointF at =
        plot.ToPicture.map(QPointF(plot.X0 + plot.X.PlaceOf(row.X) * (plot.X1 - plot.X0),
                                   plot.Y0 + plot.Y.PlaceOf(row.Y) * (plot.Y1 - plot.Y0)));
    if (std::hypot(at.x() - 0.5 - row.Column, at.y() - 0.5 - row.Row) > kRight) return false;
  }
  return proposal.Rows.size() == 3;
}

void PrintRow(const std::string& name, const Tally& tally) {
  const auto percent = [&](int count) {
    return tally.All() == 0 ? 0.0 : 100.0 * count / tally.All();
  };
  std::printf("| %s | %d | %d (%.0f %%) | %d | %d (%.0f %%) | %d | %d | ", name.c_str(),
              tally.All(), tally.SureRight, percent(tally.SureRight), tally.SureWrong, tally.Right,
              percent(tally.SureRight + tally.Right), tally.Wrong, tally.None);
  if (tally.Ends.empty())
    std::puts("- | - | - |");
  else
    std::printf("%.2f | %.2f | %.2f |\n", Quantile(tally.Ends, 0.5), Quantile(tally.Ends, 0.95),
                Quantile(tally.Ends, 1));
}

struct Run {
  std::string Keep;
  int WrongRows = 0;

  void Do(const Family& family, int number, Tally& tally) {
    Random random(static_cast<std::uint32_t>(number) * 2654435761u + 12345);
    const Plot plot = family.Make(random);
    const Raster raster = RasterOf(plot.Picture);
    PictureOperation operation;
    const std::clock_t start = std::clock();
    const AxesProposal proposal = ProposeAxes(raster, operation);
    const double took = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    Tally one;
    one.Seconds.push_back(took * 1e6 / static_cast<double>(raster.PixelCount()));
    Judge(plot, proposal.X, true, one);
    Judge(plot, proposal.Y, false, one);
    bool wrongRows = false;
    if (proposal.Verdict == AxesVerdict::Sure && one.SureRight == 2)
      wrongRows = !RowsAreRight(plot, proposal);
    WrongRows += wrongRows ? 1 : 0;
    tally.Add(one);
    if (!Keep.empty() && (one.SureWrong + one.Wrong + one.None > 0 || one.Right > 0 || wrongRows)) {
      const std::string name = Keep + "/" + (one.SureWrong > 0 || wrongRows ? "SURE" : "open") +
                               std::to_string(number) + ".png";
      plot.Picture.save(QString::fromStdString(name));
      std::fprintf(stderr, "%s (%s)%s\n  X %s: %s\n  Y %s: %s\n", name.c_str(), family.Name.c_str(),
                   wrongRows ? " rows" : "", NameOf(proposal.X.Verdict), proposal.X.Reason.c_str(),
                   NameOf(proposal.Y.Verdict), proposal.Y.Reason.c_str());
    }
  }
};

constexpr const char* kLead = R"(# How sure proposed axes are

`build/release/benchmarks/axes_accuracy > docs/axes.md` made this page: plots drawn in many ways, with fonts of which a part was never shown to the reader of glyphs, and traps whose labels do not say what the axis is. Each picture has two axes. *Sure* means that one click accepts; *proposed* that each value is to be confirmed. An answer is right when both ends of the axis lie within 3 pixels of where they were drawn; a sure answer on the spoiled axis of a trap counts as wrong, whatever it says. Ends: how far the worse end of a sure axis is off, in pixels: middle, 95 %, worst.

| plots | axes | sure, right | sure, wrong | proposed, right (with sure) | proposed, wrong | none | ends | 95 % | worst |
|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|
)";

constexpr const char* kTail = R"(
What is proposed on pictures of other programs, as the window shows it (`build/release/benchmarks/propose_pictures FOLDER docs/pictures/proposed_axes.png` drew it; green is sure):

![Fourteen plots with the labels that were read, each at its tick](pictures/proposed_axes.png)
)";

int Report(int count, int seed, const std::string& only) {
  LoadFonts();
  const std::vector<Family> families = Families();
  int weights = 0;
  for (const Family& family : families) weights += family.Weight;
  Run run;
  if (const char* keep = std::getenv("AXES_KEEP")) run.Keep = keep;
  std::fputs(kLead, stdout);
  Tally all, plain, traps;
  int number = seed * 100000;
  for (const Family& family : families) {
    if (!only.empty() && family.Name.find(only) == std::string::npos) continue;
    Tally tally;
    for (int i = std::max(count * family.Weight / weights, 4); i > 0; --i)
      run.Do(family, ++number, tally);
    PrintRow(family.Name, tally);
    std::fflush(stdout);
    (family.Name.starts_with("trap") ? traps : plain).Add(tally);
    all.Add(tally);
  }
  PrintRow("**all plots without traps**", plain);
  PrintRow("**all traps**", traps);
  PrintRow("**all**", all);
  std::printf(
      "\nOf pictures sure in both axes, %d have rows that lie more than 3 pixels off. A picture "
      "took %.2f seconds of processor time per million pixels in the middle, %.2f at 95 %%.\n%s",
      run.WrongRows, Quantile(all.Seconds, 0.5), Quantile(all.Seconds, 0.95), kTail);
  return all.SureWrong + run.WrongRows == 0 ? 0 : 1;
}

}  // namespace
}  // namespace graphize::axes

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  return graphize::axes::Report(argc > 1 ? std::atoi(argv[1]) : 600,
                                argc > 2 ? std::atoi(argv[2]) : 1, argc > 3 ? argv[3] : "");
}
