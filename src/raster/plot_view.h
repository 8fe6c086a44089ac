#pragma once

#include <QBasicTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "raster/plot_image.h"
#include "raster/plot_overlay.h"

namespace graphize {

/// The picture area `Plot`: exactly as large as the picture, moved within its frame when scrolled.
/// One picture pixel is one logical pixel, painted as a crisp block at any scaling.
class PlotView : public QWidget {
  Q_OBJECT
 public:
  /// `overlayIn` tells what to paint above the raster within an area.
  using OverlayIn = std::function<PlotOverlay(const PlotOverlay::Rectangle& area)>;
  PlotView(const PlotImage& image, OverlayIn overlayIn, QWidget* parent);

  /// Takes the picture's size over and repaints what has changed on the raster and of the rubber
  /// band, which is painted above all else.
  void Render(const DirtyArea& dirty, const std::optional<PlotOverlay::Rectangle>& rubberBand);
  /// Tells where the pointer is, as if it had moved there: after scrolling, before Enter.
  void ReadPointer();

 signals:
  void Moved(int button, int shift, float x, float y);
  void Pressed(int button, int shift, float x, float y);
  void Released(int button, int shift, float x, float y);
  /// A left press and its release over the visible part of the picture; `second` when the press was
  /// the second one of a double click.
  void Clicked(bool second);
  /// The pointer came over the picture, or left it.
  void Entered(float x, float y);
  void Left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent*) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  /// The picture and the curves' marks as one: many marks cost little more than their pixels.
  void PaintWithCurves(QPainter& painter, const QRect& area, const PlotOverlay& overlay) const;
  void TellMove(QPoint position, int button, int shift);
  /// Whether the pixel is seen here: not scrolled out of sight, nor below the zoom window.
  bool ShowsPixel(QPoint position) const;

  const PlotImage& image_;
  OverlayIn overlayIn_;
  std::optional<PlotOverlay::Rectangle> rubberBand_;
  bool leftPressedHere_ = false;
  bool secondPress_ = false;  // of a double click
  bool entered_ = false;      // the next move is the one that has led here
  QBasicTimer heldOutside_;   // a pointer that rests beyond the edge goes on scrolling
};

/// The raster as an image that shares its memory; valid while the raster lives.
class QImage AsImage(const Raster& raster);

}  // namespace graphize
