#pragma once

#include <QWidget>

#include "capture/cursor.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace graphize {

/// The values under the cursor, and the frame "Pixel/Error" beside them.
class ReadOutPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ReadOutPanel(QWidget* parent = nullptr);
  void Render(const ReadOut& readOut);

 signals:
  void PixelChosen();
  void ErrorChosen();
  void PercentSwitched(bool on);

 private:
  QLineEdit* xValue_;
  QLineEdit* yValue_;
  QLabel* xPos_;
  QLabel* yPos_;
  QLabel* pmX_;
  QLabel* pmY_;
  QRadioButton* pixel_;
  QRadioButton* error_;
  QCheckBox* percent_;
};

}  // namespace graphize
