#pragma once

#include <QWidget>

namespace graphize {

/// The opening through which the picture is seen. Shows a hint while there is no picture.
class PictureArea : public QWidget {
  Q_OBJECT
 public:
  explicit PictureArea(QWidget* parent = nullptr);
  void ShowHint(bool shown);

 signals:
  void Resized(int width, int height);
  /// The wheel was turned; logical pixels to scroll by.
  void Wheeled(int dx, int dy);
  /// It was turned with Ctrl: notches up, and where the pointer is.
  void Zoomed(int steps, QPointF at);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  bool hint_ = true;
  int turned_ = 0;  // of the wheel with Ctrl, less than a notch
};

}  // namespace graphize
