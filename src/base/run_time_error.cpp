#include "base/run_time_error.h"

#include "base/translation.h"

namespace graphize {

RunTimeError::RunTimeError(const char* english) : std::runtime_error(Tr(english)) {}

}  // namespace graphize
