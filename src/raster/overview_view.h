#pragma once

#include <QBasicTimer>
#include <QFrame>
#include <QImage>

#include "raster/plot_image.h"
#include "raster/pyramid.h"
#include "raster/viewport.h"

namespace graphize {

/// The whole picture, small, and the part of it that is seen, which follows clicks and drags. It
/// floats over its parent.
class OverviewView : public QFrame {
  Q_OBJECT
 public:
  /// `levels` are followed and shared by whoever shows the picture itself.
  OverviewView(const PlotImage& image, Pyramid& levels, QWidget* parent);

  void Render(const Viewport& view, bool pictureChanged);

 signals:
  /// The view is to have this place of the picture, in picture pixels, in its middle.
  void Asked(double x, double y);
  /// The pointer has come upon it.
  void Entered();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// Logical pixels per picture pixel.
  double Scale() const;
  /// What is seen, on this widget.
  QRectF Seen() const;
  void Ask(QPointF at);
  /// The small picture is made beside other work, a part at a time.
  void MakeSmall();

  const PlotImage& image_;
  Pyramid& levels_;
  Viewport view_;
  QImage small_;       // empty until it is made
  bool stale_ = true;  // the picture has changed since
  QBasicTimer making_;
  QPointF grabbed_;  // from the middle of what is seen
};

}  // namespace graphize
