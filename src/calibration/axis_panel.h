#pragma once

#include <QGroupBox>
#include <array>

#include "calibration/axis_calibration.h"
#include "commands/reference_commands.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace graphize {

/// "Axis Definitions": three rows of pixel labels, value boxes and "Redefine" buttons, the log
/// switches and the instruction to the user; and the references that the axes are fitted to.
class AxisPanelWidget : public QGroupBox {
  Q_OBJECT
 public:
  explicit AxisPanelWidget(QWidget* parent = nullptr);

  void Render(const AxisPanel& panel, const AxisCalibration& calibration);
  void RenderReferences(const ReferenceView& view, const ReferenceEntry& entry, bool refined,
                        bool canPropose);
  /// Gives the value box the focus when it can take it.
  void Focus(FocusTarget target);
  /// Gives it to the value of the next reference.
  void FocusReference();
  /// What is shown of the references.
  QWidget* ReferencePart() const { return referencePart_; }

 signals:
  void ReDefinePressed(int row);
  void XTyped(int row, const std::string& text);
  void YTyped(int row, const std::string& text);
  void XLogSwitched(bool on);
  void YLogSwitched(bool on);
  void OriginYFocused();
  void ProposePressed();
  void AddReferencePressed();
  void ReferenceXTyped(const std::string& text);
  void ReferenceYTyped(const std::string& text);
  void ReferenceChosen(int number);
  void RemoveReferencePressed();
  void RefinedSwitched(bool on);

 private:
  struct Row {
    QLabel* XPixel;
    QLabel* YPixel;
    QLineEdit* X;
    QLineEdit* Y;
    QPushButton* ReDefine;
    QLabel* Residual;
  };
  Row MakeRow(int row, const QString& caption, QGridLayout* grid);
  QWidget* MakeReferences();

  std::array<Row, 3> rows_;
  QCheckBox* xLog_;
  QCheckBox* yLog_;
  QLabel* angle_;
  QLabel* tips_;
  QLabel* liveX_;
  QLabel* liveY_;
  QLabel* off_;  // heading of the rows' residuals
  QPushButton* propose_;
  QWidget* referencePart_;
  QPushButton* addReference_;
  QWidget* entry_;
  QLineEdit* referenceX_;
  QLineEdit* referenceY_;
  QListWidget* references_;
  QPushButton* remove_;
  QCheckBox* refined_;
  QLabel* residual_;
};

}  // namespace graphize
