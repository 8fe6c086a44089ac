#pragma once

#include <QLabel>

namespace graphize {

/// A number to read and to copy: the mouse selects in it, Tab reaches it and selects it.
class NumberLabel : public QLabel {
 public:
  explicit NumberLabel(QWidget* parent = nullptr);

 protected:
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace graphize
