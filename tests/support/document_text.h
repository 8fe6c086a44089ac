#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "session/kept_document.h"

namespace graphize::test {

/// All of a document, to be compared; of the options those that steps have noted, and without what
/// is saved. `picture` is its PictureNumber.
std::string DocumentText(KeptDocument kept, std::optional<std::uint64_t> picture);

}  // namespace graphize::test
