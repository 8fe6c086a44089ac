// performance [start] [open] [work] [batch]: the table of docs/performance.md, or these parts of
// it: what a person waits for, beside what the least of it would take, both measured in turns.
// Wants a display; tools/update_performance runs it.

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "performance/measure.h"

int main(int argc, char** argv) {
  using namespace graphize;
  const auto programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto wanted = [&](std::string_view part) {
    return argc == 1 || std::find(argv + 1, argv + argc, part) != argv + argc;
  };
  std::puts(
      "<!-- table -->\n"
      "| what | floor | ours / floor | figure | target | |\n"
      "|---|---|---:|---:|---:|---|");
  if (wanted("start")) WriteStartRows(programs);
  if (wanted("open")) WriteOpenRows(programs);
  if (wanted("work")) WriteWorkRows();
  if (wanted("batch")) WriteBatchRows(programs);
}
