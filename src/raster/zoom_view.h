#pragma once

#include <QFrame>
#include <optional>

#include "raster/plot_image.h"

class QSlider;

namespace graphize {

/// The zoom window: whole enlarged pixels around the cursor, its factor slider beneath. It floats
/// over its parent, is moved by dragging the picture and sized by dragging an edge.
class ZoomView : public QFrame {
  Q_OBJECT
 public:
  ZoomView(const PlotImage& image, int minimumFactor, int maximumFactor, QWidget* parent);

  /// What is looked at: pixels, row downward.
  struct Look {
    int X = 0, Y = 0;                    // the pixel under the cursor, which stands in the middle
    std::optional<QPoint> SnapsTo;       // the one that a press would capture, when it is another
    std::optional<QPointF> SnapsWithin;  // where within pixels an axis click would, centres whole
    int Factor = 4;                      // logical pixels per pixel

    bool operator==(const Look&) const = default;
  };
  void Render(bool shown, const Look& look, bool pictureChanged);
  /// Where the window stands until somebody moves it; parent's coordinates.
  void SetHome(QPoint home);
  /// Goes home when it has been moved over `area`, which is needed.
  void Uncover(const QRect& area);
  /// Steps aside within `room`, to the side where `needed` is not.
  void StepAside(const QRect& room, QPoint needed);
  bool IsMoved() const { return moved_; }
  /// Its size, which is its own until somebody drags an edge.
  QSize WantedSize() const;

 signals:
  void FactorChosen(int factor);
  /// The pointer has come upon it.
  void Entered();
  /// An edge was dragged.
  void Resized();

 protected:
  void enterEvent(QEnterEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  class Picture;
  bool eventFilter(QObject* watched, QEvent* event) override;

  void StayInside();
  Qt::Edges EdgesAt(QPoint at) const;

  Picture* picture_;
  QSlider* slider_;
  QSize dragged_;  // larger than its own size, or empty
  QPoint home_;
  QPoint grabbed_;
  QRect pressed_;    // its geometry as the edge was pressed
  Qt::Edges edges_;  // that are being dragged
  bool moved_ = false;
};

}  // namespace graphize
