// The table of docs/performance.md: what a person waits for, beside what the least of it would
// take, both measured in turns. Wants a display; tools/update_performance runs it.

#include <cstdio>

#include "performance/measure.h"

int main() {
  using namespace graphize;
  const auto programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  std::puts(
      "<!-- table -->\n"
      "| what | floor | ours / floor | figure | target | |\n"
      "|---|---|---:|---:|---:|---|");
  WriteStartRows(programs);
  WriteOpenRows(programs);
  WriteWorkRows();
  WriteBatchRows(programs);
}
