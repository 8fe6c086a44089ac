#pragma once

#include <QGroupBox>
#include <array>

#include "workspace/axes_proposal.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace graphize {

/// The frame "Propose Axes": how sure the axes are, the values of the three rows, each with a check
/// that it has been looked at, and whether they are taken over.
class ProposeAxesPanel : public QGroupBox {
  Q_OBJECT
 public:
  explicit ProposeAxesPanel(QWidget* parent = nullptr);
  void Render(const ProposedAxesForm& form, const std::string& verdict, bool canTake);
  /// On what is to be done first: the first value that nobody has looked at, else the button that
  /// accepts.
  void FocusNext();

 signals:
  void XTyped(int row, const std::string& text);
  void YTyped(int row, const std::string& text);
  void XConfirmed(int row, bool on);
  void YConfirmed(int row, bool on);
  void RowFocused(int row);
  void XLogSwitched(bool on);
  void YLogSwitched(bool on);
  void PlotChosen(int plot);
  void XScaleChosen(int scale);
  void YScaleChosen(int scale);
  void AcceptPressed();
  void CancelPressed();

 private:
  struct Value {
    QLineEdit* Box;
    QCheckBox* Check;  // none of a value that follows the origin's
  };
  Value MakeValue(int row, bool isX, const QString& accessibleName);
  QComboBox* MakeChoice(const char* name, const QString& caption, QLayout* column);

  QLabel* verdict_;
  QComboBox *plot_, *xScale_, *yScale_;
  std::array<Value, 3> x_, y_;
  QCheckBox *xLog_, *yLog_;
  QPushButton *accept_, *cancel_;
};

}  // namespace graphize
