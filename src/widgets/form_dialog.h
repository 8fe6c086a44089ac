#pragma once

#include <QDialog>

class QPushButton;

namespace graphize {

/// The property of a button that stops the command which runs: it is pressed like any other while
/// the command keeps all other input away.
inline constexpr const char* kStopsCommand = "stopsCommand";

/// A modal window that renders one form record. It never closes by itself: which window is open is
/// in the records, too.
class FormDialog : public QDialog {
  Q_OBJECT
 public:
  FormDialog(const char* objectName, const QString& title, QWidget* parent);

  /// Escape and the frame's close button.
  void reject() override { emit CloseAsked(); }

 signals:
  void CloseAsked();
  /// F1.
  void HelpAsked();

 protected:
  /// A row of buttons at the end of the window, the first one for Enter, the last one closes; like
  /// the frame's button it stops a command that runs.
  void AddButtons(std::initializer_list<QPushButton*> buttons);
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace graphize
