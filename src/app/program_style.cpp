#include "app/program_style.h"

#include <QApplication>
#include <QGroupBox>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>

#include "app/icons.h"

namespace graphize {

namespace {

constexpr int kDark = 128;  // the lightest window whose outlines want to be light

QColor Between(const QColor& from, const QColor& to, double part) {
  const auto mixed = [part](float a, float b) { return static_cast<float>(a + part * (b - a)); };
  return QColor::fromRgbF(mixed(from.redF(), to.redF()), mixed(from.greenF(), to.greenF()),
                          mixed(from.blueF(), to.blueF()));
}

bool IsToolkits(const QProxyStyle& style) {
  return style.baseStyle()->inherits("QFusionStyle");
}

QColor Outline(const QPalette& palette) {
  const QColor window = palette.window().color();
  return window.lightness() > kDark ? window.darker(140) : Between(window, Qt::white, 0.35);
}

/// As thick as a line is drawn: whole pixels of the screen, at every scale of the window.
double LineWidth(const QPainter& painter) {
  const double scale = painter.device()->devicePixelRatioF();
  return std::max(std::floor(scale), 1.0) / scale;
}

void Frame(QPainter& painter, const QRectF& rect, const QColor& outline, const QColor& inside) {
  const double line = LineWidth(painter);
  painter.fillRect(rect, outline);
  painter.fillRect(rect.adjusted(line, line, -line, -line), inside);
}

}  // namespace

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  if (element == PE_FrameGroupBox && IsToolkits(*this))
    return DrawGroupFrame(*option, *painter, widget);
  const QColor window = option->palette.window().color();
  const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
  if (!isIndicator || window.lightness() > kDark || !IsToolkits(*this))
    return QProxyStyle::drawPrimitive(element, option, painter, widget);
  QStyleOptionButton clear;
  if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
    clear = *button;
  else
    clear.QStyleOption::operator=(*option);
  // The style darkens it by 1.4.
  const bool isEnabled = option->state.testFlag(State_Enabled);
  clear.palette.setColor(QPalette::Window, Between(window, option->palette.windowText().color(),
                                                   isEnabled ? 0.75 : 0.55));
  QProxyStyle::drawPrimitive(element, &clear, painter, widget);
}

void ProgramStyle::DrawGroupFrame(const QStyleOption& option, QPainter& painter,
                                  const QWidget* widget) const {
  constexpr int kGap = 3;  // pixels, as the style lays out what is in the frame
  const auto* box = qobject_cast<const QGroupBox*>(widget);
  const bool isUntitled = box != nullptr && !box->isCheckable() && box->title().isEmpty();
  const int title =
      isUntitled ? 0
                 : std::max(pixelMetric(PM_ExclusiveIndicatorHeight), option.fontMetrics.height());
  const QRectF frame = option.rect.adjusted(0, title + kGap, 0, 0);
  const QColor window = option.palette.window().color();
  const QColor towards = window.lightness() > kDark ? Qt::black : Qt::white;
  const double line = LineWidth(painter);
  const QColor colour = Between(window, towards, 0.1);
  painter.fillRect(frame.adjusted(line, 0, -line, 0), colour);  // its corners are left out
  painter.fillRect(frame.adjusted(0, line, 0, -line), colour);
  painter.fillRect(frame.adjusted(line, line, -line, -line), Between(window, towards, 0.012));
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  if (element != CE_ToolBar || !IsToolkits(*this))
    return QProxyStyle::drawControl(element, option, painter, widget);
  QRectF line = option->rect;
  line.setTop(line.bottom() - LineWidth(*painter));
  painter->fillRect(line, Outline(option->palette));
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || bar == nullptr || !IsToolkits(*this))
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  DrawScrollBar(*bar, *painter, widget);
}

void ProgramStyle::DrawScrollBar(const QStyleOptionSlider& bar, QPainter& painter,
                                 const QWidget* widget) const {
  const QPalette& palette = bar.palette;
  const QColor outline = Outline(palette), button = palette.button().color();
  const bool isDark = palette.window().color().lightness() <= kDark;
  painter.fillRect(bar.rect, isDark ? palette.window().color().darker(125)
                                    : palette.window().color().darker(108));
  const auto part = [&](SubControl which) {
    return proxy()->subControlRect(CC_ScrollBar, &bar, which, widget);
  };
  const auto colour = [&](SubControl which) {
    const bool isActive = bar.activeSubControls.testFlag(which) && bar.state & State_Enabled;
    if (isActive && bar.state & State_Sunken)
      return isDark ? button.lighter(160) : button.darker(115);
    return isActive && bar.state & State_MouseOver ? button.lighter(isDark ? 130 : 108) : button;
  };
  const bool isAcross = bar.orientation == Qt::Horizontal;
  const bool isMirrored = isAcross && bar.direction == Qt::RightToLeft;
  const auto back = isAcross ? PE_IndicatorArrowLeft : PE_IndicatorArrowUp;
  const auto on = isAcross ? PE_IndicatorArrowRight : PE_IndicatorArrowDown;
  for (const SubControl which : {SC_ScrollBarSubLine, SC_ScrollBarAddLine}) {
    QStyleOption arrow = bar;
    arrow.rect = part(which);
    if (arrow.rect.isEmpty()) continue;
    Frame(painter, arrow.rect, outline, colour(which));
    arrow.rect.adjust(3, 3, -3, -3);
    arrow.state &= ~State_Sunken;
    const bool isBack = (which == SC_ScrollBarSubLine) != isMirrored;
    proxy()->drawPrimitive(isBack ? back : on, &arrow, &painter, widget);
  }
  if (const QRect slider = part(SC_ScrollBarSlider); bar.maximum > bar.minimum && !slider.isEmpty())
    Frame(painter, slider, outline, colour(SC_ScrollBarSlider));
}

QIcon ProgramStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                 const QWidget* widget) const {
  if (icon == SP_ToolBarHorizontalExtensionButton) return ToolIcon("more");
  return QProxyStyle::standardIcon(icon, option, widget);
}

void SetLook() {
  QApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
  QApplication::setStyle(new ProgramStyle);
}

}  // namespace graphize
