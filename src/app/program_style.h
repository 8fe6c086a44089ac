#pragma once

#include <QProxyStyle>

class QStyleOptionSlider;

namespace graphize {

/// The desktop's style. Where that is the toolkit's own, empty boxes and circles stand out from a
/// dark window, too (it draws their outlines darker than the window), and scroll bars, group boxes
/// and the toolbar are plain: their shades are filled in hundreds of pieces by a pool of threads,
/// which takes as long as half of all else that the first paint draws.
class ProgramStyle : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  /// The button of what a bar has no room for is drawn when it is seen: every bar asks for it when
  /// it is made, and the style's own is a file for which all picture plugins are loaded.
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                     const QWidget* widget) const override;

 private:
  void DrawGroupFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
  void DrawScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget) const;
};

/// How the program looks, called once the application is there: this style, and a menu that stands
/// in the window on every desktop, which asks no other process for a place.
void SetLook();

}  // namespace graphize
