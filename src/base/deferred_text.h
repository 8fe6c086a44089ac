#pragma once

#include <string>
#include <string_view>

namespace graphize {

// A process without catalogues makes texts for one that has them: `DeferText` is its translator,
// and what Tr gives then still holds the English text and its values apart.

std::string DeferText(const char* english, long long count);

/// Such a text, translated here. It may come from anywhere: about 2,000 bytes of it are taken, what
/// it is filled with grows no longer, and control characters are left out.
std::string TranslateDeferred(std::string_view text);

}  // namespace graphize
