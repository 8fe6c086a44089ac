#include "support/document_text.h"

#include <utility>

#include "session/kept_text.h"

namespace graphize::test {

std::string DocumentText(KeptDocument kept, std::optional<std::uint64_t> picture) {
  std::string text = picture ? std::to_string(*picture) : "none";
  kept.Options = Keep(Workspace()).Options;
  kept.Axes.FocusOriginPending = false;  // follows the focus, between commands
  for (Curve& curve : kept.Curves) {
    PointStore points = *curve.Points;
    points.Saved = PointStore().Saved;
    curve.Points = std::make_shared<const PointStore>(std::move(points));
  }
  for (const KeptPart& part : PartsOf(std::move(kept))) text += "\n" + part.Name + "\n" + part.Text;
  return text;
}

}  // namespace graphize::test
