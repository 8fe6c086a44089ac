#include "batch/standard_input.h"

#include <cstdlib>
#include <fstream>
#include <system_error>

#include "base/run_time_error.h"
#include "batch/arguments.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestInput = std::uintmax_t{2} << 30;
constexpr const char* kName = "stdin";  // as messages and tables name the picture

/// A new folder that only this user can read.
fs::path NewFolder() {
  std::string name = (fs::temp_directory_path() / "graphize-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr)
    throw RunTimeError("the standard input cannot be kept in \"" +
                       fs::temp_directory_path().string() +
                       "\": " + std::generic_category().message(errno));
  return name;
}

}  // namespace

StandardInput::StandardInput(std::vector<Job>& jobs, std::istream* in) {
  for (Job& job : jobs) {
    for (fs::path& picture : job.Pictures) {
      if (picture != "-") continue;
      if (in == nullptr || !folder_.empty())
        throw UsageError("the standard input \"-\" is one picture only");
      folder_ = NewFolder();
      picture = folder_ / kName;
    }
  }
  if (folder_.empty()) return;
  try {
    Keep(*in);
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
    throw;
  }
}

StandardInput::~StandardInput() {
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

void StandardInput::Keep(std::istream& in) {
  std::ofstream file(folder_ / kName, std::ios::binary);
  std::uintmax_t size = 0;
  std::vector<char> block(1 << 16);
  while (in && file) {
    in.read(block.data(), static_cast<std::streamsize>(block.size()));
    file.write(block.data(), in.gcount());
    size += static_cast<std::uintmax_t>(in.gcount());
    if (size > kLargestInput) throw RunTimeError("the standard input is too large for a picture");
  }
  if (in.bad()) throw RunTimeError("the standard input cannot be read");
  if (!file.flush()) throw RunTimeError("the standard input cannot be kept: the disk may be full");
}

}  // namespace graphize
