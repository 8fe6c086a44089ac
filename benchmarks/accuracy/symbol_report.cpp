#include "symbol_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "reading/find_symbols.h"
#include "symbol_plots.h"

namespace graphize::accuracy {

namespace {

constexpr unsigned kSeeds = 8;
constexpr double kRecall = 0.98, kPrecision = 0.98;

struct Counts {
  int True = 0, Found = 0, Right = 0, Doubtful = 0, SilentlyWrong = 0;
  int WithinOne = 0, WithinTwo = 0;
  double Squares = 0;

  double Recall() const { return static_cast<double>(Right) / std::max(True, 1); }
  double Precision() const { return static_cast<double>(Right) / std::max(Found, 1); }
  double Rms() const { return std::sqrt(Squares / std::max(Right, 1)); }

  void Add(const SymbolPlot& plot) {
    PictureOperation operation;
    const SymbolFinding finding =
        FindSymbols(plot.Picture, FrameOf(plot.Axes, plot.Picture.Width(), plot.Picture.Height()),
                    {.X = plot.Click.X, .Y = plot.Click.Y}, operation);
    True += static_cast<int>(plot.Centres.size());
    Found += static_cast<int>(finding.Symbols.size());
    std::vector<bool> isTaken(plot.Centres.size());
    for (const FoundSymbol& symbol : finding.Symbols) {
      std::size_t nearest = 0;
      double least = 0.4 * plot.Size;
      bool isRight = false;
      for (std::size_t i = 0; i < plot.Centres.size(); ++i) {
        const double away = std::hypot(symbol.X - plot.Centres[i].X, symbol.Y - plot.Centres[i].Y);
        if (isTaken[i] || away >= least) continue;
        least = away;
        nearest = i;
        isRight = true;
      }
      Doubtful += symbol.Doubt.empty() ? 0 : 1;
      if (!isRight) {
        SilentlyWrong += symbol.Doubt.empty() ? 1 : 0;
        continue;
      }
      isTaken[nearest] = true;
      ++Right;
      Squares += least * least;
      for (const double off :
           {symbol.X - plot.Centres[nearest].X, symbol.Y - plot.Centres[nearest].Y}) {
        WithinOne += std::fabs(off) <= symbol.Sigma ? 1 : 0;
        WithinTwo += std::fabs(off) <= 2 * symbol.Sigma ? 1 : 0;
      }
    }
  }
};

}  // namespace

int PrintSymbolTable(unsigned firstSeed, std::string_view part) {
  std::puts(
      "<!-- symbols -->\n| symbols, one clicked | recall, all | recall, worst plot | precision, "
      "all | precision, "
      "worst | rms | target | within 1 sigma | within 2 | doubtful | false and not told | met |\n"
      "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---|");
  int missed = 0;
  for (const SymbolFamily& family : SymbolFamilies()) {
    if (family.Name.find(part) == std::string::npos) continue;
    Counts all;
    double recall = 1, precision = 1;
    for (unsigned seed = firstSeed; seed < firstSeed + kSeeds; ++seed) {
      const SymbolPlot plot = family.Draw(seed);
      Counts one;
      one.Add(plot);
      all.Add(plot);
      recall = std::min(recall, one.Recall());
      precision = std::min(precision, one.Precision());
    }
    const bool met =
        all.Recall() >= kRecall && all.Precision() >= kPrecision && all.Rms() <= family.Rms;
    missed += met ? 0 : 1;
    const auto percent = [&](int count) { return 50.0 * count / std::max(all.Right, 1); };
    std::printf(
        "| %s | %.3f | %.3f | %.3f | %.3f | %.3f | %.2f | %.0f %% | %.0f %% | %d | %d | %s |\n",
        family.Name.c_str(), all.Recall(), recall, all.Precision(), precision, all.Rms(),
        family.Rms, percent(all.WithinOne), percent(all.WithinTwo), all.Doubtful, all.SilentlyWrong,
        met ? "yes" : "**no**");
  }
  return missed;
}

}  // namespace graphize::accuracy
