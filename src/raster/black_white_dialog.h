#pragma once

#include <array>

#include "raster/black_white_form.h"
#include "widgets/form_dialog.h"

class QLabel;
class QPushButton;
class QRadioButton;
class QSlider;

namespace graphize {

/// The window FRM_BlackWhite: fixed or local threshold, the histogram with the slider under it, and
/// a part of the picture as it would be.
class BlackWhiteDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit BlackWhiteDialog(QWidget* parent);
  void Render(const BlackWhiteForm& form);

 signals:
  void LocalChosen(bool local);
  void ThresholdMoved(int level);
  void PreviewDragged(int columns, int rows);
  void ReducePressed();

 private:
  class Histogram;
  class Preview;

  std::array<QRadioButton*, 2> threshold_{};
  Histogram* histogram_;
  QSlider* level_;
  QLabel* shown_;
  QLabel* hint_;
  Preview* preview_;
  QPushButton* reduce_;
};

}  // namespace graphize
