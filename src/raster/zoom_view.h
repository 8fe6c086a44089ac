#pragma once

#include <QFrame>

#include "raster/plot_image.h"

class QSlider;

namespace graphize {

/// The zoom window: whole enlarged pixels around the cursor, its factor slider beneath. It floats
/// over its parent and is moved by dragging.
class ZoomView : public QFrame {
  Q_OBJECT
 public:
  ZoomView(const PlotImage& image, int minimumFactor, int maximumFactor, QWidget* parent);

  /// Shows the pixels around (x, y), row downward, each `factor` logical pixels wide.
  void Render(bool shown, int x, int y, int factor, bool pictureChanged);
  /// Where the window stands until somebody moves it; parent's coordinates.
  void SetHome(QPoint home);
  /// Goes home when it has been moved over `area`, which is needed.
  void Uncover(const QRect& area);
  bool IsMoved() const { return moved_; }

 signals:
  void FactorChosen(int factor);
  /// The pointer has come upon it.
  void Entered();

 protected:
  void enterEvent(QEnterEvent* event) override;

 private:
  class Picture;
  bool eventFilter(QObject* watched, QEvent* event) override;

  void StayInside();

  Picture* picture_;
  QSlider* slider_;
  QPoint home_;
  QPoint grabbed_;
  bool moved_ = false;
};

}  // namespace graphize
