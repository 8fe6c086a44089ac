#pragma once

#include <array>

#include "settings/options_form.h"
#include "widgets/form_dialog.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QToolButton;

namespace graphize {

class ColourGrid;

/// The window frmOptions: every option on six tabs.
class SettingsDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit SettingsDialog(QWidget* parent);
  void Render(const OptionsForm& form, const Settings& settings);

 signals:
  // Held until they are taken over.
  void TraceChosen(int trace);
  void SnapModeChosen(int mode);
  void SnapDistanceTyped(const std::string& text);
  void SnapDistanceStepped(int step);
  void XJumpStepped(int step);
  void YJumpStepped(int step);
  void RefreshListSwitched(bool on);
  void ZoomWindowSwitched(bool on);
  void SubPixelClicksSwitched(bool on);
  // Acting at once.
  void ColourOfChosen(int which);
  void ColourChosen(int index);
  void DefaultColoursPressed();
  void CursorChosen(int CursorType);
  void PlacesStepped(int index, int step);
  void XExpSwitched(bool on);
  void YExpSwitched(bool on);
  void DecimalPointChosen(bool point);
  void DelimiterChosen(int delimiter);
  // The buttons below the tabs; Cancel closes.
  void OkPressed();
  void ApplyPressed();
  void SavePressed();
  void LoadPressed();
  void DefaultPressed();

 private:
  QWidget* MakeTrace();
  QWidget* MakeGeneral();
  QWidget* MakeSnap();
  QWidget* MakeColours();
  QWidget* MakeCursor();
  QWidget* MakeFormat();
  QWidget* MakeDelimiter();
  void MakeButtons();

  QButtonGroup* trace_;
  QLabel* xJump_;
  QLabel* yJump_;
  QCheckBox* refreshList_;
  QCheckBox* zoomWindow_;
  QCheckBox* subPixelClicks_;
  QButtonGroup* snapMode_;
  QLineEdit* snapDistance_;
  QButtonGroup* colourOf_;
  ColourGrid* colours_;
  QButtonGroup* cursors_;  // the default cursor is member 0
  QLabel* testArea_;
  std::array<QLabel*, 4> places_;
  QCheckBox* xExp_;
  QCheckBox* yExp_;
  QRadioButton* point_;
  QRadioButton* comma_;
  QButtonGroup* delimiter_;
  QLineEdit* example_;
  QLabel* note_;
};

}  // namespace graphize
