#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"

namespace graphize {

double Seconds(const std::function<void()>& work);
double Median(std::vector<double> values);

/// What two pieces of work took: the medians of seconds, and of the ratios of each round.
struct Compared {
  double Ours = 0, Floor = 0, Ratio = 0;
};
/// In turns, after one round that is not counted, so that other work on the machine falls on both.
/// Each tells its seconds.
Compared Compare(int rounds, const std::function<double()>& ours,
                 const std::function<double()>& floor);

/// Takes so much memory and gives it back, before what is timed: where a hypervisor lends a machine
/// its memory, what has lain free for some seconds is found again ten times slower than the system
/// clears it, which is no part of the work.
void FindMemory(std::size_t bytes);

/// A line of the table. The verdict is made of `figure` and `target`; what has none is there to
/// compare with.
void WriteRow(const std::string& what, const std::string& floor, const std::string& measured,
              double figure, std::optional<double> target, const std::string& unit = "");
/// The same of two pieces of work.
void WriteRow(const std::string& what, const std::string& floor, const Compared& times,
              std::optional<double> target);
std::string Milliseconds(double seconds);

/// The longest that `work` goes on after Escape, in seconds, of so many moments spread over its
/// time, with so much memory found before each. It is given the question whether Escape is held.
double LongestEscape(int moments, const std::function<void(const std::function<bool()>&)>& work,
                     std::size_t memory = 0);

/// A program run to its end, its output thrown away.
struct ProgramRun {
  double Seconds = 0;
  double PeakMemory = 0;  // bytes
};
/// Ends this program when it fails.
ProgramRun RunProgram(const std::vector<std::string>& words);
/// What it writes.
std::string OutputOf(const std::vector<std::string>& words);

// The parts of the table. `programs` is the folder of this program.
void WriteStartRows(const std::filesystem::path& programs);
void WriteOpenRows(const std::filesystem::path& programs);
void WriteWorkRows();
void WriteBatchRows(const std::filesystem::path& programs);

}  // namespace graphize
