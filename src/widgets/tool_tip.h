#pragma once

#include <QString>

namespace graphize {

/// A tool tip that says `text` as it stands: the toolkit takes what looks like markup for markup,
/// and the text may come from a file or its name.
QString ToolTipOf(const QString& text);

}  // namespace graphize
