#pragma once

#include <QWidget>

namespace graphize {

/// Two small arrow buttons, the buddy of a text box: each click is one step up or down.
class UpDown : public QWidget {
  Q_OBJECT
 public:
  explicit UpDown(const QString& what, QWidget* parent = nullptr);

 signals:
  void Stepped(int step);  // 1 or -1
};

}  // namespace graphize
