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
  /// `refined`: the values are those of refined axes, which is marked.
  void Render(const ReadOut& readOut, bool refined);

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
  QLabel* refined_;
  QRadioButton* pixel_;
  QRadioButton* error_;
  QCheckBox* percent_;
};

}  // namespace graphize
