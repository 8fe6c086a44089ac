#pragma once

#include <QDialog>

class QPushButton;

namespace graphize {

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
  /// A row of buttons at the end of the window, the first one for Enter, the last one closes.
  void AddButtons(std::initializer_list<QPushButton*> buttons);
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace graphize
