#include "widgets/tool_tip.h"

#include <QTextDocument>

namespace graphize {

QString ToolTipOf(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace graphize
