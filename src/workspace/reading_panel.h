#pragma once

#include <QWidget>
#include <array>

#include "workspace/reading_preview.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace graphize {

class ToleranceSlider;

/// The frames "Read Curve" and "Find Symbols": what is asked for, what was read, and whether it is
/// taken over. One of them is shown, and has the controls that both end with.
class ReadingPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ReadingPanel(QWidget* parent = nullptr);
  struct State {
    bool FindsSymbols = false;  // the frame "Find Symbols" is shown, else "Read Curve"
    bool CanTake = false, CanCancel = false;
    bool HasDoubtful = false;                    // symbols that can be stepped through
    bool HasCurrent = false, IsLeftOut = false;  // the one that is looked at
  };
  void Render(const ReadingControl& control, const State& state);
  /// Whether the slider is held: it is not where the user wants it yet.
  bool IsSliding() const;

 signals:
  void ToleranceChosen(int percent);
  void DensityChosen(int kind);
  void DensityTyped(const std::string& text);
  void CentreChosen(int centre);
  void DoubtfulStepped(int step);
  void LeaveOutPressed(bool leaveOut);
  void AcceptPressed();
  void CancelPressed();

 private:
  QGroupBox* MakeReadCurve();
  QGroupBox* MakeFindSymbols();
  QWidget* MakeEnding();
  void RenderSymbols(const ReadingControl& control, const State& state);

  QGroupBox* readCurve_;
  QGroupBox* findSymbols_;
  QWidget* ending_;
  QComboBox* density_;
  QLineEdit* densityText_;
  std::array<QRadioButton*, 2> centre_;
  QPushButton* doubtful_;
  QPushButton* leaveOut_;
  ToleranceSlider* tolerance_;
  QLabel* reading_;
  QPushButton* accept_;
  QPushButton* cancel_;
};

}  // namespace graphize
