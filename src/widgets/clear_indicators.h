#pragma once

#include <QProxyStyle>

namespace graphize {

/// The desktop's style, whose empty boxes and circles stand out from a dark window, too: the
/// toolkit's own style draws their outlines darker than the window.
class ClearIndicators : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace graphize
