#pragma once

#include <QLabel>

namespace graphize {

/// A text that ends in dots where there is no room for it; then its tool tip is the whole text.
class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  void ShowText(const std::string& text);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QRect Room() const;
  QString Shown() const;
};

}  // namespace graphize
