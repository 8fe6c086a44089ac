#pragma once

#include <QWidget>

namespace graphize {

/// The 16 palette colours in two rows; a click or an arrow key chooses one.
class ColourGrid : public QWidget {
  Q_OBJECT
 public:
  explicit ColourGrid(QWidget* parent = nullptr);
  void Render(int chosen);
  QSize sizeHint() const override;

 signals:
  void Chosen(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  QRectF Field(int index) const;

  int chosen_ = -1;
};

}  // namespace graphize
