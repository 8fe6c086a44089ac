#include "base/temporary_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "graphize-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr)
    throw RunTimeError(Tr("nothing can be kept in \"%1\": %2", fs::temp_directory_path().string(),
                          std::generic_category().message(errno)));
  path_ = fs::canonical(name);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace graphize
