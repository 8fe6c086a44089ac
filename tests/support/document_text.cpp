#include "support/document_text.h"

#include <utility>

#include "session/kept_text.h"

namespace graphize::test {

std::string DocumentText(KeptDocument kept, std::optional<std::uint64_t> picture) {
  std::string text = picture ? std::to_string(*picture) : "none";
  kept.Axes.FocusOriginPending = false;  // follows the focus, between commands
  for (const KeptPart& part : PartsOf(std::move(kept))) text += "\n" + part.Name + "\n" + part.Text;
  return text;
}

}  // namespace graphize::test
