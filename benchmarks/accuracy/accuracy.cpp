// accuracy [SEED [PART] | check [SEED]]
// What the tracers, the scan and the readings make of plots whose data are known, as tables that
// tools/update_accuracy puts into docs/accuracy.md; the exit status is 1 when one misses its
// target. With a seed, the readings alone, of plots drawn from that seed on, and of those families
// alone whose names have PART in them; with "check" what the ink check finds.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "ink_report.h"
#include "read_report.h"
#include "run.h"
#include "speed.h"
#include "symbol_report.h"

namespace graphize::accuracy {
namespace {

std::string Fixed(double value, int decimals) {
  char text[400];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
  return std::string(text, end.ptr);
}

std::string Pixels(double value) {
  return std::isinf(value) ? "-" : Fixed(value, 2);
}

std::string Percent(double part) {
  return Fixed(100 * part, 1) + " %";
}

std::string TextOf(const Target& target) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (target.Median) add("median <= " + Fixed(*target.Median, 1));
  if (target.Coverage) add("coverage >= " + Fixed(100 * *target.Coverage, 0) + " %");
  if (target.FalsePart) add("false <= " + Fixed(100 * *target.FalsePart, 0) + " %");
  return text.empty() ? "none" : text;
}

bool Meets(const Accuracy& accuracy, const Target& target) {
  return (!target.Median || accuracy.Median <= *target.Median) &&
         (!target.Coverage || accuracy.Coverage >= *target.Coverage) &&
         (!target.FalsePart || accuracy.FalsePart <= *target.FalsePart);
}

class Table {
 public:
  Table() {
    std::puts(
        "<!-- traced -->\n| plot | found by | points | median | 95 % | coverage | false | target | "
        "met |\n"
        "|---|---|---:|---:|---:|---:|---:|---|---|");
  }
  void Add(const std::string& plot, const char* way, const Accuracy& accuracy,
           const Target& target) {
    const bool judged = target.Median || target.Coverage || target.FalsePart;
    const bool met = Meets(accuracy, target);
    missed_ += met ? 0 : 1;
    ++rows_;
    withTarget_ += judged ? 1 : 0;
    std::printf("| %s | %s | %d | %s | %s | %s | %s | %s | %s |\n", plot.c_str(), way,
                accuracy.Points, Pixels(accuracy.Median).c_str(),
                Pixels(accuracy.Percentile95).c_str(), Percent(accuracy.Coverage).c_str(),
                Percent(accuracy.FalsePart).c_str(), TextOf(target).c_str(),
                !judged ? "-"
                : met   ? "yes"
                        : "**no**");
  }
  int Missed() const { return missed_; }
  int Rows() const { return rows_; }
  int WithTarget() const { return withTarget_; }

 private:
  int missed_ = 0, rows_ = 0, withTarget_ = 0;
};

int Report() {
  Table table;
  for (const CurvePlot& plot : CurvePlots()) {
    table.Add(plot.Name, "edges", Run(plot, Tracer::Edges), plot.EdgesGoal);
    table.Add(plot.Name, "smooth", Run(plot, Tracer::Smooth), plot.SmoothGoal);
  }
  for (const ScanPlot& plot : ScanPlots()) table.Add(plot.Name, "scan", Run(plot), plot.Goal);
  std::printf(
      "\n%d of %d rows have a target, and %d of them miss it. Tracing and capturing a column takes "
      "%s times the bare reads of its "
      "pixels.\n",
      table.WithTarget(), table.Rows(), table.Missed(), Fixed(TraceTimePerBareReads(), 1).c_str());
  const int missed =
      table.Missed() + PrintReadTable(1) + PrintSymbolTable(1) + PrintInkTables(kInkSeed);
  return missed == 0 ? 0 : 1;
}

}  // namespace
}  // namespace graphize::accuracy

int main(int argc, char** argv) {
  using namespace graphize::accuracy;
  try {
    if (argc == 1) return Report();
    const auto seedIn = [](const char* word) {
      return static_cast<unsigned>(std::strtoul(word, nullptr, 10));
    };
    if (std::string_view(argv[1]) == "check")
      return PrintInkTables(argc > 2 ? seedIn(argv[2]) : kInkSeed) == 0 ? 0 : 1;
    // Plots that nobody has seen: what is read and found, from another seed on.
    const unsigned seed = seedIn(argv[1]);
    const char* part = argc > 2 ? argv[2] : "";
    return PrintReadTable(seed, part) + PrintSymbolTable(seed, part) == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
