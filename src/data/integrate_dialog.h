#pragma once

#include "data/integration.h"
#include "widgets/form_dialog.h"

class QLabel;
class QSlider;

namespace graphize {

/// The window FRM_Integrate: two limits, the area between them.
class IntegrateDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit IntegrateDialog(QWidget* parent);
  void Render(const IntegrateForm& form);

 signals:
  void LowLimitMoved(int point);
  void HighLimitMoved(int point);
  void IntegratePressed();

 private:
  QSlider* min_;
  QSlider* max_;
  QLabel* xMin_;
  QLabel* xMax_;
  QLabel* area_;
};

}  // namespace graphize
