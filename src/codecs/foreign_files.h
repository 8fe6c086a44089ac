#pragma once

#include <string_view>

namespace graphize {

/// What a file that is no picture for us is, with its article, as in "a PDF document"; empty when
/// its first bytes `head` do not tell. For messages only: nothing is opened because of it.
std::string_view ForeignFileKind(std::string_view head);

}  // namespace graphize
