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
  /// The wheel was turned; picture pixels to scroll by.
  void Wheeled(int dx, int dy);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  bool hint_ = true;
};

}  // namespace graphize
