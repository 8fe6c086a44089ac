#pragma once

#include <QLabel>

class QMenu;

namespace graphize {

/// The status panel "zoompercent": how large the picture is seen, and a menu of sizes.
class ZoomPercent : public QLabel {
  Q_OBJECT
 public:
  explicit ZoomPercent(QWidget* parent = nullptr);
  /// `shown` is false without a picture.
  void Render(bool shown, double zoom, bool fits);

 signals:
  void ZoomChosen(double zoom);
  void FitChosen();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void OpenMenu();

  double zoom_ = 1;
  bool fits_ = false;
};

}  // namespace graphize
