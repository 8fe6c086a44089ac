#include "widgets/clear_indicators.h"

#include <QStyleOptionButton>

namespace graphize {

namespace {

constexpr int kDark = 128;  // the lightest window whose outlines want to be light

QColor Between(const QColor& from, const QColor& to, double part) {
  const auto mixed = [part](float a, float b) { return static_cast<float>(a + part * (b - a)); };
  return QColor::fromRgbF(mixed(from.redF(), to.redF()), mixed(from.greenF(), to.greenF()),
                          mixed(from.blueF(), to.blueF()));
}

}  // namespace

void ClearIndicators::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                    QPainter* painter, const QWidget* widget) const {
  const QColor window = option->palette.window().color();
  const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
  if (!isIndicator || window.lightness() > kDark || !baseStyle()->inherits("QFusionStyle"))
    return QProxyStyle::drawPrimitive(element, option, painter, widget);
  QStyleOptionButton clear;
  if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
    clear = *button;
  else
    clear.QStyleOption::operator=(*option);
  // The style darkens it by 1.4.
  const bool isEnabled = option->state.testFlag(State_Enabled);
  clear.palette.setColor(QPalette::Window, Between(window, option->palette.windowText().color(),
                                                   isEnabled ? 0.75 : 0.4));
  QProxyStyle::drawPrimitive(element, &clear, painter, widget);
}

}  // namespace graphize
