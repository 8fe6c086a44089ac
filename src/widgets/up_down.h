#pragma once

#include <QWidget>

namespace graphize {

/// Two small arrow buttons, the buddy of a number beside it: each click, turn of the wheel or arrow
/// key is one step up or down, Page Up and Page Down are ten.
class UpDown : public QWidget {
  Q_OBJECT
 public:
  explicit UpDown(const QString& what, QWidget* parent = nullptr);

 signals:
  void Stepped(int step);  // -10, -1, 1 or 10

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int turned_ = 0;  // of the wheel, in its eighths of a degree
};

}  // namespace graphize
