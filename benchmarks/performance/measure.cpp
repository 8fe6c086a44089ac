#include "performance/measure.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

extern char** environ;

namespace graphize {

namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string Rounded(double value, int places) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

/// A ratio, to three digits.
std::string RatioText(double ratio) {
  char text[32];
  std::snprintf(text, sizeof text, "%#.3g", ratio);
  return text;
}

/// Its standard output goes to the open file `output`.
ProgramRun Run(const std::vector<std::string>& words, int output) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
  pid_t id = 0;
  const auto start = Clock::now();
  const int failure = posix_spawnp(&id, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  int status = 1;
  rusage used = {};
  if (failure != 0 || wait4(id, &status, 0, &used) != id || status != 0) {
    std::fprintf(stderr, "%s has failed\n", arguments[0]);
    std::exit(1);
  }
  return {Since(start), 1024.0 * static_cast<double>(used.ru_maxrss)};
}

}  // namespace

double Seconds(const std::function<void()>& work) {
  const auto start = Clock::now();
  work();
  return Since(start);
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + std::ssize(values) / 2;
  std::ranges::nth_element(values, middle);
  return *middle;
}

Compared Compare(int rounds, const std::function<double()>& ours,
                 const std::function<double()>& floor) {
  ours();
  floor();
  std::vector<double> first, second, ratios;
  for (int i = 0; i < rounds; ++i) {
    first.push_back(ours());
    second.push_back(floor());
    ratios.push_back(first.back() / second.back());
  }
  return {Median(first), Median(second), Median(ratios)};
}

void FindMemory(std::size_t bytes) {
  constexpr std::size_t kPage = 4096;
  void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    std::fprintf(stderr, "%zu bytes are not to be had\n", bytes);
    std::exit(1);
  }
  madvise(memory, bytes, MADV_HUGEPAGE);  // faster; small pages do as well
  for (std::size_t i = 0; i < bytes; i += kPage) static_cast<volatile char*>(memory)[i] = 1;
  munmap(memory, bytes);
}

void WriteRow(const std::string& what, const std::string& floor, const std::string& measured,
              double figure, std::optional<double> target, const std::string& unit) {
  const auto text = [&](double value, int places) {
    return unit.empty() ? RatioText(value) : Rounded(value, places) + unit;
  };
  const char* verdict = !target ? "" : figure <= *target ? "met" : "**missed**";
  std::printf("| %s | %s | %s | %s | %s | %s |\n", what.c_str(), floor.c_str(), measured.c_str(),
              text(figure, 1).c_str(), target ? text(*target, 0).c_str() : "", verdict);
  std::fflush(stdout);
}

void WriteRow(const std::string& what, const std::string& floor, const Compared& times,
              std::optional<double> target) {
  WriteRow(what, floor, Milliseconds(times.Ours) + " / " + Milliseconds(times.Floor), times.Ratio,
           target);
}

std::string Milliseconds(double seconds) {
  return Rounded(1000 * seconds, seconds < 0.1 ? 1 : 0) + " ms";
}

double LongestEscape(int moments, const std::function<void(const std::function<bool()>&)>& work,
                     std::size_t memory) {
  if (memory > 0) FindMemory(memory);
  const double whole = Seconds([&] { work([] { return false; }); });
  double longest = 0;
  for (int i = 0; i < moments; ++i) {
    const double held = whole * (i + 0.5) / moments;
    if (memory > 0) FindMemory(memory);
    const auto start = Clock::now();
    work([&] { return Since(start) >= held; });
    longest = std::max(longest, Since(start) - held);  // less than none where it was done before
  }
  return longest;
}

ProgramRun RunProgram(const std::vector<std::string>& words) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const ProgramRun run = Run(words, nowhere);
  close(nowhere);
  return run;
}

std::string OutputOf(const std::vector<std::string>& words) {
  std::FILE* file = std::tmpfile();
  Run(words, fileno(file));
  std::rewind(file);
  std::string text;
  for (int c = 0; (c = std::fgetc(file)) != EOF;) text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

}  // namespace graphize
