#include "batch/standard_input.h"

#include <fstream>

#include "base/run_time_error.h"
#include "batch/arguments.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestInput = std::uintmax_t{2} << 30;
constexpr const char* kName = "stdin";  // as messages and tables name the picture

}  // namespace

StandardInput::StandardInput(std::vector<Job>& jobs, std::istream* in) {
  for (Job& job : jobs) {
    for (fs::path& picture : job.Pictures) {
      if (picture != "-") continue;
      if (in == nullptr || folder_)
        throw UsageError("the standard input \"-\" is one picture only");
      folder_.emplace();
      picture = folder_->Path() / kName;
    }
  }
  if (folder_) Keep(*in);
}

void StandardInput::Keep(std::istream& in) {
  std::ofstream file(folder_->Path() / kName, std::ios::binary);
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
