#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace graphize {

/// The line under the list: what the picture says of the points. Not there until it has been asked.
class InkCheckPanel : public QWidget {
  Q_OBJECT
 public:
  explicit InkCheckPanel(QWidget* parent = nullptr);
  /// `isDoubtful`: there are points to show and to remove; `areShown`: they are selected;
  /// `areRemoved`: Undo brings back what was removed.
  void Render(const std::string& text, bool isDoubtful, bool areShown, bool areRemoved);

 signals:
  void ShowPressed();
  void RemovePressed();
  void UndoPressed();

 private:
  QLabel* text_;
  QWidget* buttons_;
  QPushButton* show_;
  QPushButton* remove_;
  QPushButton* undo_;
};

}  // namespace graphize
