#pragma once

#include <QWidget>

#include "workspace/reading_preview.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;

namespace graphize {

/// The frames "Read Curve" and "Find Symbols": what is asked for, what was read, and whether it is
/// taken over. One of them is shown, and has the controls that both end with.
class ReadingPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ReadingPanel(QWidget* parent = nullptr);
  void Render(const ReadingControl& control, bool canTake, bool canCancel);
  /// Whether the slider is held: it is not where the user wants it yet.
  bool IsSliding() const;

 signals:
  void ToleranceChosen(int percent);
  void DensityChosen(int kind);
  void DensityTyped(const std::string& text);
  void AcceptPressed();
  void CancelPressed();

 private:
  QGroupBox* MakeReadCurve();
  QWidget* MakeEnding();

  QGroupBox* readCurve_;
  QWidget* ending_;
  QComboBox* density_;
  QLineEdit* densityText_;
  QSlider* tolerance_;
  QLabel* toleranceShown_;
  QLabel* reading_;
  QPushButton* accept_;
  QPushButton* cancel_;
};

}  // namespace graphize
