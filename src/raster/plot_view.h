#pragma once

#include <QBasicTimer>
#include <QCursor>
#include <QWidget>
#include <functional>
#include <optional>

#include "raster/plot_image.h"
#include "raster/plot_overlay.h"
#include "raster/pyramid.h"
#include "raster/viewport.h"

namespace graphize {

/// The picture area `Plot`: as large as the zoomed picture, moved within its frame when scrolled.
/// At 1:1 a picture pixel is a logical pixel; enlarged, it is a crisp block at any scaling of the
/// screen. Signals tell picture positions: pixels, unless parts of them are asked for and seen.
class PlotView : public QWidget {
  Q_OBJECT
 public:
  /// `overlayIn` tells what to paint above the raster within an area of the picture.
  using OverlayIn = std::function<PlotOverlay(const PlotOverlay::Rectangle& area)>;
  PlotView(const PlotImage& image, const Viewport& view, OverlayIn overlayIn, QWidget* parent);

  /// Takes size, zoom and place over and repaints what has changed on the raster, above it, and of
  /// the rubber band, which is painted above all else.
  void Render(const DirtyArea& raster, const DirtyArea& overlay,
              const std::optional<PlotOverlay::Rectangle>& rubberBand);
  /// Whether positions within enlarged pixels are told.
  void TellParts(bool parts) { parts_ = parts; }
  void UseCursor(const QCursor& cursor);
  /// Whether the left button drags the view, as the middle one always does.
  void LetPan(bool pan);
  /// Tells where the pointer is, as if it had moved there: after scrolling, before Enter.
  void ReadPointer();

  /// Moves the pointer by picture pixels or, where the screen does not show each or parts of them
  /// are told, by pixels of the screen. False where the system does not let programs do that.
  bool MovePointer(int dx, int dy);
  /// Puts it on a picture pixel.
  bool PointAt(int x, int y);

  /// Smaller copies of the picture, made as they are seen.
  Pyramid& Levels() { return levels_; }

 signals:
  void Moved(int button, int shift, float x, float y);
  void Pressed(int button, int shift, float x, float y);
  void Released(int button, int shift, float x, float y);
  /// A left press and its release over the visible part of the picture; `second` when the press was
  /// the second one of a double click.
  void Clicked(bool second);
  /// The view is dragged by so many logical pixels.
  void Panned(int dx, int dy);
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
  struct Position {
    float X, Y;
  };
  void ShowCursor();
  bool BeginPan(const QMouseEvent& event);
  void Pan(const QMouseEvent& event);
  void EndPan();
  /// What lies at an exact place of this widget.
  Position PositionAt(QPointF place) const;
  /// The picture and the curves' marks as one: many marks cost little more than their pixels.
  void PaintPicture(QPainter& painter, const QRegion& region, const PlotOverlay& overlay);
  /// The picture pixels within an area of this widget, and those whose marks reach into it.
  PlotOverlay::Rectangle PixelsAround(const QRect& area) const;
  void TellMove(const Position& position, int button, int shift);
  /// Whether the place is seen here: not scrolled out of sight, nor below the zoom window.
  bool Shows(QPointF place) const;
  /// A step of the pointer to another picture pixel, in logical pixels.
  int WayBy(double place, int pixels) const;
  int WayTo(double place, int pixel) const;

  const PlotImage& image_;
  const Viewport& view_;
  OverlayIn overlayIn_;
  Pyramid levels_;
  double zoomShown_ = 1;
  bool parts_ = false;
  QCursor cursor_;
  bool mayPan_ = false;
  Qt::MouseButton pansWith_ = Qt::NoButton;
  QPointF pannedTo_;  // in the window
  std::optional<PlotOverlay::Rectangle> rubberBand_;
  bool leftPressedHere_ = false;
  bool secondPress_ = false;  // of a double click
  bool entered_ = false;      // the next move is the one that has led here
  QBasicTimer heldOutside_;   // a pointer that rests beyond the edge goes on scrolling
};

/// The raster as an image that shares its memory; valid while the raster lives.
class QImage AsImage(const Raster& raster);

}  // namespace graphize
